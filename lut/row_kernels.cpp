// SPDX-License-Identifier: Apache-2.0
#include "lut/row_kernels.h"

#include "base/instruction_set.h"

namespace lumoxa {
namespace portable {
extern const RowKernels kRowKernels;
}
namespace avx2 {
extern const RowKernels kRowKernels;
}

const RowKernels& rowKernels() {
#if defined(LUMOXA_HAS_AVX2)
    if (usesAvx2()) return avx2::kRowKernels;
#endif
    return portable::kRowKernels;
}

}  // namespace lumoxa
