// SPDX-License-Identifier: Apache-2.0
//
// Handles that release themselves, and one-line ways to get and run a transform.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "lumoxa/lumoxa.h"
#include "profile/profile_object.h"
#include "profile/signatures.h"
#include "profile/tag_reader.h"
#include "tests/support/profile_bytes.h"

namespace lumoxa_test {

using lumoxa::fourcc;
using Samples = std::vector<uint16_t>;  // of either depth; 8-bit ones lie in 0..255

template <auto release>
struct Release {
    template <class T>
    void operator()(T* handle) const {
        release(handle);
    }
};
using OwnedProfile = std::unique_ptr<const icProfileInternal, Release<icProfileFree>>;
using OwnedXform = std::unique_ptr<const icXformInternal, Release<icXformFree>>;

/// base to the power of n, exactly.
inline size_t power(size_t base, size_t n) {
    return n == 0 ? 1 : base * power(base, n - 1);
}

inline uint32_t signature(const std::string& text) {
    uint32_t value = 0;
    for (const char c : text)
        value = value << 8 | static_cast<uint8_t>(c);
    return value;
}

inline OwnedProfile loaded(const Bytes& image) {
    icProfile_t profile = nullptr;
    EXPECT_EQ(icProfileLoadFromBuffer(nullptr, image.data(), image.size(), &profile), 0);
    return OwnedProfile(profile);
}

/// A profile whose tags stay in that file.
inline OwnedProfile opened(const std::string& path) {
    icProfile_t profile = nullptr;
    EXPECT_EQ(icLoadProfile(path.c_str(), &profile), 0);
    return OwnedProfile(profile);
}

/// Signatures and data of the tags of a profile in memory.
inline std::vector<std::pair<uint32_t, Bytes>> tagsOf(const OwnedProfile& profile) {
    std::vector<std::pair<uint32_t, Bytes>> tags;
    for (int i = 0; i < profile->tagList->count; ++i) {
        const icTag_safe64bit& entry = profile->tagList->tags[i];
        const uint8_t* first = lumoxa::tagAddress(entry);
        tags.emplace_back(entry.signature, Bytes(first, first + entry.size));
    }
    return tags;
}

/// The result code of asking for a transform, which lands in `out`; null unless the code is 0.
inline int request(const Bytes& image, uint32_t intent, uint32_t transType, OwnedXform& out) {
    icXform_t xform = nullptr;
    const int code =
        icXformGet(loaded(image).get(), icRenderingIntent{intent}, icTransType{transType}, &xform);
    EXPECT_EQ(code == 0, xform != nullptr);
    out.reset(xform);
    return code;
}

inline OwnedXform requested(const ProfileBytes& profile, uint32_t intent, uint32_t transType) {
    OwnedXform xform;
    EXPECT_EQ(request(profile.image(), intent, transType, xform), 0);
    return xform;
}

/// A profile that holds nothing but one device-to-connection-space LUT tag between the two spaces.
inline ProfileBytes lutProfile(const Bytes& tag, const std::string& in, const std::string& out) {
    return ProfileBytes("spac", in, out).addTag("A2B0", tag);
}

/// A lut16 tag whose curves have two entries and change nothing.
inline Bytes gridTag(uint32_t inputs, uint32_t outputs, uint32_t grid, const Samples& clut) {
    LutContent c;
    c.inputs = inputs, c.outputs = outputs, c.grid = grid;
    c.inEntries = c.outEntries = 2;
    c.clut = clut;
    return lut16Tag(c);
}

/// What a chain makes, which has to give that result code; null unless the code is 0.
inline OwnedXform combined(const std::vector<icXform_t>& chain, int options = 0, int code = 0) {
    const int count = static_cast<int>(chain.size());
    icXform_t out = nullptr;
    EXPECT_EQ(icCombineXforms(count, chain.data(), &out, options, nullptr, nullptr, nullptr, 0),
              code);
    EXPECT_EQ(code == 0, out != nullptr);
    return OwnedXform(out);
}

/// A progress callback's user data: records its calls, and answers 1 to the progress call number
/// `stopAfter`, counted from 0.
struct Listener {
    int atStart = 0, atEnd = 0, stopAfter = -1;
    std::vector<std::pair<int, int>> calls = {};
    static int hear(icIterState state, int percent, void* user) {
        auto& self = *static_cast<Listener*>(user);
        self.calls.emplace_back(state, percent);
        if (state != icIterProgress) return state == icIterStart ? self.atStart : self.atEnd;
        return static_cast<int>(self.calls.size()) - 2 == self.stopAfter;
    }
};
using Calls = decltype(Listener::calls);

inline icXformDesc_t described(icXform_t xform) {
    icXformDesc_t desc{};
    EXPECT_EQ(icXformGetDesc(xform, &desc), 0);
    return desc;
}

template <class Sample>
icPixelLayout_t packed(Sample* data, int pixels, int lines, uint32_t channels) {
    icPixelLayout_t layout{};
    constexpr int size = sizeof(Sample);
    layout.dataType = size == 1 ? icSamples8 : icSamples16;
    layout.contiguous = 1;
    layout.pixelCount = pixels;
    layout.lineCount = lines;
    layout.channelCount = static_cast<int>(channels);
    layout.pixelStep = layout.channelCount * size;
    layout.lineStep = layout.pixelStep * pixels;
    for (uint32_t c = 0; c < std::min(channels, 32U); ++c)
        layout.channelData[c] = data + c;
    return layout;
}

template <class In, class Out>
Samples convertedAs(icXform_t xform, const Samples& pixels, int code) {
    // A transform without conversion has no channels, but the layouts have to be sound ones.
    const uint32_t inChannels = std::max(described(xform).inChannels, 1U);
    const uint32_t outChannels = std::max(described(xform).outChannels, 1U);
    std::vector<In> source(pixels.begin(), pixels.end());
    std::vector<Out> destination(pixels.size() / inChannels * outChannels);
    const int n = static_cast<int>(pixels.size() / inChannels);
    const icPixelLayout_t from = packed(source.data(), n, 1, inChannels);
    const icPixelLayout_t to = packed(destination.data(), n, 1, outChannels);
    EXPECT_EQ(icEvaluate(xform, &from, &to, nullptr, nullptr), code);
    return {destination.begin(), destination.end()};
}

/// Converts packed pixels in one line of the given depths, which has to give that result code. The
/// buffers are exactly as long as they have to be, so that a sanitizer sees a kernel that strays.
inline Samples converted(icXform_t xform, const Samples& pixels, int inBits = 16, int outBits = 16,
                         int code = 0) {
    const auto as =
        inBits == 8 ? outBits == 8 ? convertedAs<uint8_t, uint8_t> : convertedAs<uint8_t, uint16_t>
        : outBits == 8 ? convertedAs<uint16_t, uint8_t>
                       : convertedAs<uint16_t, uint16_t>;
    return as(xform, pixels, code);
}

/// The largest difference between two results of one length.
inline int largestDifference(const Samples& a, const Samples& b) {
    EXPECT_EQ(a.size(), b.size());
    int largest = 0;
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        largest = std::max(largest, std::abs(int{a[i]} - int{b[i]}));
    }
    return largest;
}

inline void expectNear(const OwnedXform& xform, const Samples& pixels, const Samples& expected,
                       int tolerance) {
    EXPECT_LE(largestDifference(converted(xform.get(), pixels), expected), tolerance)
        << testing::PrintToString(pixels) << " to " << testing::PrintToString(expected);
}

}  // namespace lumoxa_test
