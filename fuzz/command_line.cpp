#include "tools/commonapi.h"

#include "fuzz/target.h"

using Outcome = std::tuple<int, std::string, std::string>;

static Outcome Run(std::vector<std::string> arguments, std::string const& input) {
    setenv("PW", "key", 1);  // again, as the command overwrites it
    std::istringstream in(input);
    std::ostringstream out, err;
    std::vector<char*> pointers(arguments.size() + 1);
    std::transform(arguments.begin(), arguments.end(), pointers.begin(),
                   [](std::string& argument) { return argument.data(); });
    std::streambuf* const streams[] = {std::cin.rdbuf(in.rdbuf()), std::cout.rdbuf(out.rdbuf()),
                                       std::cerr.rdbuf(err.rdbuf())};
    int const status = RunCommand(static_cast<int>(arguments.size()), pointers.data());
    std::cin.rdbuf(streams[0]);
    std::cout.rdbuf(streams[1]);
    std::cerr.rdbuf(streams[2]);
    return {status, out.str(), err.str()};
}

/// Lines come back; those that are no text only if they are asked for as they are.
static void TryRoundTrip(std::string const& lines) {
    auto const [status, encrypted, remarks] =
        Run({"commonapi", "encrypt", "--password-env", "PW"}, lines);
    Check((status == 0) == (lines.find('\0') == std::string::npos));
    if (status != 0)
        return;
    std::string const end = lines.empty() || lines.back() == '\n' ? "" : "\n";
    Outcome const back = {0, lines + end, ""};
    Check(Run({"commonapi", "decrypt", "--raw", "--password-env", "PW"}, encrypted) == back);
    Outcome const text = Run({"commonapi", "decrypt", "--password-env", "PW"}, encrypted);
    Check((text == back) == (remarks.find("decrypt wants --raw") == std::string::npos));
}

/// The first line has the arguments, which must neither run plug-ins nor read files nor ask.
static void Try(std::string const& input) {
    std::size_t const end = std::min(input.find('\n'), input.size());
    std::string const lines = input.substr(std::min(end + 1, input.size()));
    std::istringstream words(input.substr(0, end));
    std::vector<std::string> arguments = {"commonapi"};
    for (std::string word; words >> word;)
        arguments.push_back(word.c_str());
    if (words.str().find("plugin") < end || words.str().find("file") < end)
        return;
    if (arguments.size() == 1)
        return TryRoundTrip(lines);
    if (arguments[1][0] != '-')
        arguments.insert(arguments.begin() + 2, {"--password-env", "PW"});
    auto const [status, output, errors] = Run(arguments, lines);
    Check(status == 0 || !errors.empty());
}
