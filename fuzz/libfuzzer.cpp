#include "fuzz/model.h"

extern "C" int LLVMFuzzerTestOneInput(char const* data, std::size_t size) {
    Try({data, size});
    return 0;
}
