// qxworkloads SCRIPT WORKLOAD N: the engine's part in the comparison with other languages
// (docs/performance.md).
//
// Prints `qxscript WORKLOAD N wall_ns cpu_ns checksum`, as the peers' programs do. Start-up and the loading
// of SCRIPT are not measured. W9, W9k and W9c load functions f_0, f_1 and so on of SCRIPT, W9c N of them, the
// others all; with those the third word is the file's size. W1x2 runs the function of W1 on two threads at
// once and gives what both took together; so with each workload that is a function with one argument. With a
// fourth argument the checksum has to be that one.
//
// With QX_TICKS=still in the environment the engine's clock of ticks stands still, so that counted
// instructions are those of a run without valgrind, in which ticks are rare.
//
// memory:WHAT in place of a workload prints `qxscript memory:WHAT things bytes`, see memory.h.
#include "loading.h"
#include "memory.h"
#include "running.h"

#include <qxPlatformSystem.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

namespace
{

using workloads::measured;
using workloads::scriptFile;

measured run(const scriptFile& scripts, std::string_view workload, int n)
{
    if (workload == "W7")
        return workloads::runOnObject(scripts, n);
    if (workload == "W8")
        return workloads::runTree(n);
    if (workload == "W8e")
        return workloads::runCalls(scripts, n);
    if (workload == "W8r")
        return workloads::runResolvedCall(scripts, n);
    if (workload == "W9")
        return workloads::loadFunctions(scripts);
    if (workload == "W9k")
        return workloads::keepFunctions(scripts);
    if (workload == "W9c")
        return workloads::callFunctionsFirst(scripts, n);
    const bool isOnThreads = workload.ends_with("x2");
    const std::string function(isOnThreads ? workload.substr(0, workload.size() - 2) : workload);
    return workloads::runFunction(scripts, qx::string::fromUtf8(function), n, isOnThreads ? 2 : 1);
}

// The clock of the environment variable QX_TICKS.
class stillTicks final : public qx::platformSystem
{
public:
    stillTicks()
    {
        const char* const wanted = std::getenv("QX_TICKS");
        if (wanted && std::string_view(wanted) == "still")
            qx::system::setCurrent(this);
    }
    ~stillTicks() override { qx::system::setCurrent(nullptr); }

    qx::uint64 tick() override { return 1u; }
};

void reportMemory(const scriptFile& scripts, const std::string& workload, int n)
{
    const workloads::memoryUse used =
        workloads::memoryOf(scripts, std::string_view(workload).substr(workload.find(':') + 1), n);
    std::printf("qxscript %s %lld %lld\n", workload.c_str(), used.things, used.bytes);
}

int runAndReport(const char* const* arguments, int count)
{
    const scriptFile scripts(qx::string::fromUtf8(arguments[1]));
    const std::string workload = arguments[2];
    const int n = std::atoi(arguments[3]);
    if (workload.starts_with("memory:")) {
        reportMemory(scripts, workload, n);
        return 0;
    }
    const measured result = run(scripts, workload, n);
    const long long shown = workload == "W9" || workload == "W9k"
                                ? static_cast<long long>(std::filesystem::file_size(arguments[1]))
                                : n;
    std::printf("qxscript %s %lld %lld %lld %lld\n", workload.c_str(), shown, result.wall, result.cpu,
                result.sum);
    return count > 4 && result.sum != std::atoll(arguments[4]) ? 1 : 0;
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 4) {
        std::fputs("usage: qxworkloads SCRIPT WORKLOAD N [CHECKSUM]\n", stderr);
        return 2;
    }
    try {
        const stillTicks still;
        return runAndReport(arguments, count);
    } catch (const qx::exception& failure) {
        for (const qx::locString& message : failure.messages())
            std::fprintf(stderr, "%s\n", message.text().utf8().c_str());
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
    }
    return 1;
}
