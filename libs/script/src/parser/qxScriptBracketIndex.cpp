// Indexing the nesting of a text: a walk over the whole of it.
#include "parser/qxScriptBracketIndex.h"

#include "parser/qxScriptWalk.h"

#include <algorithm>

namespace qx::script
{

namespace
{

class indexingWalk : public markWalk<indexingWalk>
{
public:
    indexingWalk(std::wstring_view text, bracketIndex& index, levelRoom& brackets, levelRoom& braces)
        : markWalk(text, 0, text.size()), mBrackets(index, brackets), mBraces(index, braces)
    {}

    void openBracket() { mBrackets.open(at(), mAngle, mStatementMarks); }
    void comma() { mBrackets.cut(at(), mAngle); }
    void closeBracket() { mBrackets.close(at(), mAngle, mStatementMarks); }
    void openAngle() { ++mAngle; }
    void closeAngle() { --mAngle; }
    void quote()
    {
        if (!mBrackets.isEmpty())
            skipString();
    }
    void openBrace() { mBraces.open(at(), 0, ++mStatementMarks); }
    void semicolon()
    {
        ++mStatementMarks;
        mBraces.cut(at(), 0);
    }
    void closeBrace() { mBraces.close(at(), 0, ++mStatementMarks); }

private:
    openLevels mBrackets;
    openLevels mBraces;
    std::int32_t mAngle = 0;
    std::uint32_t mStatementMarks = 0;
};

} // namespace

bracketIndex::bracketIndex(std::wstring_view text) : mHasBackslashes(text.find(L'\\') != text.npos)
{
    if (text.size() < shortest || text.size() >= placeBits)
        return;
    mEntries = std::make_unique<entry[]>(text.size());
    levelRoom brackets;
    levelRoom braces;
    indexingWalk(text, *this, brackets, braces).walk();
}

// Not inline: few texts are nested so deep.
levelRoom::level* levelRoom::grow()
{
    const auto count = static_cast<std::size_t>(mpEnd - mpLevels);
    auto larger = std::make_unique_for_overwrite<level[]>(2 * count);
    std::copy_n(mpLevels, count, larger.get());
    mOutside = std::move(larger);
    mpLevels = mOutside.get();
    mpEnd = mpLevels + 2 * count;
    return mpLevels + count;
}

} // namespace qx::script
