#ifndef COMMONAPI_TOOLS_TERMINAL_H
#define COMMONAPI_TOOLS_TERMINAL_H

#include <unistd.h>

#include <cstddef>
#include <string>

#include "secret.h"

/// A file's descriptor, closed at the end; negative if the file could not be opened.
struct Descriptor {
    int const number;

    explicit Descriptor(int opened) : number(opened) {}
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;
    ~Descriptor() {
        if (number >= 0)
            close(number);
    }
};

/// Adds to `line` what comes up to a line end or the end of the file, and takes nothing that
/// follows. False, with the line unfinished, once there is something to read at `interruption`.
/// Throws `std::runtime_error` if the file cannot be read or the line is longer than `longest`.
bool ReadLine(int file, std::size_t longest, Secret& line, int interruption = -1);

/// A line that is typed at the terminal, which does not show it. Throws `std::runtime_error` if
/// there is no terminal or the line has more than 1,023 characters.
Secret ReadHiddenLine(std::string const& prompt);

#endif
