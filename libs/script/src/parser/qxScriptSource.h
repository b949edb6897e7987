// The text that is being parsed, and pieces of it.
//
// Parsing cuts pieces out of pieces, level by level. They borrow from one sourceText, which lives as long as
// the outermost call that parses it; what outlives that (the texts of statements and failures) shares one
// counted copy. The source also keeps the index of its brackets, which tells a level where to step over what
// is nested in it.
#pragma once

#include "parser/qxScriptBracketIndex.h"

#include "qxScString.h"
#include "qxTextSlice.h"

#include <optional>

namespace qx::script
{

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
    // Made at the first call.
    bracketIndex& brackets()
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
    std::optional<bracketIndex> mBrackets;
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
