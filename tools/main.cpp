#include <ios>

#include "commonapi.h"

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    return RunCommand(argc, argv);
}
