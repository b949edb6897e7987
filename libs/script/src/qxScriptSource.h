// The text that is being parsed, and pieces of it.
//
// Parsing cuts pieces out of pieces, level by level. They borrow from one sourceText, which lives as long as
// the outermost call that parses it; what outlives that (the texts of statements and failures) shares one
// counted copy. The source also remembers where brackets close, so that a level steps over what it has nested
// in it.
#pragma once

#include "qxScString.h"
#include "qxTextSlice.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace qx::script
{

// True for a text without blanks, line ends and capitals. Also false for some that are such.
inline bool isWrittenPlainly(std::wstring_view text) noexcept
{
    for (const wchar_t c : text)
        if (c <= L' ' || (c >= L'A' && c <= L'Z') || c >= 0x80)
            return false;
    return true;
}

// Where the brackets of a text close, as far as a walk has come across them. Places are offsets.
class closingPlaces
{
public:
    // A bracket that a walk is inside of.
    struct openBracket
    {
        std::uint32_t place;
        std::int32_t angle;  // open angle brackets in front of it
        std::uint32_t marks; // semicolons and braces in front of it
    };

    explicit closingPlaces(std::size_t textSize) noexcept : mTextSize(textSize) {}

    // False for texts that are too short to be worth it, or too long: nothing is to be noted.
    bool isKept() const noexcept { return mTextSize >= shortest && mTextSize < isPlain; }

    // The place where the bracket at `open` closes; 0 while nobody knows.
    std::size_t of(std::size_t open) const noexcept { return mPlaces ? mPlaces[open] & ~isPlain : 0; }
    // The same of a bracket with neither semicolons nor braces in it; 0 for others.
    std::size_t ofPlain(std::size_t open) const noexcept
    {
        return mPlaces && mPlaces[open] & isPlain ? mPlaces[open] & ~isPlain : 0;
    }
    void note(std::size_t open, std::size_t close, bool plain);

    // For the one walk that is under way.
    std::vector<openBracket>& open() noexcept { return mOpen; }

private:
    static constexpr std::uint32_t isPlain = 0x8000'0000u;
    static constexpr std::size_t shortest = 64;

    std::size_t mTextSize;
    std::unique_ptr<std::uint32_t[]> mPlaces; // by the place of the opening bracket; made when it is needed
    std::vector<openBracket> mOpen;
};

class sourceText
{
public:
    // Borrows `text`.
    explicit sourceText(const string& text);
    explicit sourceText(string&& text);
    sourceText(const sourceText&) = delete;
    sourceText& operator=(const sourceText&) = delete;

    std::wstring_view view() const noexcept { return mView; }
    bool hasLineEnds() const noexcept { return mHasLineEnds; }
    closingPlaces& closings() noexcept { return mClosings; }

    // The counted copy, made at the first call.
    const textSlice& counted();

private:
    std::wstring_view mView;
    textSlice mCounted; // empty until somebody wants it
    closingPlaces mClosings;
    bool mHasLineEnds;
};

// A piece of a sourceText. Borrowed for the length of the work of whom it is given to.
class textPiece
{
public:
    explicit textPiece(sourceText& source) noexcept : mpSource(&source), mView(source.view()) {}

    std::wstring_view view() const noexcept { return mView; }
    string text() const { return string(std::wstring(mView)); }
    std::size_t size() const noexcept { return mView.size(); }
    bool empty() const noexcept { return mView.empty(); }

    sourceText& source() const noexcept { return *mpSource; }
    // Where it begins in the source.
    std::size_t start() const noexcept
    {
        return static_cast<std::size_t>(mView.data() - mpSource->view().data());
    }

    // What it names: the text without blanks and lower-cased.
    scString name() const;

    // `part` must lie within this piece.
    textPiece piece(std::wstring_view part) const noexcept { return textPiece(*mpSource, part); }

    // The piece for those who keep it.
    textSlice counted() const;

private:
    textPiece(sourceText& source, std::wstring_view view) noexcept : mpSource(&source), mView(view) {}

    sourceText* mpSource;
    std::wstring_view mView;
};

} // namespace qx::script
