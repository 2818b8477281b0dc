// Processes from their start to their end, as the system counts their time. Names are
// service/implementation.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>

namespace {

double Seconds(timeval const& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

/// The library is named, as an installed one is found in the system's list: without a search
/// through the folders of the build.
double TimeOf(char const* program, std::string preload) {
    char* arguments[] = {const_cast<char*>(program), nullptr};
    preload.insert(0, "LD_PRELOAD=");
    char* environment[] = {preload.data(), nullptr};
    pid_t process;
    int status;
    rusage usage;
    if (posix_spawn(&process, program, nullptr, nullptr, arguments, environment) != 0 ||
        wait4(process, &status, 0, &usage) != process || status != 0)
        std::abort();
    return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

void Start(benchmark::State& state, char const* program, char const* library) {
    for (auto _ : state)
        state.SetIterationTime(TimeOf(program, library));
}

BENCHMARK_CAPTURE(Start, ours, START_OURS, OUR_LIBRARY)
    ->Name("process start/ours")
    ->UseManualTime();
BENCHMARK_CAPTURE(Start, without, START_WITHOUT, "")
    ->Name("process start/without the library")
    ->UseManualTime();
BENCHMARK_CAPTURE(Start, empty, START_WITH_EMPTY_LIBRARY, EMPTY_LIBRARY)
    ->Name("process start/empty library")
    ->UseManualTime();

}  // namespace
