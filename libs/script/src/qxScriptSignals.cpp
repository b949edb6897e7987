// Control signals.
#include "qxScriptSignals.h"

namespace qx::script
{

const scString& breakSignal()
{
    static const scString name = scString::createFrom(L"#breaksignal#");
    return name;
}

const scString& continueSignal()
{
    static const scString name = scString::createFrom(L"#continuesignal#");
    return name;
}

const scString& breakAllSignal()
{
    static const scString name = scString::createFrom(L"#breakallsignal#");
    return name;
}

raised raisedIn(codecontext& context)
{
    if (context.parameterAddress(scriptcontext::returnparam()))
        return raised::returned;
    if (context.scriptSignal(breakSignal()))
        return raised::broken;
    if (context.scriptSignal(continueSignal()))
        return raised::continued;
    if (context.scriptSignal(breakAllSignal()))
        return raised::brokenAll;
    return raised::nothing;
}

bool copyReturned(codecontext& context, genericValue& result)
{
    const sharedPtr<genericValue> returned = context.parameterAddress(scriptcontext::returnparam());
    if (!returned)
        return false;
    if (returned.get() != &result)
        result = *returned;
    return true;
}

} // namespace qx::script
