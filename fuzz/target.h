#ifndef COMMONAPI_FUZZ_TARGET_H
#define COMMONAPI_FUZZ_TARGET_H

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>

#include "examples/files.h"
#include "fuzz/model.h"

/// Each target puts the input through the library and through a model of it.
static void Try(std::string const& input);

#ifdef REPLAY

/// Pieces that something begins or ends at, some of them many times.
inline std::string RandomText(std::minstd_rand& random) {
    static std::string const pieces[] = {
        "a",     "bc",   "B",        "0",        "1f",     "A9",         "G",
        "/:@g`", " ",    "+",        "-",        "x",      ".",          "e",
        "tRuE",  "True", "key",      "12345678", "\t",     "\x81",       "\xF2",
        "\xC3",  "\xFF", "\xE2\x82", "\u00e9",   "\u20ac", "\U0001F600", std::string(1, '\0')};
    std::string text;
    for (auto count = random() % 6; count > 0; --count) {
        std::string const& piece = pieces[random() % std::size(pieces)];
        for (auto times = random() % 20 == 0 ? random() % 90 : 1; times > 0; --times)
            text += piece;
    }
    return text;
}

inline std::string RandomLine(std::minstd_rand& random) {
    auto const name = std::next(Line::allNames.begin(), random() % Line::allNames.size());
    std::string line = *name + ' ';
    for (int number = 1; number <= 4; ++number)
        line += "0123456789/0123A"[random() % 16];
    if (random() % 16 == 0)
        line.back() = static_cast<char>('0' + random() % 200);
    return line + RandomText(random) + '\n';
}

/// FOLDER [COUNT-OF-RANDOM-OPERATIONS [SEED]]
int main(int count, char** arguments) {
    for (auto const& file : std::filesystem::directory_iterator(arguments[1])) {
        std::cerr << file.path() << std::endl;  // the last one shown is the one that fails
        Try(ReadFile(file.path()));
    }
    long left = count > 2 ? std::atol(arguments[2]) : 0;
    std::minstd_rand random(count > 3 ? std::atoi(arguments[3]) : 1);
    Try("\n");  // which collects the names
    while (left > 0) {
        std::string input;
        for (auto lines = 1 + random() % 30; lines > 0; --lines)
            input += RandomLine(random);
        std::ofstream(arguments[0] + std::string("_last_input")) << input;  // for who looks into a crash
        Try(input);
        left -= static_cast<long>(applied.size());
    }
}

#else

extern "C" int LLVMFuzzerTestOneInput(char const* data, std::size_t size) {
    Try({data, size});
    return 0;
}

#endif

#endif
