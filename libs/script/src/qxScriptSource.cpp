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
    const auto statementMark = [&](wchar_t c, std::uint32_t place) {
        ++seen;
        if (c == L'{') {
            braces.push({{place, 0, 0}, 0});
        } else if (!braces.empty()) {
            if (c == L';')
                return cut(braces.back(), place);
            close(braces.back(), place, 0);
            braces.pop();
        }
    };
    for (std::uint32_t i = 0; i < size; ++i) {
        const wchar_t c = text[i];
        const unsigned char found = marks::of(c);
        if (!(found & (marks::bracket | marks::statementMark | marks::parameterMark)))
            continue;
        if (found == marks::statementMark) {
            statementMark(c, i);
        } else if (c == L'(') {
            brackets.push({{i, angle, seen}, 0});
        } else if (c == L',') {
            if (!brackets.empty() && brackets.back().bracket.angle == angle)
                cut(brackets.back(), i);
        } else if (c == L')') {
            if (brackets.empty())
                continue;
            const level& closed = brackets.back();
            if (closed.bracket.angle == angle)
                close(closed, i, closed.bracket.marks == seen ? isPlain : 0);
            else
                slots[closed.bracket.place] = 0; // stepping over it would have an effect
            brackets.pop();
        } else if (c != L'"') {
            angle += c == L'<' ? 1 : -1;
        } else if (!brackets.empty() && opensString(text, i)) {
            for (++i; i < size && (text[i] != L'"' || text[i - 1] == L'\\'); ++i)
                if (marks::of(text[i]) == marks::statementMark)
                    statementMark(text[i], i);
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
