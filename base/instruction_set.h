// SPDX-License-Identifier: Apache-2.0
//
// What the processor at hand can run.
#pragma once

namespace lumoxa {

/// Whether vector kernels run in their AVX2 form: the processor has AVX2, the system keeps its
/// registers, and the environment variable LUMOXA_SIMD is not "portable". Settled at the first
/// call; any thread.
bool usesAvx2();

}  // namespace lumoxa
