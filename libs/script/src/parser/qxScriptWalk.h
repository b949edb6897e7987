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

    // Goes on behind the bracket or brace that closes at `close`; all that stands in the one at hand is left
    // out.
    //
    // Another walk has seen it close there, and this one would as well. For brackets: every walk that comes
    // to the bracket does so outside of strings, and what follows in it (where strings begin and end, which
    // brackets open and close, what is cut) depends on nothing but the text from the bracket on. For braces:
    // they count inside and outside of strings alike, so they depend on nothing else anyway.
    // To leave it out has no other effect either. A bracket is known to close only if its angle brackets are
    // balanced, so all counters stand behind it where they stood in front; and what is in it lies deeper than
    // the level that is being cut.
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
