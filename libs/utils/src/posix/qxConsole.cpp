// The console of the posix system: arguments come as UTF-8, and a terminal shows what is
// written as it is.
#include "qxConsole.h"

#include <unistd.h>

namespace qx
{

std::vector<string> programArguments(int count, const char* const* arguments)
{
    std::vector<string> texts;
    for (int i = 1; i < count; ++i)
        texts.push_back(string::fromUtf8(arguments[i]));
    return texts;
}

void prepareConsole() {}

bool errorsCanBeColoured()
{
    return ::isatty(STDERR_FILENO) == 1;
}

bool questionsCanBeAnswered()
{
    return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1;
}

} // namespace qx
