// What the statements that visit the elements of a collection have in common.
#pragma once

#include "statements/qxScriptBase.h"

namespace qx::script
{

// Failures of a value that is no collection, with its text and without one.
constexpr const wchar_t* noCollection = L"error converting \"%s\" to an iterator - object";
constexpr const wchar_t* noCollectionWithoutText = L"error converting variable to an iterator - object";

[[noreturn]] inline void refuseCollection(const statement* refusing, const genericValue& given)
{
    string shown;
    if (given.getValue(shown))
        statement::execError(refusing, noCollection, shown);
    statement::execError(refusing, noCollectionWithoutText);
}

} // namespace qx::script
