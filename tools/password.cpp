#include "password.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "output.h"
#include "terminal.h"
#include "text.h"

namespace {

constexpr std::size_t longestInFile = 1 << 20;

Secret FromDescriptor(int file, std::string const& name) {
    struct stat status;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
        (status.st_mode & (S_IRGRP | S_IROTH)) != 0)
        Report(name + ": other users can read this password");
    try {
        Secret line;
        ReadLine(file, longestInFile, line);
        return line;
    } catch (std::runtime_error const& failure) {
        throw std::runtime_error(name + ": " + failure.what());
    }
}

Secret FromFile(std::string const& path) {
    if (path == "-")
        return FromDescriptor(STDIN_FILENO, "standard input");
    Descriptor const file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.number < 0)
        throw std::runtime_error(path + ": " + SystemError());
    return FromDescriptor(file.number, path);
}

Secret FromVariable(std::string const& name) {
    char* const value = std::getenv(name.c_str());
    if (!value)
        throw std::runtime_error("the environment has no variable " + name);
    std::size_t const length = std::strlen(value);
    Secret password(value, value + length);
    CommonAPI::internal::Wipe(value, length);
    return password;
}

Secret FromTerminal(std::string const& prompt, PasswordSource::Asked asked) {
    Secret password = ReadHiddenLine(prompt + ": ");
    bool const again = asked == PasswordSource::Asked::twice && !password.empty();
    if (again && ReadHiddenLine("The same again: ") != password)
        throw std::runtime_error("the two are not the same");
    return password;
}

}  // namespace

void PasswordSource::addOptions(CLI::App& command) {
    auto* const fromFile =
        command
            .add_option("--password-file", file,
                        "Take the first line of this file as the password; -: of standard input")
            ->type_name("FILE");
    command
        .add_option("--password-env", variable,
                    "Take the value of this environment variable as the password")
        ->type_name("NAME")
        ->excludes(fromFile);
}

Secret PasswordSource::read(std::string const& prompt, Asked asked) const {
    prctl(PR_SET_DUMPABLE, 0);
    Secret const given = variable ? FromVariable(*variable)
                         : file && (*file != "-" || !isatty(STDIN_FILENO))
                             ? FromFile(*file)
                             : FromTerminal(prompt, asked);
    std::string_view const password = WithoutFileMarks({given.data(), given.size()});
    if (password.empty())
        throw std::runtime_error("the password is empty");
    if (password.find('\0') != std::string_view::npos)
        throw std::runtime_error("the password holds a zero character");
    return {password.begin(), password.end()};
}
