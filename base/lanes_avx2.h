// SPDX-License-Identifier: Apache-2.0
//
// Eight lanes in registers of AVX2.
#pragma once

#include <cstdint>
#include <cstring>

#include <immintrin.h>

#define LUMOXA_LANES avx2
namespace lumoxa::avx2 {

struct Floats {
    __m256 v;
};
struct Ints {
    __m256i v;
};

static inline Floats load(const float* from) {
    return {_mm256_loadu_ps(from)};
}
static inline Ints load(const uint32_t* from) {
    return {_mm256_loadu_si256(reinterpret_cast<const __m256i*>(from))};
}
/// Four 16-bit numbers of each place.
static inline Ints loadFours(const uint16_t* low, const uint16_t* high) {
    const __m128i first = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(low));
    const __m128i second = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(high));
    return {_mm256_cvtepu16_epi32(_mm_unpacklo_epi64(first, second))};
}
/// Four floats of each place.
static inline Floats loadFours(const float* low, const float* high) {
    return {_mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(low)), _mm_loadu_ps(high), 1)};
}
/// Each of two numbers four times.
static inline Floats twoFours(float low, float high) {
    return {_mm256_insertf128_ps(_mm256_castps128_ps256(_mm_set1_ps(low)), _mm_set1_ps(high), 1)};
}
static inline Ints widened(const uint16_t* from) {
    return {_mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)))};
}
static inline Ints widened(const uint8_t* from) {
    return {_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(from)))};
}
static inline void store(Floats a, float* to) {
    _mm256_storeu_ps(to, a.v);
}
static inline void store(Ints a, uint32_t* to) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), a.v);
}
/// The lower bits of each lane.
static inline void storeNarrow(Ints a, uint16_t* to) {
    const __m256i low = _mm256_and_si256(a.v, _mm256_set1_epi32(0xFFFF));
    const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi32(low, low), 0xD8);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm256_castsi256_si128(packed));
}
static inline void storeNarrow(Ints a, uint8_t* to) {
    const __m256i low = _mm256_and_si256(a.v, _mm256_set1_epi32(0xFF));
    const __m256i words = _mm256_permute4x64_epi64(_mm256_packus_epi32(low, low), 0xD8);
    const __m128i bytes = _mm_packus_epi16(_mm256_castsi256_si128(words), _mm_setzero_si128());
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), bytes);
}

static inline Floats all(float a) {
    return {_mm256_set1_ps(a)};
}
static inline Ints all(uint32_t a) {
    return {_mm256_set1_epi32(static_cast<int32_t>(a))};
}
static inline Floats operator+(Floats a, Floats b) {
    return {_mm256_add_ps(a.v, b.v)};
}
static inline Floats operator-(Floats a, Floats b) {
    return {_mm256_sub_ps(a.v, b.v)};
}
static inline Floats operator*(Floats a, Floats b) {
    return {_mm256_mul_ps(a.v, b.v)};
}
static inline Floats operator/(Floats a, Floats b) {
    return {_mm256_div_ps(a.v, b.v)};
}
static inline Ints operator+(Ints a, Ints b) {
    return {_mm256_add_epi32(a.v, b.v)};
}
static inline Ints operator-(Ints a, Ints b) {
    return {_mm256_sub_epi32(a.v, b.v)};
}
static inline Ints operator*(Ints a, Ints b) {
    return {_mm256_mullo_epi32(a.v, b.v)};
}
static inline Ints operator&(Ints a, Ints b) {
    return {_mm256_and_si256(a.v, b.v)};
}
static inline Ints operator|(Ints a, Ints b) {
    return {_mm256_or_si256(a.v, b.v)};
}
/// The bits of b that a has not.
static inline Ints without(Ints b, Ints a) {
    return {_mm256_andnot_si256(a.v, b.v)};
}
static inline Ints operator>>(Ints a, int bits) {
    return {_mm256_srl_epi32(a.v, _mm_cvtsi32_si128(bits))};
}
/// Each lane by bits of its own, fewer than 32.
static inline Ints operator>>(Ints a, Ints bits) {
    return {_mm256_srlv_epi32(a.v, bits.v)};
}
/// All bits where it holds, none where not; not where a number is none.
static inline Ints operator>(Floats a, Floats b) {
    return {_mm256_castps_si256(_mm256_cmp_ps(a.v, b.v, _CMP_GT_OQ))};
}
/// Of signed numbers.
static inline Ints operator>(Ints a, Ints b) {
    return {_mm256_cmpgt_epi32(a.v, b.v)};
}
static inline Ints select(Ints mask, Ints a, Ints b) {
    return {_mm256_blendv_epi8(b.v, a.v, mask.v)};
}
/// a > b ? a : b, and a < b ? a : b: b where a number is none.
static inline Floats larger(Floats a, Floats b) {
    return {_mm256_max_ps(a.v, b.v)};
}
static inline Floats smaller(Floats a, Floats b) {
    return {_mm256_min_ps(a.v, b.v)};
}
static inline Ints smaller(Ints a, Ints b) {
    return {_mm256_min_epi32(a.v, b.v)};
}
/// Towards zero; what a 32-bit integer can't hold becomes the least.
static inline Ints truncated(Floats a) {
    return {_mm256_cvttps_epi32(a.v)};
}
static inline Floats toFloats(Ints a) {
    return {_mm256_cvtepi32_ps(a.v)};
}
static inline Ints bitsOf(Floats a) {
    return {_mm256_castps_si256(a.v)};
}
static inline Floats floatsOf(Ints bits) {
    return {_mm256_castsi256_ps(bits.v)};
}

// Eight loads and their assembly cost less than a gathering instruction on AMD's processors, and no
// more on Intel's since its gathers wait for one another (INTEL-SA-00828).

/// table[i] in the lower half of a lane, table[i + 1] in the upper.
static inline Ints gatherPairs(const uint16_t* table, Ints i) {
    uint32_t at[8];
    int32_t pair[8];
    store(i, at);
    for (int lane = 0; lane < 8; ++lane)
        std::memcpy(pair + lane, table + at[lane], sizeof *pair);
    return {
        _mm256_setr_epi32(pair[0], pair[1], pair[2], pair[3], pair[4], pair[5], pair[6], pair[7])};
}
static inline Ints gather(const uint32_t* table, Ints i) {
    uint32_t at[8];
    store(i, at);
    const auto value = [&](int lane) { return static_cast<int32_t>(table[at[lane]]); };
    return {_mm256_setr_epi32(value(0), value(1), value(2), value(3), value(4), value(5), value(6),
                              value(7))};
}
/// table[i] and table[i + 1].
static inline void gatherNeighbours(const float* table, Ints i, Floats& first, Floats& second) {
    uint32_t at[8];
    store(i, at);
    const auto pair = [&](int lane) {  // two floats as one number
        double floats;
        std::memcpy(&floats, table + at[lane], sizeof floats);
        return floats;
    };
    const auto two = [&](int lane) {
        return _mm_castpd_ps(_mm_set_pd(pair(lane + 1), pair(lane)));
    };
    const auto four = [&](int lane) {
        return _mm256_insertf128_ps(_mm256_castps128_ps256(two(lane)), two(lane + 4), 1);
    };
    const __m256 even = four(0), odd = four(2);  // lanes 0, 1 and 4, 5; 2, 3 and 6, 7
    first = {_mm256_shuffle_ps(even, odd, 0x88)};
    second = {_mm256_shuffle_ps(even, odd, 0xDD)};
}

}  // namespace lumoxa::avx2
