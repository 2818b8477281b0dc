// Log lines beside other libraries'. Names are service/implementation.
#include <CommonAPI/logging.h>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#ifdef PEER_SPDLOG
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#endif

#include "run_time_checks.h"
#include "temporary_folder.h"

namespace {

constexpr char const* text = "the text of a log line of usual length, neither short nor long";

std::string LogFile(char const* name) {
    static TemporaryFolder const folder;
    return folder.file(name);
}

void SetZone(bool set) {
    set ? setenv("TZ", "UTC", 1) : unsetenv("TZ");
}

/// "Global" and "Other" are below the level of the lines that are filtered out, "Loud" is not.
void Open(char const* name) {
    AttributeMap settings;
    settings["Global"] = "2";
    settings["Client"] = "4";
    settings["Loud"] = "4";
    settings["Quiet"] = "1";
    TerminateLogger();
    InitializeLogger(LogFile(name), &settings, "bench", false);
    std::filesystem::remove(LogFile(name));
}

void Ours(benchmark::State& state, bool zone) {
    SetZone(zone);
    Open("ours");
    for (auto _ : state)
        LogMessage(4, "Client", text);
}

void Bare(benchmark::State& state, bool zone) {
    SetZone(zone);
    FILE* const file = std::fopen(LogFile("bare").c_str(), "wb");
    std::string const line = std::string("12:34:56 - Client:  ") + text + "\n";
    for (auto _ : state) {
        std::fwrite(line.data(), 1, line.size(), file);
        std::fflush(file);
    }
    std::fclose(file);
    std::filesystem::remove(LogFile("bare"));
}

#ifdef PEER_SPDLOG
void Spdlog(benchmark::State& state, bool zone) {
    SetZone(zone);
    auto const logger = spdlog::basic_logger_st("Client", LogFile("spdlog"), true);
    logger->set_pattern("%T - %n:  %v");
    logger->flush_on(spdlog::level::trace);
    for (auto _ : state)
        logger->info(text);
    spdlog::drop("Client");
    std::filesystem::remove(LogFile("spdlog"));
}
#endif

bool const registered = [] {
    auto const add = [](char const* service, char const* name,
                        void (*body)(benchmark::State&, bool), bool zone) {
        benchmark::RegisterBenchmark((std::string(service) + "/" + name).c_str(), body, zone);
    };
    add("line filtered by its module", "fwrite + fflush", Bare, true);
    for (bool const zone : {true, false}) {
        char const* const service = zone ? "log line, TZ set" : "log line, TZ unset";
        add(service, "ours", Ours, zone);
        add(service, "fwrite + fflush", Bare, zone);
#ifdef PEER_SPDLOG
        add(service, "spdlog", Spdlog, zone);
#endif
    }
    return true;
}();

void FilteredByItsModule(benchmark::State& state) {
    Open("filtered");
    for (auto _ : state)
        LogMessage(4, "Quiet", text);
}
BENCHMARK(FilteredByItsModule)->Name("line filtered by its module/ours");

void BelowEveryThreshold(benchmark::State& state) {
    Open("filtered");
    for (auto _ : state)
        LogMessage(9, "Quiet", text);
}
BENCHMARK(BelowEveryThreshold)->Name("line below every threshold/ours");

void Check(benchmark::State& state, void (*check)(int, char const*, char const*)) {
    for (auto _ : state)
        check(4, "Quiet", text);
}
BENCHMARK_CAPTURE(Check, empty, EmptyCall)->Name("line below every threshold/empty call");
#ifdef PEER_SPDLOG
BENCHMARK_CAPTURE(Check, spdlog, SpdlogCheck)->Name("line below every threshold/spdlog");
#endif
#ifdef PEER_GLOG
BENCHMARK_CAPTURE(Check, glog, GlogCheck)->Name("line below every threshold/glog");
#endif

}  // namespace
