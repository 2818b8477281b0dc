#include <sys/mman.h>

#include "fuzz/target.h"

static void Try(std::string const& input) {
    static std::string const path = "/dev/fd/" + std::to_string(memfd_create("settings", 0));
    WriteFile(path, input);
    std::map<std::string, std::string> expected;
    std::string message, line;
    std::istringstream lines(input);
    for (int number = 1; message.empty() && std::getline(lines, line); ++number) {
        auto const separator = line.find('=');
        if (Trimmed(line).empty() || Trimmed(line)[0] == '#')
            continue;
        if (separator == std::string::npos)
            message = path + ":" + std::to_string(number) + ": no '=' in this line";
        else  // a value ends at its first zero
            expected[Trimmed(line.substr(0, separator))] =
                Trimmed(line.substr(separator + 1)).c_str();
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
