#include "tools/commonapi.h"

#include <cstring>
#include <iostream>
#include <sstream>
#include <vector>

#include "fuzz/target.h"

/// Stands in front of the one that asks at the terminal.
extern "C" char* readpassphrase(char const*, char* password, std::size_t, int) {
    return std::strcpy(password, "typed");
}

struct Outcome {
    int status;
    std::string output, errors;
};

static Outcome Run(std::vector<std::string> arguments, std::string const& input) {
    std::istringstream in(input);
    std::ostringstream out, err;
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    std::streambuf* const streams[] = {std::cin.rdbuf(in.rdbuf()), std::cout.rdbuf(out.rdbuf()),
                                       std::cerr.rdbuf(err.rdbuf())};
    int const status = RunCommand(static_cast<int>(arguments.size()), pointers.data());
    std::cin.rdbuf(streams[0]);
    std::cout.rdbuf(streams[1]);
    std::cerr.rdbuf(streams[2]);
    return {status, out.str(), err.str()};
}

static void Try(std::string const& input) {
    // A line of arguments, which must neither run plug-ins nor read files, and the standard input.
    std::size_t const end = std::min(input.find('\n'), input.size());
    std::string const lines = input.substr(std::min(end + 1, input.size()));
    std::istringstream words(input.substr(0, end));
    std::vector<std::string> arguments = {"commonapi"};
    for (std::string word; words >> word;)
        arguments.push_back(word.c_str());
    if (words.str().find("plugin") < end || words.str().find("file") < end)
        return;
    if (arguments.size() > 1) {
        Outcome const outcome = Run(arguments, lines);
        Check((outcome.status == 0) == outcome.errors.empty());
        return;
    }
    Outcome const encrypted = Run({"commonapi", "encrypt"}, lines);
    Check((encrypted.status == 0) == (lines.find('\0') == std::string::npos));
    if (encrypted.status == 0) {
        Outcome const decrypted = Run({"commonapi", "decrypt"}, encrypted.output);
        Check(decrypted.status == 0);
        Check(decrypted.output == lines + (lines.empty() || lines.back() == '\n' ? "" : "\n"));
    }
}
