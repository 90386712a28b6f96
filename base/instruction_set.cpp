// SPDX-License-Identifier: Apache-2.0
#include "base/instruction_set.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#if defined(_MSC_VER) && defined(_M_X64)
#include <intrin.h>
#endif

namespace lumoxa {
namespace {

#if defined(_MSC_VER) && defined(_M_X64)

bool hasAvx2() {
    // CPUID leaf 1: OSXSAVE and AVX in ECX; leaf 7: AVX2 in EBX. XCR0: the system saves SSE and AVX
    // registers.
    constexpr int kOsXsaveAndAvx = 3 << 27, kAvx2 = 1 << 5;
    constexpr uint64_t kSavedRegisters = 6;
    int registers[4];
    __cpuid(registers, 0);
    if (registers[0] < 7) return false;
    __cpuid(registers, 1);
    if ((registers[2] & kOsXsaveAndAvx) != kOsXsaveAndAvx) return false;
    if ((_xgetbv(0) & kSavedRegisters) != kSavedRegisters) return false;
    __cpuidex(registers, 7, 0);
    return (registers[1] & kAvx2) != 0;
}

#elif defined(LUMOXA_HAS_AVX2)

bool hasAvx2() {
    return __builtin_cpu_supports("avx2") != 0;
}

#else

bool hasAvx2() {
    return false;
}

#endif

bool asksForPortable() {
    const char* const wish = std::getenv("LUMOXA_SIMD");
    return wish != nullptr && std::strcmp(wish, "portable") == 0;
}

}  // namespace

bool usesAvx2() {
    static const bool uses = hasAvx2() && !asksForPortable();
    return uses;
}

}  // namespace lumoxa
