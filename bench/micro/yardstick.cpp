// The measure of all other figures: a virtual call that the compiler cannot see through.
#include <benchmark/benchmark.h>

#include <memory>

namespace
{

class counter
{
public:
    virtual ~counter() = default;
    virtual int next(int value) const = 0;
};

class plainCounter final : public counter
{
public:
    int next(int value) const override { return value + 1; }
};

void virtualCall(benchmark::State& state)
{
    std::unique_ptr<counter> object(new plainCounter);
    benchmark::DoNotOptimize(object); // hides the class
    int value = 0;
    for (auto _ : state) {
        value = object->next(value);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(virtualCall)->Name("yardstick/virtual call");

} // namespace
