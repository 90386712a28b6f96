// SPDX-License-Identifier: Apache-2.0
//
// Ready-made tag data: XYZ values, tone curves and descriptions, in file byte order.
#include <cmath>
#include <cstring>
#include <limits>

#include "base/byte_order.h"
#include "base/c_heap.h"
#include "lumoxa/tags.h"
#include "profile/signatures.h"

namespace lumoxa {
namespace {

constexpr size_t kBody = sizeof(icTagBase);
constexpr int kXyzTagBytes = kBody + 3 * 4;

// A 'curv' is its count and entries; the tags made here have two zero bytes more.
constexpr size_t kCurveOverhead = kBody + 4 + 2;

// A textDescriptionType around a text of no characters: the count, the NUL, the Unicode language
// and count, the ScriptCode code, count and 67 bytes; here with three zero bytes more.
constexpr size_t kDescriptionOverhead = kBody + 4 + 1 + (4 + 4) + (2 + 1 + 67) + 3;

/// s15Fixed16: half a step is added and the fraction dropped, so that negative values are rounded
/// towards zero. Out of range, the lower 32 bits of the 64-bit integer are kept, which are 0 where
/// the value has no such integer.
uint32_t fixed16(float value) {
    constexpr double kInt64Range = 9223372036854775808.0;  // 2^63
    const double scaled = static_cast<double>(value) * 65536.0 + 0.5;
    if (!(std::fabs(scaled) < kInt64Range)) return 0;
    return static_cast<uint32_t>(static_cast<int64_t>(scaled));
}

template <class T>
void storeFileOrder(uint8_t* at, T value) {
    storeRaw(at, fromFileOrder(value));
}

/// Hands out a tag of `size` bytes whose body `fill` writes; its size, or 0 without memory or for a
/// size that is no int.
template <class Fill>
int handOut(icTagTypeSignature type, size_t size, icTagBase** out, Fill fill) {
    if (size > static_cast<size_t>(std::numeric_limits<int>::max())) return 0;
    auto tag = allocateZeroed<uint8_t>(size);
    if (tag == nullptr) return 0;
    storeFileOrder(tag.get(), type);
    fill(tag.get() + kBody);
    *out = reinterpret_cast<icTagBase*>(tag.release());
    return static_cast<int>(size);
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

int icFillWhitePoint(float X, float Y, float Z, icTagBase** tag) {
    if (tag == nullptr) return 0;
    *tag = nullptr;
    return handOut(kTypeXyz, kXyzTagBytes, tag, [&](uint8_t* body) {
        for (const float value : {X, Y, Z}) {
            storeFileOrder(body, fixed16(value));
            body += 4;
        }
    });
}

int icFillTrc(const unsigned short* entries, int n, icTagBase** tag) {
    if (tag == nullptr) return 0;
    *tag = nullptr;
    if (n < 0 || (entries == nullptr && n > 0)) return 0;
    const auto count = static_cast<size_t>(n);
    return handOut(kTypeCurve, count * 2 + kCurveOverhead, tag, [&](uint8_t* body) {
        storeFileOrder(body, static_cast<uint32_t>(count));
        for (size_t i = 0; i < count; ++i) {
            storeFileOrder<uint16_t>(body + 4 + 2 * i, entries[i]);
        }
    });
}

int icFillProfileDescription(const char* text, icTagBase** tag) {
    if (tag == nullptr) return 0;
    *tag = nullptr;
    if (text == nullptr) return 0;
    const size_t length = std::strlen(text);
    return handOut(kTypeDescription, length + kDescriptionOverhead, tag, [&](uint8_t* body) {
        storeFileOrder(body, static_cast<uint32_t>(length + 1));
        std::memcpy(body + 4, text, length + 1);
    });
}
