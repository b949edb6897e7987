// What a program on the command line needs from its surroundings, beside qx::system. All of
// it is for the start of such a program, before other threads run.
#pragma once

#include "qxExport.h"
#include "qxString.h"

#include <vector>

namespace qx
{

// The arguments that the program was started with, without its own name. `count` and
// `arguments` are those of main.
QXUTILS_API std::vector<string> programArguments(int count, const char* const* arguments);

// Makes a console show the UTF-8 that the program writes, where it would not by itself.
QXUTILS_API void prepareConsole();

// True when standard error goes to a terminal that can show colours.
QXUTILS_API bool errorsCanBeColoured();

// True when standard error and standard input are a terminal: somebody can read a question
// and answer it.
QXUTILS_API bool questionsCanBeAnswered();

} // namespace qx
