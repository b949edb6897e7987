// The built-in statements as tables: what the modules give to the parser, to help texts and to the reference.
#pragma once

#include "qxScriptParser.h"

#include <span>

namespace qx::script
{

// One call as the parser cut it. Borrowed for the length of the factory's work.
struct callText
{
    const string& name;
    const std::vector<string>& types;
    const std::vector<textSlice>& params;
    int flags;
};

// Texts with which a statement fails, or with which its text is refused: lists of one text a line, exactly as
// in the code. A family of statements shares a list.
struct failureLists
{
    const wchar_t* lists[4] = {};
};

// One script name: how its statement is made, and what help texts and the reference tell of it.
struct builtin
{
    const wchar_t* name;
    statement* (*create)(const callText& call); // gives null where the module declines the call
    const wchar_t* parameters;                  // summary for people: `<type>(name, [value])`
    const wchar_t* types = nullptr;             // the data types that are taken: `short, int`; null for none
    const wchar_t* summary = L"";               // a sentence: what it does, and its value
    failureLists failures = {};
};

struct builtinModule
{
    const wchar_t* name; // `variable`, `control`, ...
    std::span<const builtin> rows;
};

// The sixteen modules, in the order in which the parser asks them.
std::span<const builtinModule* const> builtinModules();

// The row of a lower-case name among all modules; null for an unknown name.
const builtin* findBuiltin(std::wstring_view name);

// The module objects: one array, in the same order.
std::span<scriptModule> builtinModuleObjects();

} // namespace qx::script
