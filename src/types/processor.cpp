#include "types/processor.h"

// The C library asked the processor when the program started. The compiler's run time would ask it
// again whenever the library is loaded, a dozen times, each of which leaves a virtual machine.
#if __has_include(<sys/platform/x86.h>)
#define _Bool bool  // which the header needs and not every compiler has in C++
#include <sys/platform/x86.h>
#define COMMONAPI_PROCESSOR_HAS(c_library_name, compiler_name) CPU_FEATURE_ACTIVE(c_library_name)
#elif defined(__x86_64__)
#define COMMONAPI_PROCESSOR_HAS(c_library_name, compiler_name) __builtin_cpu_supports(compiler_name)
#else
#define COMMONAPI_PROCESSOR_HAS(c_library_name, compiler_name) false
#endif

namespace CommonAPI::internal {

bool HasAvx2() {
    return COMMONAPI_PROCESSOR_HAS(AVX2, "avx2");
}

bool HasAvx512VbmiAndGfni() {
    return COMMONAPI_PROCESSOR_HAS(AVX512F, "avx512f") &&
           COMMONAPI_PROCESSOR_HAS(AVX512BW, "avx512bw") &&
           COMMONAPI_PROCESSOR_HAS(AVX512_VBMI, "avx512vbmi") &&
           COMMONAPI_PROCESSOR_HAS(GFNI, "gfni");
}

}  // namespace CommonAPI::internal
