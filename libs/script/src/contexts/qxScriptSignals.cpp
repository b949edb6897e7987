// Control signals.
#include "contexts/qxScriptSignals.h"

#include "contexts/qxScriptEpoch.h"
#include "contexts/qxScriptScope.h"

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

raised signalOf(const scString& name)
{
    if (name == breakSignal())
        return raised::broken;
    if (name == continueSignal())
        return raised::continued;
    return name == breakAllSignal() ? raised::brokenAll : raised::nothing;
}

raised raisedIn(codecontext& context)
{
    constexpr raised inOrder[] = {raised::returned, raised::broken, raised::continued, raised::brokenAll};
    if (const scriptcontext* const root = scope::plainRoot(context)) {
        const unsigned pending = scope::pending(*root);
        if (pending == 0)
            return raised::nothing;
        for (const raised each : inOrder)
            if (pending & scope::bitOf(each))
                return each;
    }
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
    if (scriptcontext* const root = scope::plainRoot(context)) {
        genericSet::entry* const returned = scope::returned(*root);
        if (!returned)
            return false;
        if (returned->isShared()) // others may have written it
            epoch::move();
        result = returned->value(); // to itself is nothing
        return true;
    }
    const sharedPtr<genericValue> returned = context.parameterAddress(scriptcontext::returnparam());
    if (!returned)
        return false;
    result = *returned;
    return true;
}

} // namespace qx::script
