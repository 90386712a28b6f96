// SPDX-License-Identifier: Apache-2.0
//
// Which form of the vector kernels made the bytes: a run with LUMOXA_SIMD=portable that used AVX2
// after all would prove nothing.
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "base/instruction_set.h"
#include "lut/row_kernels.h"

namespace lumoxa {
namespace portable {
extern const RowKernels kRowKernels;
}
}  // namespace lumoxa

namespace lumoxa_test {
namespace {

TEST(VectorForm, IsWhatTheEnvironmentAsksFor) {
    const char* const asked = std::getenv("LUMOXA_SIMD");
    const bool portable = asked != nullptr && std::string(asked) == "portable";
    EXPECT_EQ(&lumoxa::rowKernels() == &lumoxa::portable::kRowKernels, !lumoxa::usesAvx2());
    EXPECT_FALSE(portable && lumoxa::usesAvx2());
#if defined(__x86_64__)
    EXPECT_EQ(lumoxa::usesAvx2(), !portable && __builtin_cpu_supports("avx2") != 0);
#endif
}

}  // namespace
}  // namespace lumoxa_test
