// A client's whole start and end. Names are service/implementation.
#include <CommonAPI/encryption_api.h>
#include <CommonAPI/logging.h>
#include <benchmark/benchmark.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <map>
#include <string>

#include "temporary_folder.h"

namespace {

constexpr int settingsCount = 20;
constexpr char const* password = "a password of usual length";

std::string LogFile() {
    static TemporaryFolder const folder;
    return folder.file("start");
}

std::string Module(int number) {
    return "Module number " + std::to_string(number);
}

void Ours(benchmark::State& state) {
    std::string const path = LogFile();
    for (auto _ : state) {
        AttributeMap settings;
        for (int i = 0; i < settingsCount; ++i)
            settings[Module(i)] = "3";
        settings["Global"] = "2";
        InitializeLogger(path, &settings, "client", false);
        EncryptionAPI encryption;
        ByteArray key(password);
        encryption.initializeAPI(key, 3);
        TerminateLogger();
    }
    std::filesystem::remove(path);
}
BENCHMARK(Ours)->Name("client start/ours");

using Texts = std::map<std::string, std::string>;

std::string Header(Texts const& settings) {
    std::time_t const now = std::time(nullptr);
    char time[64];
    std::strftime(time, sizeof time, "%x %X", std::localtime(&now));
    utsname system;
    uname(&system);
    char start[1024];
    std::snprintf(start, sizeof start,
                  "--------------------------------\nApplication:  client\n"
                  "--------------------------------\nTime Stamp:\t%s\nProcess ID:\t%ld\n"
                  "System name:\t%s\nNode name:\t%s\nRelease:\t%s\nVersion:\t%s\nMachine:\t%s\n",
                  time, static_cast<long>(getpid()), system.sysname, system.nodename,
                  system.release, system.version, system.machine);
    std::string header = start;
    for (auto const& [module, level] : settings)
        header += "Log level for module " + module + " is " + level + "\n";
    return header + "--------------------------------\n";
}

void ByHand(benchmark::State& state) {
    std::string const path = LogFile();
    for (auto _ : state) {
        Texts settings;
        for (int i = 0; i < settingsCount; ++i)
            settings[Module(i)] = "3";
        settings["Global"] = "2";
        FILE* const file = std::fopen(path.c_str(), "wb");
        Texts const kept = settings;
        std::map<std::string, int> thresholds;
        for (auto const& [module, level] : kept)
            thresholds[module] = std::atoi(level.c_str());
        std::string const header = Header(kept);
        std::fwrite(header.data(), 1, header.size(), file);
        std::fflush(file);
        auto* const cipher = new Blowfish;  // never freed, as the facade's is not
        cipher->setPassword(password);
        benchmark::DoNotOptimize(cipher);
        benchmark::DoNotOptimize(thresholds);
        std::fputs("Terminating logging facility\n", file);
        std::fclose(file);
    }
    std::filesystem::remove(path);
}
BENCHMARK(ByHand)->Name("client start/by hand");

}  // namespace
