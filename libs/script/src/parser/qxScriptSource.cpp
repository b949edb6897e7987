// The text that is being parsed: its counted copy.
#include "parser/qxScriptSource.h"

#include "parser/qxScriptMarks.h"

namespace qx::script
{

namespace
{

bool holdsLineEnds(std::wstring_view text)
{
    return text.find(L'\n') != text.npos || text.find(L'\r') != text.npos;
}

} // namespace

sourceText::sourceText(const string& text) : mView(text), mHasLineEnds(holdsLineEnds(mView)) {}

sourceText::sourceText(string&& text)
    : mCounted(std::move(text)), mHasLineEnds(holdsLineEnds(mCounted.view()))
{
    mView = mCounted.view();
}

void sourceText::makeCounted()
{
    mCounted = textSlice(string(std::wstring(mView)));
}

// Many at once: counting up for each statement would take a twentieth of the time of parsing.
void sourceText::takeCounts()
{
    constexpr uint atOnce = 256;
    counted().buffer()->addRef(atOnce);
    mCounts = atOnce;
}

scString textPiece::name() const
{
    if (!marks::holdAny(mView, marks::unplain))
        return scString::intern(mView);
    string cleaned = text();
    cleaned.deleteAll(L" \t").toLower();
    return scString::createFrom(cleaned);
}

textSlice textPiece::counted() const
{
    const textSlice& whole = mpSource->counted();
    return whole.slice(whole.view().substr(start(), size()));
}

} // namespace qx::script
