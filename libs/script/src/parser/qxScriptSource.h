// The text that is being parsed, and pieces of it.
//
// Parsing cuts pieces out of pieces, level by level. They borrow from one sourceText, which lives as long as
// the outermost call that parses it; what outlives that (the texts of statements and failures) shares one
// counted copy. The source also tells where brackets close, so that a level steps over what it has nested in
// it.
#pragma once

#include "parser/qxScriptMarks.h"

#include "qxScString.h"
#include "qxTextSlice.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace qx::script
{

// Where the brackets and braces of a text close, and what cuts that which stands in them. Places are offsets
// into the text.
//
// One walk over the whole text finds that out for all brackets that it comes to outside of strings. Where
// such a bracket closes and what cuts it depends on nothing but the text from it on, so the walk of its own
// statement would find the same. What is in strings is left to that.
class bracketPlaces
{
public:
    // A bracket that a walk is inside of.
    struct openBracket
    {
        std::uint32_t place;
        std::int32_t angle;  // open angle brackets in front of it
        std::uint32_t marks; // semicolons and braces in front of it
    };

    // Nothing is known of a text that is too short to be worth it, or too long.
    explicit bracketPlaces(std::wstring_view text);

    bool isKept() const noexcept { return mSlots != nullptr; }
    bool hasBackslashes() const noexcept { return mHasBackslashes; }

    // The following only where it is kept.

    // The place where the bracket at `open` closes; 0 while nobody knows. The same of a brace, which closes
    // there wherever a walk comes to it; 0 for one that never closes.
    std::size_t closing(std::size_t open) const noexcept { return mSlots[open] & placeBits; }
    // The same of a bracket with neither semicolons nor braces in it; 0 for others.
    std::size_t closingOfPlain(std::size_t open) const noexcept
    {
        return mSlots[open] & isPlain ? mSlots[open] & placeBits : 0;
    }
    // What another walk has found out.
    void note(std::size_t open, std::size_t close, bool plain) noexcept
    {
        mSlots[open] = static_cast<std::uint32_t>(close) | (plain ? isPlain : 0);
    }
    // True when the bracket or brace at `open` closes at `close` and it is known what cuts that which stands
    // in it: the commas that a call is cut at and the semicolons of a block. The first is `cutBehind(close)`,
    // and behind each comes the next; 0 where there is no other.
    bool cutsAreKnown(std::size_t open, std::size_t close) const noexcept
    {
        return (mSlots[open] & ~isPlain) == (static_cast<std::uint32_t>(close) | hasCuts);
    }
    std::size_t cutBehind(std::size_t place) const noexcept { return mSlots[place]; }

    // For the one walk that is under way.
    std::vector<openBracket>& open() noexcept { return mOpen; }

private:
    static constexpr std::uint32_t isPlain = 0x8000'0000u;
    static constexpr std::uint32_t hasCuts = 0x4000'0000u;
    static constexpr std::uint32_t placeBits = hasCuts - 1;
    static constexpr std::size_t shortest = 64;

    void walk(std::wstring_view text);

    std::unique_ptr<std::uint32_t[]> mSlots; // by the place of a bracket, a brace or what cuts
    bool mHasBackslashes;
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
    ~sourceText()
    {
        if (mCounts != 0)
            mCounted.buffer()->release(mCounts);
    }

    std::wstring_view view() const noexcept { return mView; }
    bool hasLineEnds() const noexcept { return mHasLineEnds; }
    // Found out at the first call.
    bracketPlaces& brackets()
    {
        if (!mBrackets)
            mBrackets.emplace(mView);
        return *mBrackets;
    }

    // The counted copy, made at the first call.
    const textSlice& counted()
    {
        if (!mCounted.buffer()) [[unlikely]]
            makeCounted();
        return mCounted;
    }
    // Its text with a count for the caller.
    const sharedText& takeCount()
    {
        if (mCounts == 0) [[unlikely]]
            takeCounts();
        --mCounts;
        return *mCounted.buffer();
    }

private:
    void makeCounted();
    void takeCounts();

    std::wstring_view mView;
    textSlice mCounted; // empty until somebody wants it
    uint mCounts = 0;   // of its text, taken in advance
    std::optional<bracketPlaces> mBrackets;
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
