// What it costs to run statements, and script functions from files.
#include <benchmark/benchmark.h>
#include <qxScript>

#include <vector>

namespace
{

using qx::genericValue;
using qx::scString;
using qx::string;
using qx::script::codeManager;
using qx::script::scriptcontext;
using qx::script::statement;

class tree
{
public:
    explicit tree(const string& text) : mpStatement(statement::createFrom(text, 0)) {}

    const statement* operator->() const { return &*mpStatement; }

private:
    qx::autoPtr<statement> mpStatement;
};

void define(scriptcontext& context, const wchar_t* name, const genericValue& value)
{
    context.createVariable(scString::createFrom(name), value);
}

// Runs one statement again and again in a context that has a variable `name`.
void runStatement(benchmark::State& state, const wchar_t* text)
{
    static const tree* shared = nullptr; // one tree for all threads, which is the usual case
    if (state.thread_index() == 0)
        shared = new tree(text);
    scriptcontext context;
    define(context, L"name", genericValue(string(L"the value")));
    define(context, L"number", genericValue(1));
    genericValue result;
    for (auto _ : state)
        (*shared)->exec(context, result);
    if (state.thread_index() == 0)
        delete std::exchange(shared, nullptr);
}

void setLiteral(benchmark::State& state)
{
    runStatement(state, L"setvar(name, \"the value\")");
}
BENCHMARK(setLiteral)->Name("run/setvar of a literal")->Threads(1)->Threads(2);

void setConverted(benchmark::State& state)
{
    runStatement(state, L"setvar(number, \"42\")");
}
BENCHMARK(setConverted)->Name("run/setvar of a literal into an int");

void readVariable(benchmark::State& state)
{
    runStatement(state, L"getvar(name)");
}
BENCHMARK(readVariable)->Name("run/read of a variable")->Threads(1)->Threads(2);

void runBlock(benchmark::State& state)
{
    const tree block(L"{ createvar(a, \"1\"); setvar(a, \"2\"); return(a); }");
    genericValue result;
    for (auto _ : state) {
        scriptcontext context;
        block->exec(context, result);
    }
}
BENCHMARK(runBlock)->Name("run/block of createvar, setvar, return")->Threads(1)->Threads(2);

void runFailure(benchmark::State& state)
{
    const tree failing(L"getvar(missing)");
    scriptcontext context;
    genericValue result;
    for (auto _ : state) {
        try {
            failing->exec(context, result);
            state.SkipWithError("no failure");
        } catch (const qx::exception& failure) {
            benchmark::DoNotOptimize(&failure);
        }
    }
}
BENCHMARK(runFailure)->Name("run/failure that reaches the host");

void hostCall(benchmark::State& state, const wchar_t* call)
{
    const string scripts = string::fromUtf8(QX_BENCH_DIR "/scripts");
    std::vector<genericValue> arguments{genericValue(string(L"the value"))};
    genericValue result;
    for (auto _ : state) {
        scriptcontext context;
        codeManager::instance()->executeFunction(scripts, call, context, arguments, result);
    }
}

void callFromHost(benchmark::State& state)
{
    hostCall(state, L"script$calls$pick");
}
BENCHMARK(callFromHost)->Name("call/executeFunction from the host");

void callFromScript(benchmark::State& state)
{
    const tree call(L"callfunction(script$calls$pick, \"the value\")");
    scriptcontext context;
    context.setGlobalContextVariable(scString::createFrom(L"scriptbasepath"),
                                     genericValue(string::fromUtf8(QX_BENCH_DIR "/scripts")));
    genericValue result;
    for (auto _ : state)
        call->exec(context, result);
}
BENCHMARK(callFromScript)->Name("call/callfunction of a cached file")->Threads(1)->Threads(2);

} // namespace
