#include "qxScriptSource.h"

#include "qxScriptSmallList.h"

namespace qx::script
{

namespace
{

bool holdsLineEnds(std::wstring_view text)
{
    return text.find(L'\n') != text.npos || text.find(L'\r') != text.npos;
}

// True when a quotation mark at `place`, which lies in a bracket and outside of strings, opens a string: only
// blanks separate it from a comma or an opening bracket.
bool opensString(std::wstring_view text, std::size_t place) noexcept
{
    wchar_t before;
    do
        before = text[--place];
    while (marks::of(before) == marks::blank);
    return before == L'(' || before == L',';
}

} // namespace

bracketPlaces::bracketPlaces(std::wstring_view text) : mHasBackslashes(text.find(L'\\') != text.npos)
{
    if (text.size() < shortest || text.size() >= placeBits)
        return;
    mSlots = std::make_unique<std::uint32_t[]>(text.size());
    walk(text);
}

// One loop over the text, with its state in local variables: all that is parsed runs through it.
// NOLINTNEXTLINE(readability-function-size)
void bracketPlaces::walk(std::wstring_view text)
{
    // While a bracket is open, its slot keeps the first comma that cuts.
    struct level
    {
        openBracket bracket;
        std::uint32_t comma; // the last one that cuts; 0 for none
    };
    smallList<level, 32> open;
    std::uint32_t* const slots = mSlots.get();
    const auto size = static_cast<std::uint32_t>(text.size());
    std::int32_t angle = 0;
    std::uint32_t seen = 0;          // semicolons and braces
    std::uint32_t brace = placeBits; // the innermost open one; its slot has the one around it
    bool inString = false;
    for (std::uint32_t i = 0; i < size; ++i) {
        const wchar_t c = text[i];
        if (!(marks::of(c) & (marks::bracket | marks::statementMark | marks::parameterMark)))
            continue;
        switch (c) {
        case L'{':
            ++seen;
            slots[i] = brace;
            brace = i;
            continue;
        case L'}':
            ++seen;
            if (brace != placeBits) {
                const std::uint32_t around = slots[brace];
                slots[brace] = i;
                brace = around;
            }
            continue;
        case L';':
            ++seen;
            continue;
        case L'"':
            if (inString)
                inString = text[i - 1] == L'\\';
            else
                inString = !open.empty() && opensString(text, i);
            continue;
        default:
            break;
        }
        if (inString)
            continue;
        switch (c) {
        case L'(':
            open.push({{i, angle, seen}, 0});
            break;
        case L'<':
            ++angle;
            break;
        case L'>':
            --angle;
            break;
        case L',':
            if (!open.empty() && open.back().bracket.angle == angle) {
                level& around = open.back();
                slots[around.comma != 0 ? around.comma : around.bracket.place] = i;
                around.comma = i;
            }
            break;
        default: // the closing bracket
            if (!open.empty()) {
                const level& closed = open.back();
                std::uint32_t& slot = slots[closed.bracket.place];
                if (closed.bracket.angle == angle) {
                    slots[i] = slot;
                    slot = i | hasCuts | (closed.bracket.marks == seen ? isPlain : 0);
                } else {
                    slot = 0; // stepping over it would have an effect
                }
                open.pop();
            }
            break;
        }
    }
    for (; !open.empty(); open.pop())
        slots[open.back().bracket.place] = 0;
    while (brace != placeBits) {
        const std::uint32_t around = slots[brace];
        slots[brace] = 0;
        brace = around;
    }
}

sourceText::sourceText(const string& text) : mView(text), mHasLineEnds(holdsLineEnds(mView)) {}

sourceText::sourceText(string&& text)
    : mCounted(std::move(text)), mHasLineEnds(holdsLineEnds(mCounted.view()))
{
    mView = mCounted.view();
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
