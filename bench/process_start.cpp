// Processes from their start to their end, as the system counts their time. Names are
// service/implementation.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

namespace {

double Seconds(timeval const& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

double TimeOf(char const* program) {
    char* arguments[] = {const_cast<char*>(program), nullptr};
    pid_t process;
    int status;
    rusage usage;
    if (posix_spawn(&process, program, nullptr, nullptr, arguments, environ) != 0 ||
        wait4(process, &status, 0, &usage) != process || status != 0)
        std::abort();
    return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

void Start(benchmark::State& state, char const* program) {
    for (auto _ : state)
        state.SetIterationTime(TimeOf(program));
}

BENCHMARK_CAPTURE(Start, ours, START_WITH_LIBRARY)->Name("process start/ours")->UseManualTime();
BENCHMARK_CAPTURE(Start, without, START_WITHOUT)
    ->Name("process start/without the library")
    ->UseManualTime();
BENCHMARK_CAPTURE(Start, empty, START_WITH_EMPTY_LIBRARY)
    ->Name("process start/empty library")
    ->UseManualTime();

}  // namespace
