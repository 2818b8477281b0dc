// How time and memory grow with size: lines of "series, size, nanoseconds per unit, bytes of memory
// at the peak per byte of content", with tabs between them.
#include <CommonAPI/attribute_map.h>
#include <CommonAPI/blowfish.h>
#include <CommonAPI/byte_array.h>
#include <CommonAPI/logging.h>
#include <CommonAPI/unicode_string.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <limits>
#include <string>

#include "temporary_folder.h"

namespace {

/// Peak of the resident memory since it was last asked, in bytes.
double TakePeakMemory() {
    double peak = 0;
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0)
            peak = std::stod(line.substr(6)) * 1024;
    std::ofstream("/proc/self/clear_refs") << 5;
    return peak;
}

/// Runs `body`, which does `units` of work on something of that size: once for its memory, then on
/// memory that is there already, until the time means something; the best of five such times
/// counts, as other work on the machine disturbs.
void Measure(char const* series, double size, double units, std::function<void()> const& body) {
    using Clock = std::chrono::steady_clock;
    malloc_trim(0);  // what was freed before would serve the body, and hide what it takes
    TakePeakMemory();
    double const before = TakePeakMemory();
    body();
    double const grown = TakePeakMemory() - before;
    double best = std::numeric_limits<double>::infinity();
    for (int repetition = 0; repetition < 5; ++repetition) {
        double runs = 0;
        std::chrono::duration<double, std::nano> time{};
        for (auto const start = Clock::now(); time < std::chrono::milliseconds(20); ++runs) {
            body();
            time = Clock::now() - start;
        }
        best = std::min(best, time.count() / runs);
    }
    std::printf("%s\t%.0f\t%.4g\t%.3g\n", series, size, best / units, grown > 0 ? grown / size : 0);
    std::fflush(stdout);
}

void MeasureLog(double lines) {
    TemporaryFolder const folder;
    AttributeMap settings;
    settings["Global"] = "4";
    InitializeLogger(folder.file("log"), &settings, "growth", false);
    Measure("log line", lines, lines, [&] {
        for (double i = 0; i < lines; ++i)
            LogMessage(4, "Client", "a line");
    });
    TerminateLogger();
}

void MeasureMap(long entries) {
    AttributeMap map;
    for (long i = 0; i < entries; ++i)
        map[std::to_string(i)] = "1";
    std::string const key = std::to_string(entries / 2);
    int value;
    double const size = static_cast<double>(entries);
    Measure("map by key", size, 1, [&] { map.loadMapVariable(key, value, 0); });
    Measure("map by position", size, 1, [&] { map(entries - 1); });
}

void MeasureBuffers(long size) {
    double const bytes = static_cast<double>(size);
    ByteArray content;
    content.resize(size, 'x');
    {
        std::string digits;
        Measure("bytes to hexadecimal", bytes, bytes, [&] { content.getASCIIHex(digits); });
        ByteArray back;
        Measure("hexadecimal to bytes", bytes, bytes, [&] { back.loadASCIIHex(digits); });
    }
    ByteArray const absent("absent");
    Measure("find", bytes, bytes, [&] { content.find(absent, 0); });
    Blowfish cipher;
    Measure("encrypt", bytes, bytes, [&] { cipher.encryptData(content); });
}

void MeasureText(long size) {
    double const bytes = static_cast<double>(size);
    UnicodeString text(std::string(static_cast<std::size_t>(size), 'x'));
    Measure("UTF-8 to wide", bytes, bytes, [&] {
        text = L"";
        text.wc_str();
    });
}

}  // namespace

int main() {
    for (double lines = 1; lines <= 1e7; lines *= 10)
        MeasureLog(lines);
    for (long entries = 10; entries <= 100000; entries *= 10)
        MeasureMap(entries);
    for (long size = 1 << 10; size <= 1 << 30; size *= 4)
        MeasureBuffers(size);
    for (long size = 1 << 10; size <= 1 << 28; size *= 4)
        MeasureText(size);
}
