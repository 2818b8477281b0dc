#include <sys/mman.h>

#include "fuzz/target.h"

static std::string Bare(std::string const& text) {
    auto const blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    auto const begin = std::find_if_not(text.begin(), text.end(), blank);
    return {begin, std::find_if_not(text.rbegin(), std::reverse_iterator(begin), blank).base()};
}

static void Try(std::string const& input) {
    static std::string const path = "/dev/fd/" + std::to_string(memfd_create("settings", 0));
    WriteFile(path, input);
    std::map<std::string, std::string> expected;
    std::string message;
    std::istringstream lines(input);
    std::string line;
    for (int number = 1; message.empty() && std::getline(lines, line); ++number) {
        auto const separator = line.find('=');
        if (Bare(line).empty() || Bare(line)[0] == '#')
            continue;
        if (separator == std::string::npos)
            message = path + ":" + std::to_string(number) + ": no '=' in this line";
        else  // a value ends at its first zero
            expected[Bare(line.substr(0, separator))] = Bare(line.substr(separator + 1)).c_str();
    }
    try {
        AttributeMap settings = ReadSettings(path);
        Check(settings.size() == static_cast<long>(expected.size()) && message.empty());
        for (auto const& [key, value] : expected)
            Check(settings[key] == value.c_str());
    } catch (std::runtime_error const& error) {
        Check(error.what() == message);
    }
}
