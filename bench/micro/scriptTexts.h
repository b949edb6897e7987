// Script texts of the benches, by size and shape.
#pragma once

#include <qxString.h>

#include <cstddef>

namespace benches
{

// A block of statements as people write them, of at least `characters` characters.
inline qx::string ordinaryScript(std::size_t characters)
{
    const std::wstring_view piece =
        L"    createvar(path, \"/var/data/in\");\n"
        L"    createvar(name, getvar(path));\n"
        L"    setvar(name, \"report, of \\\"today\\\"\");\n"
        L"    {\n"
        L"        createvar(known, isoftype<int>(treatasfunction(name)));\n"
        L"        setglobalvar(last, treatasfunction({ setvar(path, name); return(path); }));\n"
        L"    };\n";
    qx::string text(L"{\n");
    while (text.size() < characters)
        text.append(piece);
    text.append(L"}\n");
    return text;
}

// One call with a great many parameters.
inline qx::string wideCall(std::size_t parameters)
{
    qx::string text(L"callfunction(script$calls$pick");
    for (std::size_t i = 0; i < parameters; ++i)
        text.append(L", \"value\"");
    text.push_back(L')');
    return text;
}

// Calls within calls, `depth` of them, around one long literal.
inline qx::string nestedCalls(std::size_t depth, std::size_t literal)
{
    qx::string text;
    for (std::size_t i = 0; i < depth; ++i)
        text.append(L"treatasfunction(");
    text.push_back(L'"');
    text.append(literal, L'x');
    text.push_back(L'"');
    text.append(depth, L')');
    return text;
}

} // namespace benches
