// The message box of a terminal: a question and an answer in words.
#pragma once

#include <qxString.h>
#include <qxTypes.h>

// One line of input without its end, as UTF-8. False when there is none left.
using lineReader = bool (*)(std::string& line);

// Reads from standard input.
bool readInputLine(std::string& line);

// Asks on standard error until an answer names a button by its word or its first letter, and gives the number
// of the button; an empty line answers a box with a single one. At the end of the input that is cancel, or
// the first button of a box without it.
int askForButton(const qx::string& text, const qx::string& caption, qx::uint flags, lineReader readLine);
