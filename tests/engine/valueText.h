// Values and failures as the tests show them.
#pragma once

#include <qxScript.h>

#include <string>
#include <vector>

// The held type and the value, in UTF-8: `int 5`, `string "a"`, `array [int 1, null]`, `null`.
std::string valueText(const qx::genericValue& value);

// In quotation marks, with line ends, quotation marks and backslashes escaped.
std::string quotedText(const qx::string& text);

// The texts of a failure's chain, outermost first.
std::vector<qx::string> chainOf(const qx::exception& failure);

// Runs `action` and gives the chain of what it throws: the texts of an exception, `string TEXT`, `false`, or
// `nothing thrown`.
template <class Action>
std::vector<qx::string> failureOf(const Action& action)
{
    try {
        action();
    } catch (const qx::exception& failure) {
        return chainOf(failure);
    } catch (const qx::string& text) {
        return {L"string " + text};
    } catch (bool value) {
        return {value ? L"true" : L"false"};
    }
    return {L"nothing thrown"};
}

using texts = std::vector<qx::string>;

namespace qx
{
// For the messages of the test framework.
inline void PrintTo(const string& text, std::ostream* stream)
{
    *stream << quotedText(text);
}
} // namespace qx
