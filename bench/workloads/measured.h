// What one run of a workload takes and gives.
#pragma once

#include <qxScript>

#include <ctime>

namespace workloads
{

struct measured
{
    long long wall = 0; // nanoseconds
    long long cpu = 0;  // nanoseconds of all threads of the process
    long long sum = 0;  // the checksum
};

inline long long nanoseconds(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return now.tv_sec * 1'000'000'000LL + now.tv_nsec;
}

// Runs `work`, which gives the checksum, by the clock.
template <class Work>
measured byTheClock(const Work& work)
{
    measured result;
    const long long cpu = nanoseconds(CLOCK_PROCESS_CPUTIME_ID);
    const long long wall = nanoseconds(CLOCK_MONOTONIC);
    result.sum = work();
    result.wall = nanoseconds(CLOCK_MONOTONIC) - wall;
    result.cpu = nanoseconds(CLOCK_PROCESS_CPUTIME_ID) - cpu;
    return result;
}

// Throws where the workload went wrong in a way that the engine does not report.
inline void demand(bool holds, const wchar_t* complaint)
{
    if (!holds)
        throw qx::unexpectedErrorException(complaint);
}

} // namespace workloads
