#include "memory.h"

#include "loading.h"
#include "measured.h"

#include <cstdlib>
#include <fstream>
#include <string>

#include <malloc.h>

namespace workloads
{

using qx::genericValue;
using qx::script::statement;

namespace
{

// What the process has from malloc, in large pieces or small ones.
long long heap()
{
    const struct mallinfo2 now = mallinfo2();
    return static_cast<long long>(now.uordblks) + static_cast<long long>(now.hblkhd);
}

// The largest size of the process so far; 0 where the system does not tell. getrusage would tell the largest
// size of the process that started this one if that is larger.
long long peak()
{
    const std::string wanted = "VmHWM:";
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.compare(0, wanted.size(), wanted) == 0)
            return std::atoll(line.c_str() + wanted.size()) * 1024;
    return 0;
}

memoryUse ofCollection(const scriptFile& scripts, const wchar_t* function, int n)
{
    const qx::string call = scripts.call(function);
    const auto fill = [&](qx::script::scriptcontext& context, int size) {
        std::vector<genericValue> arguments{genericValue(size)};
        scripts.run(call, context, arguments);
    };
    qx::script::scriptcontext loading;
    fill(loading, 0);
    qx::script::scriptcontext context;
    const long long before = heap();
    fill(context, n);
    return {n, heap() - before};
}

// Every call has one opening bracket.
long long callsIn(const qx::string& body)
{
    long long calls = 0;
    bool isLiteral = false;
    for (const wchar_t c : body) {
        if (c == L'"')
            isLiteral = !isLiteral;
        if (c == L'(' && !isLiteral)
            ++calls;
    }
    return calls;
}

memoryUse ofStatements(const scriptFile& scripts)
{
    const std::vector<qx::script::functionInfo> functions =
        qx::script::listFunctions(scripts.file()).functions;
    std::vector<qx::autoPtr<statement>> trees(functions.size());
    memoryUse used;
    const long long before = heap();
    for (std::size_t i = 0; i < functions.size(); ++i) {
        trees[i] = qx::autoPtr<statement>(statement::createFrom(functions[i].body, 0));
        used.things += callsIn(functions[i].body);
    }
    used.bytes = heap() - before;
    return used;
}

memoryUse ofLoading(const scriptFile& scripts)
{
    const long long before = peak();
    loadFunctions(scripts);
    return {1, peak() - before};
}

} // namespace

memoryUse memoryOf(const scriptFile& scripts, std::string_view what, int n)
{
    if (what == "statements")
        return ofStatements(scripts);
    if (what == "loading")
        return ofLoading(scripts);
    if (what == "ints")
        return ofCollection(scripts, L"keepints", n);
    if (what == "texts")
        return ofCollection(scripts, L"keeptexts", n);
    demand(what == "entries", L"memory of what?");
    return ofCollection(scripts, L"keepentries", n);
}

} // namespace workloads
