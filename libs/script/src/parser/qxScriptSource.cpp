#include "parser/qxScriptSource.h"

#include <algorithm>
#include <array>
#include <limits>

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

// What a walk is inside of.
struct level
{
    std::uint32_t place; // of the opening bracket or brace
    std::int32_t angle;  // open angle brackets in front of it
    std::uint32_t marks; // semicolons and braces in front of it
    std::uint32_t cut;   // the place of the last cut in it; 0 for none
};

// The open brackets, or braces, as a stack that the walk keeps the top of. At its bottom lies what is no
// level.
class levelStack
{
public:
    level* bottom() noexcept { return mItems; }
    // The place above the top.
    level* above(level* top)
    {
        ++top;
        return top != mEnd ? top : grow();
    }

private:
    static constexpr std::size_t inside = 32;

    // Not inline: few texts come here.
    [[gnu::noinline]] level* grow()
    {
        const auto count = static_cast<std::size_t>(mEnd - mItems);
        auto larger = std::make_unique_for_overwrite<level[]>(2 * count);
        std::copy_n(mItems, count, larger.get());
        mOutside = std::move(larger);
        mItems = mOutside.get();
        mEnd = mItems + 2 * count;
        return mItems + count;
    }

    std::array<level, inside> mInside;
    std::unique_ptr<level[]> mOutside;
    level* mItems = mInside.data();
    level* mEnd = mInside.data() + inside;
};

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
    std::uint32_t* const slots = mSlots.get();
    // While a bracket or a brace is open, its slot keeps the place of the first cut in it.
    const auto cut = [slots](level& around, std::uint32_t place) {
        slots[around.cut != 0 ? around.cut : around.place] = place;
        around.cut = place;
    };
    const auto close = [slots](const level& closed, std::uint32_t place, std::uint32_t plain) {
        std::uint32_t& slot = slots[closed.place];
        slots[place] = slot;
        slot = place | hasCuts | plain;
    };
    levelStack brackets;
    levelStack braces;
    level* bracket = brackets.bottom();
    level* brace = braces.bottom();
    bracket->angle = std::numeric_limits<std::int32_t>::max(); // more than there are: no comma cuts
    std::int32_t angle = 0;
    std::uint32_t seen = 0; // semicolons and braces
    const auto statementMark = [&](wchar_t c, std::uint32_t place) {
        ++seen;
        if (c == L'{') {
            brace = braces.above(brace);
            *brace = {place, 0, 0, 0};
        } else if (brace != braces.bottom()) {
            if (c == L';')
                cut(*brace, place);
            else
                close(*brace--, place, 0);
        }
    };
    const auto size = static_cast<std::uint32_t>(text.size());
    for (std::uint32_t i = 0; i < size; ++i) {
        const wchar_t c = text[i];
        if (c >= L'a' && c <= L'z') // most are
            continue;
        switch (c) {
        case L'(':
            bracket = brackets.above(bracket);
            *bracket = {i, angle, seen, 0};
            break;
        case L',':
            if (bracket->angle == angle)
                cut(*bracket, i);
            break;
        case L')':
            if (bracket == brackets.bottom())
                break;
            if (bracket->angle == angle)
                close(*bracket, i, bracket->marks == seen ? isPlain : 0);
            else
                slots[bracket->place] = 0; // stepping over it would have an effect
            --bracket;
            break;
        case L'<':
            ++angle;
            break;
        case L'>':
            --angle;
            break;
        case L'{':
        case L'}':
        case L';':
            statementMark(c, i);
            break;
        case L'"':
            if (bracket == brackets.bottom() || !opensString(text, i))
                break;
            for (++i; i < size && (text[i] != L'"' || text[i - 1] == L'\\'); ++i)
                if (marks::of(text[i]) == marks::statementMark)
                    statementMark(text[i], i);
            break;
        default:
            break;
        }
    }
    for (; bracket != brackets.bottom(); --bracket)
        slots[bracket->place] = 0;
    for (; brace != braces.bottom(); --brace)
        slots[brace->place] = 0;
}

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
