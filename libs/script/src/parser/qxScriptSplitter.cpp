// Cutting statements: by the index of the brackets where that knows the cuts, else by walks that look for
// them.
#include "parser/qxScriptSplitter.h"

#include "parser/qxScriptWalk.h"

namespace qx::script
{

namespace
{

// Looks for the first semicolon outside braces, where the walk begins outside. Quotation marks mean nothing
// here.
class semicolonWalk : public markWalk<semicolonWalk>
{
public:
    semicolonWalk(std::wstring_view source, const bracketIndex& index, std::size_t from, std::size_t end)
        : markWalk(source, from, end), mIndex(index)
    {}

    // Where it stands in the source; npos where there is none.
    std::size_t found() const noexcept { return mFound; }

    void openBracket()
    {
        if (const std::size_t close = mIndex.isKept() ? mIndex.closingOfPlain(at()) : 0)
            stepOver(close);
    }
    void openBrace()
    {
        // With more braces closed than opened, what is in this one may be at a depth of 0.
        if (mDepth < 0 || !mIndex.isKept())
            ++mDepth;
        else if (const std::size_t close = mIndex.closing(at()))
            stepOver(close);
        else
            stop();
    }
    void closeBrace() { --mDepth; }
    void semicolon()
    {
        if (mDepth != 0)
            return;
        mFound = at();
        stop();
    }

private:
    const bracketIndex& mIndex;
    long mDepth = 0; // in braces
    std::size_t mFound = std::wstring_view::npos;
};

} // namespace

partCutter::partCutter(const textPiece& body, std::size_t open, std::size_t close)
    : mBody(body), mIndex(body.source().brackets()),
      mIsIndexed(open != close && mIndex.closesAt(open, close)), mNext(mIsIndexed ? mIndex.nextCut(open) : 0)
{}

std::size_t partCutter::left() const noexcept
{
    std::size_t counted = 0;
    for (std::size_t place = mNext; place != 0; place = mIndex.nextCut(place))
        ++counted;
    return counted;
}

std::size_t partCutter::search(std::size_t from) const
{
    const std::size_t start = mBody.start();
    semicolonWalk search(mBody.source().view(), mIndex, start + from, start + mBody.size());
    search.walk();
    return search.found() == std::wstring_view::npos ? search.found() : search.found() - start;
}

// The state machine of the parameter text. What it opens goes into the index.
class parameterSplitter::parameterWalk : public markWalk<parameterWalk>
{
public:
    parameterWalk(const textPiece& text, parameterSplitter& splitter, levelRoom& room)
        : markWalk(text.source().view(), text.start(), text.start() + text.size()), mText(text),
          mSplitter(splitter), mIndex(text.source().brackets()), mOpen(mIndex, room), mStart(text.start())
    {}

    // Walks and tells the splitter all that it finds.
    void split()
    {
        walk();
        emit(end(), false);
        mSplitter.mDepth = mDepth;
        mSplitter.mAngle = mAngle;
        mSplitter.mInString = endsInString();
    }

    void openBracket()
    {
        if (mIndex.isKept() && mDepth >= 0) {
            if (const std::size_t close = mIndex.closing(at()))
                return leaveOut(close);
            mOpen.open(at(), mAngle, mStatementMarks);
        }
        ++mDepth;
    }
    void comma()
    {
        if (mDepth != 0)
            return mOpen.cut(at(), mAngle);
        if (mAngle != 0)
            return;
        emit(at(), true);
        mStart = at() + 1;
    }
    void closeBracket()
    {
        --mDepth;
        mOpen.close(at(), mAngle, mStatementMarks);
    }
    void openAngle() { ++mAngle; }
    void closeAngle() { --mAngle; }
    void quote() { skipString(); }
    void openBrace() { ++mStatementMarks; }
    void semicolon() { ++mStatementMarks; }
    void closeBrace() { ++mStatementMarks; }

private:
    // The bracket at hand, which closes there.
    void leaveOut(std::size_t close)
    {
        mDepth += close >= end(); // it stays open up to the end
        mStatementMarks += mIndex.closingOfPlain(at()) == 0;
        stepOver(close);
    }
    void emit(std::size_t behind, bool evenIfEmpty)
    {
        mSplitter.emit(mText.piece(mText.source().view().substr(mStart, behind - mStart)), evenIfEmpty);
    }

    const textPiece& mText;
    parameterSplitter& mSplitter;
    bracketIndex& mIndex;
    openLevels mOpen;        // as many as mDepth counts, if the index is kept
    std::size_t mStart;      // of the parameter at hand
    std::int32_t mDepth = 0; // in brackets
    std::int32_t mAngle = 0;
    std::uint32_t mStatementMarks = 0;
};

parameterSplitter::parameterSplitter(const textPiece& call, std::size_t open)
{
    const std::wstring_view view = call.view();
    const bracketIndex& index = call.source().brackets();
    const std::size_t start = open + 1;
    const std::size_t close = view.rfind(L')');
    if (close == view.npos || close < start)
        walk(call.piece(view.substr(start)));
    else if (index.closesAt(call.start() + open, call.start() + close))
        cutByIndex(call, open, close);
    else
        walk(call.piece(view.substr(start, close - start)));
}

void parameterSplitter::cutByIndex(const textPiece& call, std::size_t open, std::size_t close)
{
    const std::wstring_view view = call.view();
    const bracketIndex& index = call.source().brackets();
    const std::size_t offset = call.start();
    std::size_t from = open + 1;
    for (std::size_t comma = offset + open; (comma = index.nextCut(comma)) != 0;) {
        const std::size_t place = comma - offset;
        emit(call.piece({view.data() + from, place - from}), true);
        from = place + 1;
    }
    emit(call.piece({view.data() + from, close - from}), false);
}

void parameterSplitter::walk(const textPiece& text)
{
    levelRoom room;
    parameterWalk(text, *this, room).split();
}

void parameterSplitter::emitLiteral(const textPiece& literal)
{
    if (literal.view().find(L"\\\"") == std::wstring_view::npos)
        return mParams.push(literal);
    string unescaped = literal.text();
    unescaped.replace(L"\\\"", L"\"");
    mParams.push(textPiece(*mUnescaped.emplace_back(new sourceText(std::move(unescaped)))));
}

} // namespace qx::script
