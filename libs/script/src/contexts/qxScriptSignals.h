// Control signals: names raised in the root context, tested after each statement that may raise one.
#pragma once

#include "qxScriptContext.h"

namespace qx::script
{

const scString& breakSignal();
const scString& continueSignal();
const scString& breakAllSignal();

// What stands raised in a call, in the order in which it is looked for.
enum class raised
{
    nothing,
    returned,
    broken,
    continued,
    brokenAll
};

raised raisedIn(codecontext& context);

// The signal of this name, `nothing` for other names.
raised signalOf(const scString& name);

// Copies the returned value of the call into `result`, unless `result` is that very value. False when nothing
// has been returned.
bool copyReturned(codecontext& context, genericValue& result);

} // namespace qx::script
