// Lines of output as UTF-8; failures indented by their depth, the outermost red on a terminal.
#include "report.h"

#include <qxConsole.h>
#include <qxSystem.h>

#include <algorithm>
#include <cstdio>

namespace
{

constexpr std::size_t shownAtEachEnd = 20; // links of a chain
constexpr std::size_t indentation = 2;     // blanks a link
constexpr std::size_t mostIndentation = 40;

void write(std::FILE* stream, const qx::string& text)
{
    const std::string bytes = text.utf8();
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
}

bool useColours()
{
    static const bool answer = [] {
        qx::string value;
        const bool refused = qx::system::current().environmentVariable(L"NO_COLOR", value) && !value.empty();
        return !refused && qx::errorsCanBeColoured();
    }();
    return answer;
}

void printLink(const qx::string& text, std::size_t level, bool isOutermost)
{
    qx::string line = inOneLine(text);
    if (isOutermost && useColours())
        line = L"\x1b[31m" + line + L"\x1b[0m";
    printError(std::wstring(std::min(level * indentation, mostIndentation), L' ') + line);
}

} // namespace

qx::string inOneLine(qx::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](wchar_t c) { return c == L'\n' || c == L'\r'; }, L' ');
    return text;
}

void printLine(const qx::string& text)
{
    write(stdout, text + L'\n');
}

void printError(const qx::string& text)
{
    write(stderr, text + L'\n');
}

void printPrompt(const qx::string& text)
{
    std::fflush(stdout);
    write(stderr, text);
    std::fflush(stderr);
}

void printFailure(const qx::exception& failure, std::size_t level)
{
    const std::vector<qx::locString> messages = failure.messages();
    const std::size_t count = messages.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (count > 2 * shownAtEachEnd && i == shownAtEachEnd) {
            const std::size_t left = count - 2 * shownAtEachEnd;
            printLink(L"... " + std::to_wstring(left) + L" more", level + i, false);
            i += left;
        }
        printLink(messages[i].text(), level + i, i == 0);
    }
}

bool outputArrived()
{
    return std::fflush(stdout) == 0 && !std::ferror(stdout);
}
