#pragma once
// Figures of a benchmark that runs each measurement in a process of its own:
// wall time since a point, and the process's peak resident memory.

#include <chrono>

#include <sys/resource.h>

namespace benchsupport
{

using Clock = std::chrono::steady_clock;

inline double Milliseconds(Clock::time_point since)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

inline long PeakKilobytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace benchsupport
