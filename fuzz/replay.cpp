#include <filesystem>
#include <random>

#include "examples/files.h"
#include "fuzz/model.h"

/// The text is of the first few pieces or of most, so that some have one kind or digits only.
static std::string RandomLine(std::minstd_rand& chance) {
    static std::string const pieces[] = {
        "a",    "1f",   "0",    "B",  "A9",       "bc",         "key",
        " ",    "G",    "x",    "+",  "-",        "0x",         "\t",
        "/",    ":",    "@",    "`",  "g",        "rue",        "\u0600",
        "Kk",   "True", "tRuE", ".5", "\u20ac",   "\u00e9",     "\u017f",
        "\xC3", "\xFF", "\xF2", "e",  "\xE2\x82", "\U0001F600", std::string(1, '\0')};
    auto const name = std::next(Line::allNames.begin(), chance() % Line::allNames.size());
    std::string line = *name + ' ';
    for (int number = 1; number <= 4; ++number)
        line += "0123456789/01234Az\xF0"[chance() % 19];
    auto const kinds = 1 + chance() % std::size(pieces);
    for (auto count = chance() % (chance() % 20 == 0 ? 200 : 6); count > 0; --count)
        line += pieces[chance() % kinds];
    return line + '\n';
}

/// FOLDER [COUNT-OF-RANDOM-OPERATIONS [SEED]]
int main(int count, char** arguments) {
    for (auto const& file : std::filesystem::directory_iterator(arguments[1])) {
        std::cerr << file.path() << std::endl;  // the last one shown is the one that fails
        Try(ReadFile(file.path()));
    }
    Try("\n");  // which collects the names
    std::minstd_rand chance(count > 3 ? std::atoi(arguments[3]) : 1);
    for (long left = count > 2 ? std::atol(arguments[2]) : 0; left > 0; left -= applied.size()) {
        std::string input;
        for (int line = 0; line < 20; ++line)
            input += RandomLine(chance);
        Try(input);
    }
}
