#include "crypto/blowfish_kernel.h"

#include <algorithm>
#include <iterator>

namespace CommonAPI::internal {
namespace {

#ifdef COMMONAPI_BLOWFISH_AVX512VBMI
// Asked here and not in the kernel's file, whose code may need what is being asked for. The
// compiler's run-time reports these features only if the system also saves the registers.
bool HasAvx512Vbmi() {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
           __builtin_cpu_supports("avx512vbmi");
}
#endif

BlowfishKernel const kernels[] = {
#ifdef COMMONAPI_BLOWFISH_AVX512VBMI
    {"avx512vbmi", HasAvx512Vbmi, EncryptBlowfishAvx512Vbmi, DecryptBlowfishAvx512Vbmi},
#endif
    {"portable", [] { return true; }, EncryptBlowfishPortable, DecryptBlowfishPortable},
};

}  // namespace

std::span<BlowfishKernel const> BlowfishKernels() {
    return kernels;
}

BlowfishKernel const& ChosenBlowfishKernel() {
    static BlowfishKernel const& chosen =
        *std::find_if(std::begin(kernels), std::end(kernels),
                      [](BlowfishKernel const& kernel) { return kernel.supported(); });
    return chosen;
}

}  // namespace CommonAPI::internal
