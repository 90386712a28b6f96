// SPDX-License-Identifier: Apache-2.0
#include "convert/shaper_kernels.h"

#include "base/instruction_set.h"

namespace lumoxa {
namespace portable {
extern const engine::ShaperKernels kShaperKernels;
}
namespace avx2 {
extern const engine::ShaperKernels kShaperKernels;
}

namespace engine {

const ShaperKernels& shaperKernels() {
#if defined(LUMOXA_HAS_AVX2)
    if (usesAvx2()) return avx2::kShaperKernels;
#endif
    return portable::kShaperKernels;
}

}  // namespace engine
}  // namespace lumoxa
