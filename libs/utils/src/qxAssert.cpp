// Reports and the failed check. The handler is one atomic pointer; without one a report is
// a line on standard error.
#include "qxAssert.h"

#include <atomic>
#include <cstdio>

namespace qx
{

namespace
{

constexpr std::size_t assertionTextLimit = 1024;

void writeToStandardError(const string& text)
{
    string line = L"assert: " + text;
    for (wchar_t& c : line)
        if (c == L'\n' || c == L'\r')
            c = L' ';
    line.push_back(L'\n');
    const std::string bytes = line.utf8();
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
}

std::atomic<assertHandler> handlerInForce{writeToStandardError};

} // namespace

assertHandler setAssertHandler(assertHandler handler) noexcept
{
    return handlerInForce.exchange(handler ? handler : writeToStandardError);
}

void reportAssert(const string& text)
{
    handlerInForce.load()(text);
}

void assertionFailed(const wchar_t* expression, const wchar_t* path, int line)
{
    string text = string::sformat(L"Assertion failed:\n%s\n\nFile: %s\nLine: %d", expression, path, line);
    if (text.size() > assertionTextLimit)
        text.resize(assertionTextLimit);
    reportAssert(text);
    throw false;
}

} // namespace qx
