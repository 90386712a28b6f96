// SPDX-License-Identifier: Apache-2.0
//
// Eight lanes as two vectors of four, or as arrays where the compiler has no vectors. Operations do
// what lanes_avx2.h says of those of the same names.
#pragma once

#include <bit>
#include <cstdint>

#if defined(LUMOXA_PLAIN_LANES)  // the arrays, beside another form
#define LUMOXA_LANES arrays
#else
#define LUMOXA_LANES portable
#endif
namespace lumoxa::LUMOXA_LANES {

#if defined(__GNUC__) && !defined(LUMOXA_PLAIN_LANES)

// Vectors as wide as every processor of the kind has; the compiler knows its instructions.
using Four = float __attribute__((vector_size(16)));
using FourInts = uint32_t __attribute__((vector_size(16)));
using FourSigned = int32_t __attribute__((vector_size(16)));

/// Four samples, of which vectors of half or a quarter the width exist.
static inline FourInts widenedFour(const uint16_t* from) {
    using Words = uint16_t __attribute__((vector_size(8)));
    Words words;
    __builtin_memcpy(&words, from, sizeof words);
    return __builtin_convertvector(words, FourInts);
}
static inline FourInts widenedFour(const uint8_t* from) {
    using Bytes = uint8_t __attribute__((vector_size(4)));
    Bytes bytes;
    __builtin_memcpy(&bytes, from, sizeof bytes);
    return __builtin_convertvector(bytes, FourInts);
}
static inline FourInts asUnsigned(FourSigned a) {
    return reinterpret_cast<FourInts>(a);
}
static inline Four chosen(FourSigned comparison, Four a, Four b) {
    return comparison ? a : b;
}
static inline FourSigned asSigned(FourInts a) {
    return reinterpret_cast<FourSigned>(a);
}
static inline Four converted(FourSigned a) {
    return __builtin_convertvector(a, Four);
}
static inline FourSigned converted(Four a) {
    return __builtin_convertvector(a, FourSigned);
}
static inline FourInts bitsOf(Four a) {
    return reinterpret_cast<FourInts>(a);
}
static inline Four floatsOf(FourInts a) {
    return reinterpret_cast<Four>(a);
}

#else

template <class T>
struct FourOf {
    T lane[4];
    T& operator[](int i) { return lane[i]; }
    T operator[](int i) const { return lane[i]; }
};
using Four = FourOf<float>;
using FourInts = FourOf<uint32_t>;
using FourSigned = FourOf<int32_t>;

template <class Result, class Operation>
static inline FourOf<Result> eachOf(Operation operation) {
    return {{operation(0), operation(1), operation(2), operation(3)}};
}
template <class Sample>
static inline FourInts widenedFour(const Sample* from) {
    return eachOf<uint32_t>([=](int i) { return uint32_t{from[i]}; });
}
template <class T>
static inline FourOf<T> operator+(FourOf<T> a, FourOf<T> b) {
    return eachOf<T>([&](int i) { return a[i] + b[i]; });
}
template <class T>
static inline FourOf<T> operator-(FourOf<T> a, FourOf<T> b) {
    return eachOf<T>([&](int i) { return a[i] - b[i]; });
}
template <class T>
static inline FourOf<T> operator*(FourOf<T> a, FourOf<T> b) {
    return eachOf<T>([&](int i) { return a[i] * b[i]; });
}
static inline Four operator/(Four a, Four b) {
    return eachOf<float>([&](int i) { return a[i] / b[i]; });
}
static inline FourInts operator&(FourInts a, FourInts b) {
    return eachOf<uint32_t>([&](int i) { return a[i] & b[i]; });
}
static inline FourInts operator|(FourInts a, FourInts b) {
    return eachOf<uint32_t>([&](int i) { return a[i] | b[i]; });
}
static inline FourInts operator~(FourInts a) {
    return eachOf<uint32_t>([&](int i) { return ~a[i]; });
}
static inline FourInts operator>>(FourInts a, int bits) {
    return eachOf<uint32_t>([&](int i) { return a[i] >> bits; });
}
static inline FourInts operator>>(FourInts a, FourInts bits) {
    return eachOf<uint32_t>([&](int i) { return a[i] >> bits[i]; });
}
template <class T>
static inline FourSigned operator>(FourOf<T> a, FourOf<T> b) {
    return eachOf<int32_t>([&](int i) { return a[i] > b[i] ? -1 : 0; });
}
static inline FourInts asUnsigned(FourSigned a) {
    return eachOf<uint32_t>([&](int i) { return static_cast<uint32_t>(a[i]); });
}
template <class T>
static inline FourOf<T> chosen(FourSigned comparison, FourOf<T> a, FourOf<T> b) {
    return eachOf<T>([&](int i) { return comparison[i] != 0 ? a[i] : b[i]; });
}
static inline FourSigned asSigned(FourInts a) {
    return eachOf<int32_t>([&](int i) { return static_cast<int32_t>(a[i]); });
}
static inline Four converted(FourSigned a) {
    return eachOf<float>([&](int i) { return static_cast<float>(a[i]); });
}
static inline FourSigned converted(Four a) {
    return eachOf<int32_t>([&](int i) { return static_cast<int32_t>(a[i]); });
}
static inline FourInts bitsOf(Four a) {
    return eachOf<uint32_t>([&](int i) { return std::bit_cast<uint32_t>(a[i]); });
}
static inline Four floatsOf(FourInts a) {
    return eachOf<float>([&](int i) { return std::bit_cast<float>(a[i]); });
}

#endif

struct Floats {
    Four low, high;
};
struct Ints {
    FourInts low, high;
};

template <class Value>
static inline Floats floatsBy(Value value) {
    return {Four{value(0), value(1), value(2), value(3)},
            Four{value(4), value(5), value(6), value(7)}};
}
template <class Value>
static inline Ints intsBy(Value value) {
    return {FourInts{value(0), value(1), value(2), value(3)},
            FourInts{value(4), value(5), value(6), value(7)}};
}
static inline Floats load(const float* from) {
    return floatsBy([=](int i) { return from[i]; });
}
static inline Ints load(const uint32_t* from) {
    return intsBy([=](int i) { return from[i]; });
}
static inline Ints loadFours(const uint16_t* low, const uint16_t* high) {
    return {widenedFour(low), widenedFour(high)};
}
static inline Floats loadFours(const float* low, const float* high) {
    return floatsBy([=](int i) { return i < 4 ? low[i] : high[i - 4]; });
}
static inline Floats twoFours(float low, float high) {
    return floatsBy([=](int i) { return i < 4 ? low : high; });
}
template <class Sample>
static inline Ints widened(const Sample* from) {
    return {widenedFour(from), widenedFour(from + 4)};
}
static inline void store(Floats a, float* to) {
    for (int i = 0; i < 4; ++i) {
        to[i] = a.low[i];
        to[4 + i] = a.high[i];
    }
}
template <class Sample>
static inline void storeNarrow(Ints a, Sample* to) {
    for (int i = 0; i < 4; ++i) {
        to[i] = static_cast<Sample>(a.low[i]);
        to[4 + i] = static_cast<Sample>(a.high[i]);
    }
}
static inline void store(Ints a, uint32_t* to) {
    storeNarrow(a, to);
}

static inline Floats all(float a) {
    return twoFours(a, a);
}
static inline Ints all(uint32_t a) {
    return intsBy([=](int) { return a; });
}
static inline Floats operator+(Floats a, Floats b) {
    return {a.low + b.low, a.high + b.high};
}
static inline Floats operator-(Floats a, Floats b) {
    return {a.low - b.low, a.high - b.high};
}
static inline Floats operator*(Floats a, Floats b) {
    return {a.low * b.low, a.high * b.high};
}
static inline Floats operator/(Floats a, Floats b) {
    return {a.low / b.low, a.high / b.high};
}
static inline Ints operator+(Ints a, Ints b) {
    return {a.low + b.low, a.high + b.high};
}
static inline Ints operator-(Ints a, Ints b) {
    return {a.low - b.low, a.high - b.high};
}
static inline Ints operator*(Ints a, Ints b) {
    return {a.low * b.low, a.high * b.high};
}
static inline Ints operator&(Ints a, Ints b) {
    return {a.low & b.low, a.high & b.high};
}
static inline Ints operator|(Ints a, Ints b) {
    return {a.low | b.low, a.high | b.high};
}
static inline Ints without(Ints b, Ints a) {
    return {b.low & ~a.low, b.high & ~a.high};
}
static inline Ints operator>>(Ints a, int bits) {
    return {a.low >> bits, a.high >> bits};
}
static inline Ints operator>>(Ints a, Ints bits) {
    return {a.low >> bits.low, a.high >> bits.high};
}
static inline Ints operator>(Floats a, Floats b) {
    return {asUnsigned(a.low > b.low), asUnsigned(a.high > b.high)};
}
static inline Ints operator>(Ints a, Ints b) {
    return {asUnsigned(asSigned(a.low) > asSigned(b.low)),
            asUnsigned(asSigned(a.high) > asSigned(b.high))};
}
static inline Ints select(Ints mask, Ints a, Ints b) {
    return (a & mask) | without(b, mask);
}
static inline Floats larger(Floats a, Floats b) {
    return {chosen(a.low > b.low, a.low, b.low), chosen(a.high > b.high, a.high, b.high)};
}
static inline Floats smaller(Floats a, Floats b) {
    return {chosen(b.low > a.low, a.low, b.low), chosen(b.high > a.high, a.high, b.high)};
}
static inline Ints smaller(Ints a, Ints b) {
    return select(b > a, a, b);
}
static inline Ints truncated(Floats a) {
    // Bounded before the conversion, so that nothing is undefined.
    const Floats least = all(-2147483648.0f), most = all(2147483520.0f);  // the floats next to 2^31
    const Floats bounded = smaller(larger(a, least), most);
    const Ints integers = {asUnsigned(converted(bounded.low)), asUnsigned(converted(bounded.high))};
    return select(a > most, all(0x80000000U), integers);
}
static inline Floats toFloats(Ints a) {
    return {converted(asSigned(a.low)), converted(asSigned(a.high))};
}
static inline Ints bitsOf(Floats a) {
    return {bitsOf(a.low), bitsOf(a.high)};
}
static inline Floats floatsOf(Ints a) {
    return {floatsOf(a.low), floatsOf(a.high)};
}

static inline uint32_t laneOf(Ints a, int i) {
    return i < 4 ? a.low[i] : a.high[i - 4];
}
static inline Ints gatherPairs(const uint16_t* table, Ints at) {
    return intsBy([=](int i) {
        const uint16_t* const pair = table + laneOf(at, i);
        return uint32_t{pair[0]} | uint32_t{pair[1]} << 16;
    });
}
static inline Ints gather(const uint32_t* table, Ints at) {
    return intsBy([=](int i) { return table[laneOf(at, i)]; });
}
static inline void gatherNeighbours(const float* table, Ints at, Floats& first, Floats& second) {
    first = floatsBy([=](int i) { return table[laneOf(at, i)]; });
    second = floatsBy([=](int i) { return table[laneOf(at, i) + 1]; });
}

}  // namespace lumoxa::LUMOXA_LANES
