#pragma once

#include <CLI/CLI.hpp>
#include <string>

/// Where a password, or a sealed key in hexadecimal, comes from: never from the command line
/// itself, which other users of the machine can see.
class PasswordSource {
public:
    void addOptions(CLI::App& command);

    /// The first line of the file, the variable, or what is typed at the terminal. Throws
    /// `std::runtime_error` for one that cannot be had, is empty or holds a zero character.
    std::string read(char const* prompt) const;

private:
    std::string file;
    std::string variable;
};
