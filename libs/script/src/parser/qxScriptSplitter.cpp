// The walks over the text of a statement.
//
// What lies in brackets that an earlier walk has seen close is stepped over, so that a text is not walked
// anew at each level of its nesting. Where a bracket closes depends on nothing but the text from it on, since
// a walk comes to it outside of strings; and what is stepped over cannot be cut, because it lies deeper than
// the level that is.
#include "parser/qxScriptSplitter.h"

namespace qx::script
{

std::size_t findSemicolon(const textPiece& text, std::size_t from)
{
    const std::wstring_view view = text.view();
    const bracketPlaces& brackets = text.source().brackets();
    const bool kept = brackets.isKept();
    const std::size_t start = text.start();
    const std::size_t end = start + view.size();
    long depth = 0; // in braces
    for (std::size_t i = from; i < view.size(); ++i) {
        const wchar_t c = view[i];
        if (!(marks::of(c) & (marks::bracket | marks::statementMark)))
            continue;
        if (c == L'(') {
            const std::size_t close = kept ? brackets.closingOfPlain(start + i) : 0;
            if (close >= end)
                return view.npos;
            if (close != 0)
                i = close - start;
        } else if (c == L'{') {
            if (depth < 0 || !kept) { // to step over it would miss what is in it at a depth of 0
                ++depth;
                continue;
            }
            const std::size_t close = brackets.closing(start + i);
            if (close == 0 || close >= end)
                return view.npos; // all that follows is inside
            i = close - start;
        } else if (c == L'}') {
            --depth;
        } else if (depth == 0) {
            return i;
        }
    }
    return view.npos;
}

partCutter::partCutter(const textPiece& body, std::size_t open, std::size_t close)
    : mBody(body), mBrackets(body.source().brackets()),
      mIsKnown(open != close && mBrackets.isKept() && mBrackets.cutsAreKnown(open, close)), mPlace(close)
{}

std::size_t partCutter::left() const noexcept
{
    std::size_t counted = 0;
    if (mIsKnown)
        for (std::size_t place = mPlace; place != 0 && (place = mBrackets.cutBehind(place)) != 0;)
            ++counted;
    return counted;
}

parameterSplitter::parameterSplitter(const textPiece& call, std::size_t open)
{
    const std::wstring_view view = call.view();
    const std::size_t start = open + 1;
    const std::size_t close = view.rfind(L')');
    if (close == view.npos || close < start)
        walk(call.piece(view.substr(start)));
    else if (!cutAtCommas(call, open, close))
        walk(call.piece(view.substr(start, close - start)));
}

// False where the commas are not known.
bool parameterSplitter::cutAtCommas(const textPiece& call, std::size_t open, std::size_t close)
{
    const std::wstring_view view = call.view();
    const bracketPlaces& brackets = call.source().brackets();
    const std::size_t offset = call.start();
    if (!brackets.isKept() || !brackets.cutsAreKnown(offset + open, offset + close))
        return false;
    std::size_t from = open + 1;
    for (std::size_t comma = offset + close; (comma = brackets.cutBehind(comma)) != 0;) {
        const std::size_t place = comma - offset;
        emit(call.piece({view.data() + from, place - from}), true);
        from = place + 1;
    }
    emit(call.piece({view.data() + from, close - from}), false);
    return true;
}

// One loop over the text, with its state in local variables: what parses slowly does so here.
// NOLINTNEXTLINE(readability-function-size)
void parameterSplitter::walk(const textPiece& text)
{
    const std::wstring_view view = text.view();
    bracketPlaces& brackets = text.source().brackets();
    const bool kept = brackets.isKept();
    const std::size_t offset = text.start();
    std::vector<bracketPlaces::openBracket>& open = brackets.open();
    open.clear(); // at a depth of at least 0: as many as are open
    std::uint32_t seen = 0;
    bool atStart =
        true; // only blanks since the last comma or opening bracket: a quotation mark opens a string here
    std::size_t start = 0;
    for (std::size_t i = 0; i < view.size(); ++i) {
        const wchar_t c = view[i];
        const unsigned char found = marks::of(c);
        if (mInString) {
            // REQUIRED: a backslash behind a backslash escapes as well, so a string cannot end in one. Held
            // by splitterEscapes.
            if (found == marks::statementMark)
                ++seen;
            else if (c == L'"' && view[i - 1] != L'\\')
                mInString = false;
            continue;
        }
        if (!(found & (marks::bracket | marks::statementMark | marks::parameterMark))) {
            atStart = atStart && found == marks::blank;
            continue;
        }
        // A backslash means nothing here, so nothing is ever escaped.
        switch (c) {
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
                const std::size_t close = brackets.closing(place);
                if (close >= offset + view.size()) { // it stays open up to the end
                    ++mDepth;
                    return;
                }
                if (close != 0) {
                    seen += brackets.closingOfPlain(place) == 0;
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
                const bracketPlaces::openBracket& opened = open.back();
                if (opened.angle == mAngle) // else stepping over it would have an effect
                    brackets.note(opened.place, offset + i, opened.marks == seen);
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

void parameterSplitter::emitLiteral(const textPiece& literal)
{
    if (literal.view().find(L"\\\"") == std::wstring_view::npos)
        return mParams.push(literal);
    string unescaped = literal.text();
    unescaped.replace(L"\\\"", L"\"");
    mParams.push(textPiece(*mUnescaped.emplace_back(new sourceText(std::move(unescaped)))));
}

} // namespace qx::script
