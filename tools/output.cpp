#include "output.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <stdexcept>

#include "text.h"

void Report(std::string_view message) {
    std::cerr << "commonapi: " << Printable(message) << '\n';
}

void FinishOutput() {
    if (!std::cout.flush())
        throw std::runtime_error("the output cannot be written");
}

std::string SystemError() {
    return std::strerror(errno);
}
