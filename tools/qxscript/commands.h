// The commands of qxscript. Each gives the exit status: 0, or 1 for what failed and was reported. What the
// engine throws passes through.
#pragma once

#include <qxString.h>

#include <vector>

struct scriptCall
{
    bool hasBase = false;
    qx::string base;
    qx::string file;     // run; `-` is standard input
    qx::string function; // run
    qx::string call;     // call
    std::vector<qx::string> arguments;
};

int runFunction(const scriptCall& wanted);
int runCall(const scriptCall& wanted);
int evaluate(const qx::string& given); // a text, or `-`
int checkFiles(const std::vector<qx::string>& files);
int showFunctions(const qx::string& name);
int showStatements(const qx::string& name); // all with an empty name
int scrambleCopy(const qx::string& from, const qx::string& to);
