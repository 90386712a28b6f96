// SPDX-License-Identifier: Apache-2.0
//
// Between samples of pictures and colours as stages have them: device samples 0..255, 0..65535 or
// 0..1; Lab as ICC version 4 encodes it; XYZ with 1 + 32767/32768 as full range; floating-point Lab
// and XYZ as they are.
#pragma once

#include <cstdint>

#include "convert/plan.h"
#include "convert/stages.h"

namespace lumoxa::engine {

/// From numbers 0..1 to colours of a space, channel by channel.
struct ChannelScale {
    float scale = 1, offset = 0;
};

/// The scales of a space's channels for a sample type.
class SampleCodec {
  public:
    SampleCodec(uint32_t space, int channels, SampleType type);

    /// Packed samples to rows of colours. What is not a number becomes 0.
    void load(const void* samples, int pixels, Row* rows) const;
    /// Rows of colours to packed samples, rounded and clipped; floating-point device colours are
    /// clipped to 0..1, and what is not a number becomes 0.
    void store(const Row* rows, int pixels, void* samples) const;

  private:
    template <class Sample>
    void loadAs(const Sample* samples, int pixels, Row* rows) const;
    template <class Sample>
    void storeAs(const Row* rows, int pixels, Sample* samples) const;

    SampleType type_;
    int channels_;
    bool bounded_;  // a device space: floating-point colours are 0..1
    ChannelScale toColour_[kMaxChannels];
    ChannelScale toSample_[kMaxChannels];
};

}  // namespace lumoxa::engine
