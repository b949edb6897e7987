// The console of Windows: arguments come from the wide command line, and code page and
// colours are switched on.
#include "qxConsole.h"

#include "qxCommandLine.h"
#include "qxWindows.h"

namespace qx
{

std::vector<string> programArguments(int, const char* const*)
{
    // What main receives has been narrowed to the code page; the command line itself has not.
    std::vector<string> texts = splitCommandLine(GetCommandLineW());
    if (!texts.empty())
        texts.erase(texts.begin());
    return texts;
}

void prepareConsole()
{
    SetConsoleOutputCP(CP_UTF8);
}

bool errorsCanBeColoured()
{
    const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) &&
           SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

bool questionsCanBeAnswered()
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) &&
           GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode);
}

} // namespace qx
