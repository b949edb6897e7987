// The walks over the text of a statement. Most of the time of parsing goes by here.
//
// What lies in brackets that an earlier walk has seen close is stepped over, so that a text is not walked
// anew at each level of its nesting. Where a bracket closes depends on nothing but the text from it on, since
// a walk comes to it outside of strings; and what is stepped over cannot be cut, because it lies deeper than
// the level that is.
#include "qxScriptSplitter.h"

#include <array>

namespace qx::script
{

namespace
{

// What the walks stop at. A table: a comparison with each of these characters costs three times as much.
enum mark : unsigned char
{
    statementMark = 1,
    parameterMark = 2,
    stringMark = 4
};

constexpr auto marks = [] {
    std::array<unsigned char, 128> table{};
    for (const char c : {';', '{', '}'})
        table[static_cast<std::size_t>(c)] = statementMark | parameterMark | stringMark;
    table['('] = statementMark | parameterMark;
    for (const char c : {')', '<', '>', ',', ' ', '\t'})
        table[static_cast<std::size_t>(c)] = parameterMark;
    table['"'] = parameterMark | stringMark;
    return table;
}();

bool is(wchar_t c, mark wanted) noexcept
{
    const auto code = static_cast<std::size_t>(c);
    return code < marks.size() && (marks[code] & wanted) != 0;
}

constexpr bool isBlank(wchar_t c) noexcept
{
    return c == L' ' || c == L'\t';
}

} // namespace

std::wstring_view withoutBlanks(std::wstring_view text) noexcept
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::size_t findSemicolon(const textPiece& text, std::size_t from)
{
    const std::wstring_view view = text.view();
    closingPlaces& closings = text.source().closings();
    const bool kept = closings.isKept();
    const std::size_t start = text.start();
    std::vector<closingPlaces::openBracket>& open = closings.open();
    open.clear();
    long depth = 0; // at least 0: the braces in `open` and no others
    for (std::size_t i = from; i < view.size(); ++i) {
        const wchar_t c = view[i];
        if (!is(c, statementMark))
            continue;
        if (c == L'(') {
            const std::size_t close = closings.ofPlain(start + i);
            if (close >= start + view.size())
                return view.npos;
            if (close != 0)
                i = close - start;
        } else if (c == L'{') {
            if (depth < 0 || !kept) {
                ++depth;
                continue;
            }
            const std::size_t close = closings.of(start + i);
            if (close >= start + view.size())
                return view.npos; // all that follows is inside
            if (close != 0) {
                i = close - start;
            } else {
                ++depth;
                open.push_back({static_cast<std::uint32_t>(start + i), 0, 0});
            }
        } else if (c == L'}') {
            --depth;
            if (!open.empty()) {
                closings.note(open.back().place, start + i, false);
                open.pop_back();
            }
        } else if (depth == 0) {
            return i;
        }
    }
    return view.npos;
}

// One loop over the text, with its state in local variables: all parsing runs through it.
// NOLINTNEXTLINE(readability-function-size)
parameterSplitter::parameterSplitter(const textPiece& text)
{
    const std::wstring_view view = text.view();
    closingPlaces& closings = text.source().closings();
    const bool kept = closings.isKept();
    const std::size_t offset = text.start();
    std::vector<closingPlaces::openBracket>& open = closings.open();
    open.clear(); // at a depth of at least 0: as many as are open
    std::uint32_t seen = 0;
    bool atStart =
        true; // only blanks since the last comma or opening bracket: a quotation mark opens a string here
    std::size_t start = 0;
    for (std::size_t i = 0; i < view.size(); ++i) {
        const wchar_t c = view[i];
        if (mInString) {
            // REQUIRED: a backslash behind a backslash escapes as well, so a string cannot end in one. Held
            // by splitterEscapes.
            if (!is(c, stringMark))
                continue;
            if (c != L'"')
                ++seen;
            else if (view[i - 1] != L'\\')
                mInString = false;
            continue;
        }
        if (!is(c, parameterMark)) {
            atStart = false;
            continue;
        }
        // A backslash means nothing here, so nothing is ever escaped.
        switch (c) {
        case L' ':
        case L'\t':
            continue;
        case L',':
            if (mDepth == 0 && mAngle == 0) {
                emit(text.piece(view.substr(start, i - start)), true);
                start = i + 1;
            }
            atStart = true;
            continue;
        case L'(':
            if (mDepth >= 0 && kept) {
                const std::size_t place = offset + i;
                const std::size_t close = closings.of(place);
                if (close >= offset + view.size()) { // it stays open up to the end
                    ++mDepth;
                    return;
                }
                if (close != 0) {
                    seen += closings.ofPlain(place) == 0;
                    i = close - offset;
                    break;
                }
                open.push_back({static_cast<std::uint32_t>(place), static_cast<std::int32_t>(mAngle), seen});
            }
            ++mDepth;
            atStart = true;
            continue;
        case L')':
            --mDepth;
            if (!open.empty()) {
                const closingPlaces::openBracket& opened = open.back();
                if (opened.angle == mAngle) // else stepping over it would have an effect
                    closings.note(opened.place, offset + i, opened.marks == seen);
                open.pop_back();
            }
            break;
        case L'<':
            ++mAngle;
            break;
        case L'>':
            --mAngle;
            break;
        case L'"':
            mInString = atStart;
            break;
        default:
            ++seen;
            break;
        }
        atStart = false;
    }
    emit(text.piece(view.substr(start)), false);
}

void parameterSplitter::emit(const textPiece& token, bool evenIfEmpty)
{
    const std::wstring_view view = withoutBlanks(token.view());
    if (view.empty() && !evenIfEmpty)
        return;
    const bool literal = !view.empty() && view.front() == L'"' && view.back() == L'"';
    if (literal && view.find(L'\\') != view.npos && view.find(L"\\\"") != view.npos) {
        string unescaped{std::wstring(view)};
        unescaped.replace(L"\\\"", L"\"");
        mParams.push(textPiece(*mUnescaped.emplace_back(new sourceText(std::move(unescaped)))));
    } else
        mParams.push(token.piece(view));
}

} // namespace qx::script
