// A question on standard error, an answer by word or first letter from standard input.
#include "messageBox.h"

#include "report.h"

#include <qxSystem.h>

#include <algorithm>
#include <cstdio>

namespace
{

using qx::string;
using buttonSet = std::vector<qx::eMessageBoxButton>;

const wchar_t* wordOf(qx::eMessageBoxButton button)
{
    switch (button) {
    case qx::buttonOk:
        return L"ok";
    case qx::buttonCancel:
        return L"cancel";
    case qx::buttonAbort:
        return L"abort";
    case qx::buttonRetry:
        return L"retry";
    case qx::buttonIgnore:
        return L"ignore";
    case qx::buttonYes:
        return L"yes";
    case qx::buttonNo:
        return L"no";
    case qx::buttonTryAgain:
        return L"try again";
    case qx::buttonContinue:
        return L"continue";
    }
    return L"";
}

string choiceOf(const buttonSet& buttons)
{
    string words;
    for (const qx::eMessageBoxButton button : buttons) {
        words += words.empty() ? L"" : L"/";
        words += wordOf(button);
    }
    return L" (" + words + L") ";
}

// The button that an answer names, of several the first; the end where it names none.
buttonSet::const_iterator namedIn(const buttonSet& buttons, const string& answer)
{
    return std::find_if(buttons.begin(), buttons.end(), [&answer](qx::eMessageBoxButton button) {
        const std::wstring_view word = wordOf(button);
        return answer == word || answer == word.substr(0, 1);
    });
}

qx::eMessageBoxButton withoutAnswer(const buttonSet& buttons)
{
    const bool hasCancel = std::find(buttons.begin(), buttons.end(), qx::buttonCancel) != buttons.end();
    return hasCancel ? qx::buttonCancel : buttons.front();
}

} // namespace

bool readInputLine(std::string& line)
{
    line.clear();
    int c = std::getchar();
    const bool isAtEnd = c == EOF;
    for (; c != EOF && c != '\n'; c = std::getchar())
        line += static_cast<char>(c);
    return !isAtEnd;
}

int askForButton(const string& text, const string& caption, qx::uint flags, lineReader readLine)
{
    const buttonSet buttons = qx::messageBoxButtons(flags);
    const string question = caption + L": " + text + choiceOf(buttons);
    for (;;) {
        printPrompt(question);
        std::string line;
        if (!readLine(line)) {
            printError(string());
            return withoutAnswer(buttons);
        }
        const string answer =
            string::fromUtf8(line).deleteLeading(L" \t\r").deleteTrailing(L" \t\r").toLower();
        if (answer.empty() && buttons.size() == 1)
            return buttons.front();
        const auto named = namedIn(buttons, answer);
        if (named != buttons.end())
            return *named;
    }
}
