// SPDX-License-Identifier: Apache-2.0
#include "tests/bytes/rows.h"

#include <map>

#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

constexpr uint32_t kNoise = 640, kRamp = 4096;
constexpr int kDepths[][2] = {{8, 8}, {8, 16}, {16, 8}, {16, 16}};

struct Arrangement {
    size_t lines, gap;  // samples between lines
    bool planar;
};
constexpr Arrangement kArrangements[] = {{1, 0, false}, {16, 3, false}, {16, 1, true}};

/// Memory with pixels in it, and the layout that tells where.
template <class Sample>
struct Picture {
    std::vector<Sample> memory;
    icPixelLayout_t layout;

    Picture(const Arrangement& a, uint32_t channels, const Samples& pixels) {
        const size_t width = pixels.size() / channels / a.lines, step = a.planar ? 1 : channels;
        const size_t line = width * step + a.gap, plane = a.planar ? line * a.lines : 1;
        memory.assign(line * a.lines * (a.planar ? channels : 1), Sample{0xA5});
        for (size_t i = 0; i < pixels.size(); ++i) {
            const size_t pixel = i / channels, c = i % channels;
            memory[pixel / width * line + pixel % width * step + c * plane] = Sample(pixels[i]);
        }
        layout = packed(memory.data(), int(width), int(a.lines), channels);
        layout.contiguous = !a.planar;
        layout.pixelStep = int(step * sizeof(Sample));
        layout.lineStep = int(line * sizeof(Sample));
        for (size_t c = 0; c < channels; ++c)
            layout.channelData[c] = memory.data() + c * plane;
    }
};

template <class In, class Out>
void addAs(Hash& hash, icXform_t xform) {
    const icXformDesc_t desc = described(xform);
    const uint32_t ins = std::max(desc.inChannels, 1U), outs = std::max(desc.outChannels, 1U);
    const Samples pixels = image(ins, 8 * sizeof(In));
    for (const Arrangement& a : kArrangements) {
        const Picture<In> from(a, ins, pixels);
        const Picture<Out> to(a, outs, Samples(pixels.size() / ins * outs, 0xA5));
        hash.add<int>({icEvaluate(xform, &from.layout, &to.layout, nullptr, nullptr)});
        hash.add(to.memory);
    }
}

Bytes sampled(uint32_t entries) {
    SeededRandom random(entries);
    Samples table;
    for (uint32_t i = 0; i < entries; ++i)
        table.push_back(uint16_t(i * 65000 / (entries - 1) + random.upTo(500)));
    return curveTag(table);
}

}  // namespace

Samples image(uint32_t channels, int bits) {
    const uint32_t top = bits == 8 ? 255 : 65535, ramp = std::min(top + 1, kRamp);
    SeededRandom random(channels);
    Samples pixels;
    for (uint32_t i = 0; i < kNoise * channels; ++i) {
        const uint16_t end = i % 2 == 0 ? 0 : uint16_t(top);
        pixels.push_back(random.upTo(9) == 0 ? end : random.upTo(top));
    }
    for (uint32_t i = 0; i < ramp; ++i)
        pixels.insert(pixels.end(), channels, uint16_t(i * top / (ramp - 1)));
    return pixels;
}

void addConverted(Hash& hash, icXform_t xform, int inBits, int outBits) {
    const auto add = inBits == 8 ? outBits == 8 ? addAs<uint8_t, uint8_t> : addAs<uint8_t, uint16_t>
                     : outBits == 8 ? addAs<uint16_t, uint8_t>
                                    : addAs<uint16_t, uint16_t>;
    add(hash, xform);
}

void addInAllDepths(Hash& hash, icXform_t xform) {
    for (const auto& [in, out] : kDepths)
        addConverted(hash, xform, in, out);
}

void addRowsByDepth(Rows& rows, const std::string& name, icXform_t xform) {
    for (const auto& [in, out] : kDepths) {
        rows.push_back({name + "," + std::to_string(in) + "-" + std::to_string(out), {}});
        addConverted(rows.back().hash, xform, in, out);
    }
}

void addStored(Hash& hash, icXform_t xform) {
    const OwnedProfile profile = loaded(smallRgbProfile());
    EXPECT_EQ(icXformSet(profile.get(), fourcc("mft2"), icPerceptual, icDeviceToPcs, xform), 0);
    icTagValue_t tag{};
    EXPECT_EQ(icTagGetById(profile.get(), fourcc("A2B0"), &tag), 0);
    const auto* bytes = static_cast<const uint8_t*>(tag.data);
    hash.add(Bytes(bytes + sizeof tag.type, bytes + tag.size));  // the type is in host order
    icTagFree(&tag);
}

std::vector<Bytes> curves(const std::string& letters) {
    static const std::map<char, Bytes> byLetter = {
        {'i', curveTag({})},
        {'g', curveTag({461})},
        {'h', curveTag({563})},
        {'s', sampled(17)},
        {'k', sampled(16)},
        {'l', sampled(1024)},
        {'0', parametricTag(0, {2.2})},
        {'1', parametricTag(1, {2, 1.25, -0.25})},
        {'2', parametricTag(2, {1.8, 1, -0.5, 0.0625})},
        {'3', parametricTag(3, {2.4, 0.9479, 0.0521, 0.0774, 0.0405})},
        {'4', parametricTag(4, {1.5, 0.75, 0.25, 0.5, 0.25, -0.125, 0.0625})},
        {'5', parametricTag(0, {2.5})},
        {'6', parametricTag(0, {0.5})},
        {'7', parametricTag(0, {1.7})}};
    std::vector<Bytes> result;
    for (const char letter : letters)
        result.push_back(byLetter.at(letter));
    return result;
}

}  // namespace lumoxa_test
