// Runs by the clock: a function with its size for an argument, a tree, and calls from the host.
#include "running.h"

#include "hostObject.h"

#include <algorithm>
#include <future>
#include <latch>

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

// A function that is loaded: with 0 for its first argument it does no work.
class loadedFunction
{
public:
    loadedFunction(const scriptFile& scripts, const string& function,
                   const std::vector<genericValue>& arguments)
        : mScripts(scripts), mCall(scripts.call(function)), mArguments(arguments)
    {
        std::vector<genericValue> idle = arguments;
        idle.front() = genericValue(0);
        scriptcontext context;
        mScripts.run(mCall, context, idle);
    }

    // Gives the checksum, which may exceed an int.
    long long run() const
    {
        scriptcontext context;
        std::vector<genericValue> arguments = mArguments;
        return static_cast<long long>(read<double>(mScripts.run(mCall, context, arguments)));
    }

private:
    const scriptFile& mScripts;
    string mCall;
    std::vector<genericValue> mArguments;
};

// Runs the function on several threads at once.
measured runTogether(const loadedFunction& function, int threads)
{
    std::latch start(1);
    std::vector<std::future<long long>> runs(static_cast<std::size_t>(threads));
    for (std::future<long long>& run : runs) {
        run = std::async(std::launch::async, [&] {
            start.wait();
            return function.run();
        });
    }
    std::vector<long long> sums;
    measured all = byTheClock([&] {
        start.count_down();
        for (std::future<long long>& run : runs)
            sums.push_back(run.get());
        return sums.front();
    });
    demand(std::count(sums.begin(), sums.end(), all.sum) == threads, L"the threads differ");
    return all;
}

// The sum of what calls with 0 to `n` - 1 give, after one that loads.
template <class Call>
measured sumOfCalls(int n, const Call& once)
{
    once(0);
    return byTheClock([&] {
        long long sum = 0;
        for (int i = 0; i < n; ++i)
            sum += once(i);
        return sum;
    });
}

// What W2h calls.
void addHostStatement()
{
    qx::host::addStatement(L"hostsum", {L"a", L"b"}, [](int a, int b) { return a + b; });
}

} // namespace

measured runFunction(const scriptFile& scripts, const string& function, int n, int threads)
{
    if (function == L"W2h")
        addHostStatement();
    const loadedFunction loaded(scripts, function, {genericValue(n)});
    return threads == 1 ? byTheClock([&] { return loaded.run(); }) : runTogether(loaded, threads);
}

measured runOnObject(const scriptFile& scripts, int n)
{
    const qx::refPtr<hostObject> object(new hostObject);
    const loadedFunction loaded(scripts, L"w7", {genericValue(n), qx::host::valueOf(object)});
    return byTheClock([&] { return loaded.run(); });
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

measured runResolvedCall(const scriptFile& scripts, int n)
{
    const qx::script::resolvedCall call(scripts.directory(), scripts.call(L"sum"));
    const auto once = [&](int i) {
        scriptcontext context;
        std::vector<genericValue> arguments{genericValue(i), genericValue(1)};
        genericValue result;
        demand(call.execute(context, arguments, result), L"there is nothing to run");
        return read<int>(result);
    };
    return sumOfCalls(n, once);
}

measured runCalls(const scriptFile& scripts, int n)
{
    const string call = scripts.call(L"sum");
    const auto once = [&](int i) {
        scriptcontext context;
        std::vector<genericValue> arguments{genericValue(i), genericValue(1)};
        return read<int>(scripts.run(call, context, arguments));
    };
    return sumOfCalls(n, once);
}

} // namespace workloads
