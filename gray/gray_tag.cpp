// SPDX-License-Identifier: Apache-2.0
#include "gray/gray_tag.h"

namespace lumoxa {
namespace {

using namespace gray_layout;

constexpr uint32_t kTripleBytes = 12;
constexpr float kFixedStep = 1.5258789e-5f;  // 1 / 65536

int checkTag(const TagCopy& tag) {
    const uint32_t n = loadFileOrder<uint16_t>(tag.data() + kGridSize);
    const uint32_t steps = tag.data()[kSteps];
    const int layout = tag.data()[kLayoutFlag];
    if (n < 2 || steps < 1 || layout > kMostLayout) return icErrTagType;
    const uint64_t needed = kSamples + kTripleBytes * grayTriples(n, steps, layout);
    return needed <= tag.size ? icSuccess : icErrRead;
}

}  // namespace

int readGrayTag(const icProfileInternal& profile, GrayConv_t& state) {
    TagCopy tag;
    if (const int code = readTag(profile, kGrayTag, tag, kSamples)) return code;
    if (const int code = checkTag(tag)) return code;
    const int layout = tag.data()[kLayoutFlag];
    const uint32_t n = loadFileOrder<uint16_t>(tag.data() + kGridSize);
    const uint64_t triples = grayTriples(n, tag.data()[kSteps], layout);
    auto samples = requireZeroed<float>(static_cast<size_t>(triples) * 3 * sizeof(float));
    for (size_t i = 0; i < triples * 3; ++i) {
        const auto fixed = loadFileOrder<uint32_t>(tag.data() + kSamples + 4 * i);
        samples.get()[i] = static_cast<float>(fixed) * kFixedStep;
    }
    if (!reflectsLight(grayPaper(samples.get(), triples, layout))) return icErrTagType;
    state.samples = samples.release();
    state.layoutFlag = static_cast<uint32_t>(layout);
    tag.data()[kLayoutFlag] = 0;
    swapInPlace<uint16_t>(tag.data() + kGridSize, 1);
    state.tagData = reinterpret_cast<uint8_t*>(tag.bytes.release());
    return icSuccess;
}

}  // namespace lumoxa
