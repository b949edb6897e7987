// Cuts the text of a statement: at its semicolons, and the parameter text of a call at its commas.
#pragma once

#include "parser/qxScriptMarks.h"
#include "parser/qxScriptSmallList.h"
#include "parser/qxScriptSource.h"

#include <memory>
#include <utility>
#include <vector>

namespace qx::script
{

// The text without blanks at its ends.
inline std::wstring_view withoutBlanks(std::wstring_view text) noexcept
{
    while (!text.empty() && marks::of(text.front()) == marks::blank)
        text.remove_prefix(1);
    while (!text.empty() && marks::of(text.back()) == marks::blank)
        text.remove_suffix(1);
    return text;
}

// The semicolons that cut a body, one after the other.
class partCutter
{
public:
    // `open` and `close` are the places of the braces around it in the source; the same where there are none.
    partCutter(const textPiece& body, std::size_t open, std::size_t close);

    // How many more there are; 0 where only walks tell.
    std::size_t left() const noexcept;
    // The place in the body of the first one from `from` on, which is the beginning or behind the one before;
    // npos where there is none.
    std::size_t next(std::size_t from)
    {
        if (!mIsIndexed)
            return search(from);
        if (mNext == 0)
            return std::wstring_view::npos;
        return std::exchange(mNext, mIndex.nextCut(mNext)) - mBody.start();
    }

private:
    std::size_t search(std::size_t from) const;

    const textPiece& mBody;
    const bracketIndex& mIndex;
    bool mIsIndexed;
    std::size_t mNext; // its place in the source; 0 where there is none
};

// The parameters of a call.
class parameterSplitter
{
public:
    // `open` is the place of the first opening bracket in `call`. What counts stands between that and the
    // last closing one, or goes up to the end where none closes.
    parameterSplitter(const textPiece& call, std::size_t open);

    // The parameters, trimmed; valid as long as this object. One that is a string literal has every \"
    // exchanged for a plain quotation mark; its outer quotation marks stay.
    std::span<const textPiece> params() const noexcept { return mParams.items(); }

    // What was left open at the end: brackets and angle brackets (negative when more were closed), a string.
    // Where brackets are left open, nothing else is told.
    long depth() const noexcept { return mDepth; }
    long angle() const noexcept { return mAngle; }
    bool inString() const noexcept { return mInString; }

private:
    class parameterWalk;

    void cutByIndex(const textPiece& call, std::size_t open, std::size_t close);
    void walk(const textPiece& text);
    void emit(const textPiece& token, bool evenIfEmpty)
    {
        const std::wstring_view view = withoutBlanks(token.view());
        if (view.empty() && !evenIfEmpty)
            return;
        if (!view.empty() && view.front() == L'"' && view.back() == L'"' &&
            token.source().brackets().hasBackslashes())
            emitLiteral(token.piece(view));
        else
            mParams.push(token.piece(view));
    }
    void emitLiteral(const textPiece& literal);

    smallList<textPiece, 4> mParams;
    std::vector<std::unique_ptr<sourceText>> mUnescaped;
    bool mInString = false;
    long mDepth = 0;
    long mAngle = 0;
};

} // namespace qx::script
