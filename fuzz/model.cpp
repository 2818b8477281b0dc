// Where inputs come from: libFuzzer, the folder of those that once found something, and chance.

#include "fuzz/model.h"

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <random>

#include "examples/files.h"

extern "C" [[gnu::weak]] void __sanitizer_set_death_callback(void (*)());

void PrintApplied() {
    std::cerr << "after these operations:\n";
    for (std::string_view const line : applied)
        std::cerr << "    " << Described(line) << std::endl;
}

#ifdef REPLAY

/// Pieces that something begins or ends at, some of them many times.
static std::string RandomText(std::minstd_rand& random) {
    static std::string const pieces[] = {
        "a",    "bc",   "B",        "0",        "1f",     "A9",         "C",
        " ",    "+",    "-",        "x",        ".",      "e",          "tRuE",
        "True", "zz",   "key",      "12345678", "\t",     "\x81",       "\xF2",
        "\xC3", "\xFF", "\xE2\x82", "\u00e9",   "\u20ac", "\U0001F600", std::string(1, '\0')};
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

static void TellSignal(int number) {
    std::signal(number, SIG_DFL);
    std::cerr << strsignal(number) << std::endl;
    PrintApplied();
    std::raise(number);
}

/// FOLDER [COUNT of random operations] [SEED]
int main(int, char** arguments) {
    for (int const number : {SIGSEGV, SIGBUS, SIGFPE, SIGALRM})
        std::signal(number, TellSignal);
    if (__sanitizer_set_death_callback)
        __sanitizer_set_death_callback(PrintApplied);
    for (auto const& file : std::filesystem::directory_iterator(arguments[1]))
        Try(ReadFile(file.path()));
    if (!arguments[2])
        return 0;
    std::minstd_rand random(arguments[3] ? std::atoi(arguments[3]) : 1);
    long done = 0;
    auto const start = std::chrono::steady_clock::now();
    for (long const wanted = std::atol(arguments[2]); done < wanted; done += applied.size()) {
        alarm(60);  // for what never ends
        std::string input;
        for (auto lines = 1 + random() % 30; lines > 0; --lines)
            input += RandomLine(random);
        Try(input);
    }
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
    std::cout << done << " operations compared, " << long(done / seconds.count()) << " a second\n";
}

#else

extern "C" int LLVMFuzzerTestOneInput(char const* data, std::size_t size) {
    __sanitizer_set_death_callback(PrintApplied);
    Try({data, size});
    return 0;
}

#endif
