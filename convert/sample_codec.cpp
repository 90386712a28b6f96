// SPDX-License-Identifier: Apache-2.0
#include "convert/sample_codec.h"

#include "base/pcs_encoding.h"
#include "convert/tag_stages.h"

namespace lumoxa::engine {
namespace {

double topOf(SampleType type) {
    return type == SampleType::kU8 ? 255.0 : type == SampleType::kU16 ? 65535.0 : 1.0;
}

/// Values that no profile comes near, and that arithmetic can bear: infinities become them.
constexpr float kLargestValue = 1e6f;

float finite(float value) {
    const float low = value > -kLargestValue ? value : -kLargestValue;
    const float bounded = low < kLargestValue ? low : kLargestValue;
    return value == value ? bounded : 0.0f;
}

}  // namespace

SampleCodec::SampleCodec(uint32_t space, int channels, SampleType type)
    : type_(type), channels_(channels), bounded_(!isConnectionSpace(space)) {
    const Affine decode = decoding(space, false);
    const bool real = type == SampleType::kF32;
    for (int c = 0; c < channels; ++c) {
        const auto i = static_cast<size_t>(c);
        const bool plain = real || !isConnectionSpace(space);
        const double scale = plain ? 1.0 : decode.factors[i][i];
        const double offset = plain ? 0.0 : decode.offsets[i];
        const double perUnit = topOf(type) / scale;
        toColour_[c] = {static_cast<float>(scale), static_cast<float>(offset)};
        toSample_[c] = {static_cast<float>(perUnit), static_cast<float>(-offset * perUnit)};
    }
}

template <class Sample>
void SampleCodec::loadAs(const Sample* samples, int pixels, Row* rows) const {
    const auto top = static_cast<float>(topOf(type_));  // divided by, so that it becomes 1 exactly
    for (int c = 0; c < channels_; ++c) {
        const ChannelScale k = toColour_[c];
        const Sample* at = samples + c;
        for (int i = 0; i < pixels; ++i, at += channels_) {
            const float value = static_cast<float>(*at) / top * k.scale + k.offset;
            rows[c][i] = sizeof(Sample) == sizeof(float) ? finite(value) : value;
        }
    }
}

template <class Sample>
void SampleCodec::storeAs(const Row* rows, int pixels, Sample* samples) const {
    for (int c = 0; c < channels_; ++c) {
        const ChannelScale k = toSample_[c];
        Sample* at = samples + c;
        for (int i = 0; i < pixels; ++i, at += channels_) {
            const float value = rows[c][i] * k.scale + k.offset;
            if constexpr (sizeof(Sample) == sizeof(float)) {
                *at = bounded_ ? clipped(value, 1.0f) : finite(value);
            } else {
                *at = roundClipped<Sample>(value);
            }
        }
    }
}

void SampleCodec::load(const void* samples, int pixels, Row* rows) const {
    switch (type_) {
        case SampleType::kU8:
            return loadAs(static_cast<const uint8_t*>(samples), pixels, rows);
        case SampleType::kU16:
            return loadAs(static_cast<const uint16_t*>(samples), pixels, rows);
        default:
            return loadAs(static_cast<const float*>(samples), pixels, rows);
    }
}

void SampleCodec::store(const Row* rows, int pixels, void* samples) const {
    switch (type_) {
        case SampleType::kU8:
            return storeAs(rows, pixels, static_cast<uint8_t*>(samples));
        case SampleType::kU16:
            return storeAs(rows, pixels, static_cast<uint16_t*>(samples));
        default:
            return storeAs(rows, pixels, static_cast<float*>(samples));
    }
}

}  // namespace lumoxa::engine
