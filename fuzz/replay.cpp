// Tries each file of a folder, as libFuzzer does, in any build.

#include <filesystem>
#include <iostream>

#include "examples/files.h"

extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size);

int main(int, char** arguments) {
    for (auto const& file : std::filesystem::directory_iterator(arguments[1])) {
        std::cerr << file.path() << std::endl;  // the last one shown is the one that fails
        std::string const input = ReadFile(file.path());
        LLVMFuzzerTestOneInput(reinterpret_cast<unsigned char const*>(input.data()), input.size());
    }
}
