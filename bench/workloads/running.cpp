#include "running.h"

#include "hostObject.h"

namespace workloads
{

using qx::genericValue;
using qx::scString;
using qx::string;
using qx::script::scriptcontext;

namespace
{

template <class T>
T read(const genericValue& value)
{
    T out{};
    demand(value.getValue(out), L"a value that is no number");
    return out;
}

// Calls the function by the clock, after a call that loads it and, with 0 for its first argument, does no
// work.
measured runLoaded(const scriptFile& scripts, const string& function, std::vector<genericValue> arguments)
{
    const string call = scripts.call(function);
    std::vector<genericValue> idle = arguments;
    idle.front() = genericValue(0);
    scriptcontext loading;
    scripts.run(call, loading, idle);
    genericValue result;
    measured run = byTheClock([&] {
        scriptcontext context;
        result = scripts.run(call, context, arguments);
        return 0;
    });
    run.sum = static_cast<long long>(read<double>(result)); // some sums exceed an int
    return run;
}

} // namespace

measured runFunction(const scriptFile& scripts, const string& function, int n)
{
    return runLoaded(scripts, function, {genericValue(n)});
}

measured runOnObject(const scriptFile& scripts, int n)
{
    const qx::refPtr<hostObject> object(new hostObject);
    return runLoaded(scripts, L"w7", {genericValue(n), qx::host::valueOf(object)});
}

measured runTree(int n)
{
    const qx::autoPtr<qx::script::statement> tree(qx::script::statement::createFrom(L"add<int>(a,b)", 0));
    const scString a = scString::createFrom(L"a");
    const scString b = scString::createFrom(L"b");
    return byTheClock([&] {
        long long sum = 0;
        genericValue result;
        for (int i = 0; i < n; ++i) {
            scriptcontext context;
            context.setParameter(a, genericValue(i));
            context.setParameter(b, genericValue(1));
            tree->exec(context, result);
            sum += read<int>(result);
        }
        return sum;
    });
}

measured runCalls(const scriptFile& scripts, int n)
{
    const string call = scripts.call(L"sum");
    const auto once = [&](int i) {
        scriptcontext context;
        std::vector<genericValue> arguments{genericValue(i), genericValue(1)};
        return read<int>(scripts.run(call, context, arguments));
    };
    once(0);
    return byTheClock([&] {
        long long sum = 0;
        for (int i = 0; i < n; ++i)
            sum += once(i);
        return sum;
    });
}

} // namespace workloads
