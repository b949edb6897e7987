// The state machine behind the parameters of a call.
#include "qxScriptSplitter.h"

#include "qxTextView.h"

namespace qx::script
{

namespace
{

constexpr std::size_t usualParameters = 16;

} // namespace

parameterSplitter::parameterSplitter(const textSlice& buffer, std::wstring_view text)
{
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        if (mInString) {
            stepInString(c);
            continue;
        }
        if (c == L',' && mDepth == 0 && mAngle == 0) {
            emit(buffer, text.substr(start, i - start), true);
            start = i + 1;
        }
        step(c);
    }
    emit(buffer, text.substr(start), false);
}

// One character outside a string. A backslash means nothing here, so nothing is ever escaped.
void parameterSplitter::step(wchar_t c)
{
    switch (c) {
    case L' ':
    case L'\t':
        return;
    case L',':
        mAtStart = true;
        return;
    case L'(':
        ++mDepth;
        mAtStart = true;
        return;
    case L')':
        --mDepth;
        break;
    case L'<':
        ++mAngle;
        break;
    case L'>':
        --mAngle;
        break;
    case L'"':
        mInString = mAtStart;
        break;
    default:
        break;
    }
    mAtStart = false;
}

// REQUIRED: a backslash behind a backslash escapes as well, so a string cannot end in one. Held by
// splitterEscapes.
void parameterSplitter::stepInString(wchar_t c)
{
    if (c == L'"' && !mEscaped)
        mInString = false;
    mEscaped = c == L'\\';
}

void parameterSplitter::emit(const textSlice& buffer, std::wstring_view token, bool evenIfEmpty)
{
    token = trimmed(token, L" \t");
    if (token.empty() && !evenIfEmpty)
        return;
    if (mParams.empty())
        mParams.reserve(usualParameters);
    const bool literal = !token.empty() && token.front() == L'"' && token.back() == L'"';
    if (literal && token.find(L"\\\"") != token.npos) {
        string unescaped{std::wstring(token)};
        unescaped.replace(L"\\\"", L"\"");
        mParams.emplace_back(std::move(unescaped));
    } else
        mParams.push_back(buffer.slice(token));
}

} // namespace qx::script
