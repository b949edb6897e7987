// What qxscript writes: results to standard output, everything else to standard error.
#pragma once

#include <qxException.h>

// Line breaks become blanks.
qx::string inOneLine(qx::string text);

void printLine(const qx::string& text);
void printError(const qx::string& text);

// To standard error without a line end; what stands in standard output is written out first.
void printPrompt(const qx::string& text);

// Prints the chain of a failure, outermost message first, each a line that is indented further than the one
// before. `level` is the indentation of the first. The middle of a long chain is left out.
void printFailure(const qx::exception& failure, std::size_t level = 0);

// False when what was printed did not all arrive.
bool outputArrived();
