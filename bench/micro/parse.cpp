// What it costs to turn text into a tree.
//
// A text is looked through again at each level of its nesting and nothing worse: the flat shapes cost the
// same per character at any size, the nested one costs its depth times its size.
#include "scriptTexts.h"

#include <benchmark/benchmark.h>
#include <qxScript>

namespace
{

using qx::script::statement;

void parse(benchmark::State& state, const qx::string& text)
{
    for (auto _ : state) {
        statement* const tree = statement::createFrom(text, 0);
        if (!tree)
            state.SkipWithError("no statement");
        else
            tree->destroy();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

void parseOne(benchmark::State& state)
{
    parse(state, L"setvar(name, \"value\")");
}
BENCHMARK(parseOne)->Name("parse/one setvar");

void parseOrdinary(benchmark::State& state)
{
    parse(state, benches::ordinaryScript(static_cast<std::size_t>(state.range(0)) * 1024));
}
BENCHMARK(parseOrdinary)
    ->Name("parse/ordinary script, KiB")
    ->Arg(16)
    ->Arg(1024)
    ->Unit(benchmark::kMillisecond);

void parseWide(benchmark::State& state)
{
    parse(state, benches::wideCall(static_cast<std::size_t>(state.range(0))));
}
BENCHMARK(parseWide)
    ->Name("parse/call with parameters")
    ->Arg(1000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);

void parseNested(benchmark::State& state)
{
    parse(state, benches::nestedCalls(static_cast<std::size_t>(state.range(0)), 10 * 1024));
}
BENCHMARK(parseNested)->Name("parse/10 KiB at depth")->Arg(1)->Arg(100)->Unit(benchmark::kMillisecond);

} // namespace
