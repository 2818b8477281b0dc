#ifndef COMMONAPI_TOOLS_PASSWORD_H
#define COMMONAPI_TOOLS_PASSWORD_H

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "secret.h"

/// Where a password, or a sealed key in hexadecimal, comes from: never from the command line
/// itself, which other users of the machine can see.
class PasswordSource {
public:
    void addOptions(CLI::App& command);

    enum class Asked { once, twice };

    /// The first line of the file, the variable, which is overwritten, or what is typed at the
    /// terminal. From then on the process leaves no core file. Throws `std::runtime_error` for one
    /// that cannot be had, is empty or holds a zero character.
    Secret read(std::string const& prompt, Asked asked) const;

private:
    std::optional<std::string> file;
    std::optional<std::string> variable;
};

#endif
