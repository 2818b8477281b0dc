#include "password.h"

#include <readpassphrase.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace {

std::string FromFile(std::string const& path) {
    std::string line;
    std::ifstream file(path);
    if (!std::getline(file, line) && !file.eof())
        throw std::runtime_error(path + ": cannot be read");
    return line;
}

std::string FromVariable(std::string const& name) {
    char const* const value = std::getenv(name.c_str());
    if (!value)
        throw std::runtime_error("the environment has no variable " + name);
    return value;
}

std::string FromTerminal(char const* prompt) {
    char line[1024];
    if (!readpassphrase(prompt, line, sizeof line, RPP_REQUIRE_TTY | RPP_ECHO_OFF))
        throw std::runtime_error(
            "no terminal to ask at; name a source with --password-file or --password-env");
    return line;
}

}  // namespace

void PasswordSource::addOptions(CLI::App& command) {
    auto* const fromFile = command.add_option("--password-file", file,
                                              "Take the first line of this file as the password");
    command
        .add_option("--password-env", variable,
                    "Take the value of this environment variable as the password")
        ->excludes(fromFile);
}

std::string PasswordSource::read(char const* prompt) const {
    std::string password = !file.empty()       ? FromFile(file)
                           : !variable.empty() ? FromVariable(variable)
                                               : FromTerminal(prompt);
    if (password.empty())
        throw std::runtime_error("the password is empty");
    if (password.find('\0') != std::string::npos)
        throw std::runtime_error("the password holds a zero character");
    return password;
}
