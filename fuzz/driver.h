// Included by a target at its end: operates on three pairs, as libFuzzer, the folder of inputs that
// once found something, and chance have it.
#pragma once

#include <chrono>
#include <csignal>
#include <filesystem>
#include <random>

#include "examples/files.h"
#include "fuzz/model.h"

extern "C" [[gnu::weak]] void __sanitizer_set_death_callback(void (*)());

static void Try(std::string_view input) {
    Pair pairs[3];
    applied.clear();
    while (!input.empty()) {
        applied.push_back(input.substr(0, input.find('\n')));
        input.remove_prefix(std::min(applied.back().size() + 1, input.size()));
        Line const line(applied.back());
        Pair& pair = pairs[(line.number(1) & 0xFF) % 3];
        Pair& other = pairs[(line.number(2) & 0xFF) % 3];
        try {
            pair.apply(other, line);
        } catch (NotAllowed const&) {
            return;
        }
        pair.compare();
        other.compare();
    }
}

#ifdef REPLAY

static std::vector<std::string> Names() {
    std::vector<std::string> names;
    Line::allNames = &names;
    Pair pair;
    pair.apply(pair, Line(""));
    Line::allNames = nullptr;
    return names;
}

/// Pieces that something begins or ends at, some of them many times.
static std::string RandomText(std::minstd_rand& random) {
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

static std::string RandomLine(std::minstd_rand& random) {
    static std::vector<std::string> const names = Names();
    std::string line = names[random() % names.size()] + ' ';
    for (int number = 1; number <= 4; ++number)
        line += "0123456789/0123A"[random() % 16];
    if (random() % 16 == 0)
        line.back() = static_cast<char>('0' + random() % 200);
    return line + RandomText(random) + '\n';
}

/// FOLDER COUNT-OF-RANDOM-OPERATIONS [SEED]
int main(int, char** arguments) {
    for (int const number : {SIGSEGV, SIGBUS, SIGFPE, SIGTERM})
        std::signal(number, [](int) {
            PrintApplied();
            std::abort();
        });
    if (__sanitizer_set_death_callback)
        __sanitizer_set_death_callback(PrintApplied);
    for (auto const& file : std::filesystem::directory_iterator(arguments[1]))
        Try(ReadFile(file.path()));
    std::minstd_rand random(arguments[3] ? std::atoi(arguments[3]) : 1);
    long const wanted = std::atol(arguments[2]);
    auto const start = std::chrono::steady_clock::now();
    for (long done = 0; done < wanted; done += applied.size()) {
        std::string input;
        for (auto lines = 1 + random() % 30; lines > 0; --lines)
            input += RandomLine(random);
        Try(input);
    }
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
    std::cout << long(wanted / seconds.count()) << " operations compared a second\n";
}

#else

extern "C" int LLVMFuzzerTestOneInput(char const* data, std::size_t size) {
    __sanitizer_set_death_callback(PrintApplied);
    Try({data, size});
    return 0;
}

#endif
