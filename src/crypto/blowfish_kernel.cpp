#include "crypto/blowfish_kernel.h"

#include <algorithm>
#include <iterator>

#include "types/processor.h"

namespace CommonAPI::internal {
namespace {

BlowfishKernel const kernels[] = {
#ifdef COMMONAPI_BLOWFISH_AVX512VBMI
    {"avx512vbmi", HasAvx512VbmiAndGfni, EncryptBlowfishAvx512Vbmi, DecryptBlowfishAvx512Vbmi},
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
