#include "tools/commonapi.h"

#include "fuzz/target.h"

/// Stands in front of the one that asks at the terminal.
extern "C" char* readpassphrase(char const*, char* password, std::size_t, int) {
    return std::strcpy(password, "typed");
}

using Outcome = std::tuple<int, std::string, std::string>;

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
    std::cin.rdbuf(streams[0]), std::cout.rdbuf(streams[1]), std::cerr.rdbuf(streams[2]);
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
        auto const [status, output, errors] = Run(arguments, lines);
        return Check((status == 0) == errors.empty());
    }
    auto const [status, encrypted, errors] = Run({"commonapi", "encrypt"}, lines);
    Check((status == 0) == (lines.find('\0') == std::string::npos));
    std::string const open = lines.empty() || lines.back() == '\n' ? "" : "\n";
    if (status == 0)
        Check(Run({"commonapi", "decrypt"}, encrypted) == Outcome(0, lines + open, ""));
}
