// The commands of qxscript.
#pragma once

#include <qxString.h>

#include <optional>
#include <span>
#include <string_view>
#include <vector>

// A command with what it was given.
struct commandCall
{
    std::vector<qx::string> words; // its parameters, by place; `-` for a text is standard input
    std::optional<qx::string> base;
    std::vector<qx::string> passedOn; // the script's own arguments
};

// A parameter of a command.
struct commandParameter
{
    enum kind
    {
        none,
        required,
        optional,
        several // one at least
    };

    const char* name = "";
    kind wanted = none;
    const char* summary = "";
};

// A command as the command line, its help, the man page and the README tell it.
struct command
{
    const char* name;
    const char* summary;
    commandParameter parameters[2];
    const char* base;     // what --base means to it; null: it has none
    bool passesArguments; // what follows the last parameter goes to the script as it is
    // The exit status: 0, or 1 for what failed and was reported. What the engine throws passes through.
    int (*run)(const commandCall& given);

    std::size_t parameterCount() const;
};

std::span<const command> allCommands();
// Null for a word that is none.
const command* findCommand(std::string_view word);
