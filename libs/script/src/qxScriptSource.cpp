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
    // While a bracket or a brace is open, its slot keeps the place of the first cut in it.
    struct level
    {
        openBracket bracket;
        std::uint32_t cut; // the last one; 0 for none
    };
    std::uint32_t* const slots = mSlots.get();
    const auto cut = [slots](level& around, std::uint32_t place) {
        slots[around.cut != 0 ? around.cut : around.bracket.place] = place;
        around.cut = place;
    };
    const auto close = [slots](const level& closed, std::uint32_t place, std::uint32_t plain) {
        std::uint32_t& slot = slots[closed.bracket.place];
        slots[place] = slot;
        slot = place | hasCuts | plain;
    };
    smallList<level, 32> brackets;
    smallList<level, 32> braces;
    const auto size = static_cast<std::uint32_t>(text.size());
    std::int32_t angle = 0;
    std::uint32_t seen = 0; // semicolons and braces
    bool inString = false;
    for (std::uint32_t i = 0; i < size; ++i) {
        const wchar_t c = text[i];
        if (!(marks::of(c) & (marks::bracket | marks::statementMark | marks::parameterMark)))
            continue;
        switch (c) {
        case L'{':
            ++seen;
            braces.push({{i, 0, 0}, 0});
            continue;
        case L'}':
            ++seen;
            if (!braces.empty()) {
                close(braces.back(), i, 0);
                braces.pop();
            }
            continue;
        case L';':
            ++seen;
            if (!braces.empty())
                cut(braces.back(), i);
            continue;
        case L'"':
            if (inString)
                inString = text[i - 1] == L'\\';
            else
                inString = !brackets.empty() && opensString(text, i);
            continue;
        default:
            break;
        }
        if (inString)
            continue;
        switch (c) {
        case L'(':
            brackets.push({{i, angle, seen}, 0});
            break;
        case L'<':
            ++angle;
            break;
        case L'>':
            --angle;
            break;
        case L',':
            if (!brackets.empty() && brackets.back().bracket.angle == angle)
                cut(brackets.back(), i);
            break;
        default: // the closing bracket
            if (!brackets.empty()) {
                const level& closed = brackets.back();
                if (closed.bracket.angle == angle)
                    close(closed, i, closed.bracket.marks == seen ? isPlain : 0);
                else
                    slots[closed.bracket.place] = 0; // stepping over it would have an effect
                brackets.pop();
            }
            break;
        }
    }
    for (smallList<level, 32>* const open : {&brackets, &braces})
        for (; !open->empty(); open->pop())
            slots[open->back().bracket.place] = 0;
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
