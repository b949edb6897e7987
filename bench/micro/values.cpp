// What values cost: copies, and typed reads and writes.
#include <benchmark/benchmark.h>
#include <qxHeldTypes.h>

namespace
{

using qx::genericValue;
using qx::string;

void copy(benchmark::State& state, const genericValue& value)
{
    for (auto _ : state) {
        genericValue made(value);
        benchmark::DoNotOptimize(made);
    }
}

void copyInt(benchmark::State& state)
{
    copy(state, genericValue(42));
}
BENCHMARK(copyInt)->Name("value/copy of an int");

void copyString(benchmark::State& state)
{
    copy(state, genericValue(string(L"a text of 24 characters.")));
}
BENCHMARK(copyString)->Name("value/copy of a string");

void copyArray(benchmark::State& state)
{
    copy(state, genericValue(qx::valueArray(1000, genericValue(42))));
}
BENCHMARK(copyArray)->Name("value/copy of an array of 1000");

template <class T>
void read(benchmark::State& state, const genericValue& value)
{
    T out{};
    for (auto _ : state) {
        benchmark::DoNotOptimize(value.getValue(out));
        benchmark::DoNotOptimize(out);
    }
}

void readInt(benchmark::State& state)
{
    read<int>(state, genericValue(42));
}
BENCHMARK(readInt)->Name("value/getValue of an int");

void readIntFromText(benchmark::State& state)
{
    read<int>(state, genericValue(string(L"42")));
}
BENCHMARK(readIntFromText)->Name("value/getValue of an int from text");

void readString(benchmark::State& state)
{
    read<string>(state, genericValue(string(L"a text of 24 characters.")));
}
BENCHMARK(readString)->Name("value/getValue of a string");

template <class T>
void write(benchmark::State& state, genericValue value, const T& source)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(value.setValue(source));
}

void writeInt(benchmark::State& state)
{
    write(state, genericValue(1), 42);
}
BENCHMARK(writeInt)->Name("value/setValue of an int");

void writeIntIntoText(benchmark::State& state)
{
    write(state, genericValue(string(L"1")), 42);
}
BENCHMARK(writeIntIntoText)->Name("value/setValue of an int into text");

void writeString(benchmark::State& state)
{
    write(state, genericValue(string()), string(L"a text of 24 characters."));
}
BENCHMARK(writeString)->Name("value/setValue of a string");

} // namespace
