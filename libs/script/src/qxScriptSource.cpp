#include "qxScriptSource.h"

namespace qx::script
{

namespace
{

bool holdsLineEnds(std::wstring_view text)
{
    return text.find(L'\n') != text.npos || text.find(L'\r') != text.npos;
}

} // namespace

void closingPlaces::note(std::size_t open, std::size_t close, bool plain)
{
    if (!mPlaces)
        mPlaces = std::make_unique<std::uint32_t[]>(mTextSize);
    mPlaces[open] = static_cast<std::uint32_t>(close) | (plain ? isPlain : 0);
}

sourceText::sourceText(const string& text)
    : mView(text), mClosings(text.size()), mHasLineEnds(holdsLineEnds(mView))
{}

sourceText::sourceText(string&& text)
    : mCounted(std::move(text)), mClosings(mCounted.size()), mHasLineEnds(holdsLineEnds(mCounted.view()))
{
    mView = mCounted.view();
}

const textSlice& sourceText::counted()
{
    if (!mCounted.buffer())
        mCounted = textSlice(string(std::wstring(mView)));
    return mCounted;
}

scString textPiece::name() const
{
    if (isWrittenPlainly(mView))
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
