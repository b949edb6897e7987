// markWalk: the one loop over the text of statements. Whoever wants to know something of a text derives from
// it and has a method for each mark that concerns it:
//
//     class commaCounter : public markWalk<commaCounter>
//     {
//     public:
//         using markWalk::markWalk;
//         void comma() { ++mCount; }
//         ...
//     };
//
// The methods are called in the order of the text. They see the place of their mark as at() and may move the
// walk by stepOver(), skipString() and stop(). Nothing is virtual: a walk with its methods compiles into one
// loop.
#pragma once

#include "parser/qxScriptMarks.h"

namespace qx::script
{

template <class Receiver>
class markWalk
{
public:
    // Borrows `text` and walks from `from` up to `end`; places are offsets into the whole text.
    markWalk(std::wstring_view text, std::size_t from, std::size_t end) noexcept
        : mpText(text.data()), mAt(from), mEnd(end)
    {}

    void walk()
    {
        for (; mAt < mEnd; ++mAt)
            visit(mpText[mAt]);
    }

    // The marks. A receiver declares those that it wants anew.
    void openBracket() {}
    void closeBracket() {}
    void comma() {}
    void openAngle() {}
    void closeAngle() {}
    void quote() {}
    void openBrace() {}
    void closeBrace() {}
    void semicolon() {}

protected:
    std::size_t at() const noexcept { return mAt; }
    std::size_t end() const noexcept { return mEnd; }
    // True when the walk has come to its end within a string.
    bool endsInString() const noexcept { return mEndsInString; }

    void stop() noexcept { mAt = mEnd; }

    // Goes on behind the bracket or brace at hand, which another walk has seen close at `close`.
    //
    // This walk would see it close there as well. Walks may disagree on where strings are (a semicolon parts
    // a block also in a string, and the part begins outside of strings), but to the bracket both came outside
    // of strings, and from there on everything (strings, levels, cuts) depends on nothing but the text.
    // Braces count in strings as well, so they depend on nothing else anyway; and a walk for which no strings
    // exist steps over a bracket only where no mark of its own is in it. Nor has what is left out any other
    // effect: only a bracket with balanced angle brackets is known to close, so all counters are behind it
    // what they were in front; and what is in it lies deeper than what is being cut.
    void stepOver(std::size_t close) noexcept { mAt = close; }

    // For a quotation mark in brackets: if it begins a parameter it opens a string, and the walk goes on
    // behind that. In a string nothing counts but what cuts blocks, for which strings do not exist.
    void skipString()
    {
        if (!isAtStart())
            return;
        // REQUIRED: a backslash behind a backslash escapes as well, so a string cannot end in one. Held by
        // splitterEscapes.
        for (++mAt; mAt < mEnd && (mpText[mAt] != L'"' || mpText[mAt - 1] == L'\\'); ++mAt)
            visitStatementMark(mpText[mAt]);
        mEndsInString = mAt >= mEnd;
    }

private:
    Receiver& receiver() noexcept { return static_cast<Receiver&>(*this); }

    void visit(wchar_t c)
    {
        if (c >= L'a' && c <= L'z') // most are
            return;
        switch (c) {
        case L'(':
            return receiver().openBracket();
        case L')':
            return receiver().closeBracket();
        case L',':
            return receiver().comma();
        case L'<':
            return receiver().openAngle();
        case L'>':
            return receiver().closeAngle();
        case L'"':
            return receiver().quote();
        default:
            return visitStatementMark(c);
        }
    }

    void visitStatementMark(wchar_t c)
    {
        switch (c) {
        case L'{':
            return receiver().openBrace();
        case L'}':
            return receiver().closeBrace();
        case L';':
            return receiver().semicolon();
        default:
            return;
        }
    }

    // True when only blanks separate what is at hand from a comma or an opening bracket. One of these stands
    // in front: the walk is in brackets.
    bool isAtStart() const noexcept
    {
        std::size_t before = mAt - 1;
        while (marks::of(mpText[before]) == marks::blank)
            --before;
        return mpText[before] == L'(' || mpText[before] == L',';
    }

    const wchar_t* mpText;
    std::size_t mAt;
    std::size_t mEnd;
    bool mEndsInString = false;
};

} // namespace qx::script
