// SPDX-License-Identifier: Apache-2.0
//
// Requests for gray transforms, in all their forms.
#pragma once

#include <optional>

#include "tests/support/gray_profiles.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {

using Floats = std::vector<float>;

/// The parameters of all forms, and which form takes them.
struct Ask {
    int form = 1;
    std::optional<Tone> tone = std::nullopt;
    float fade = 0;
    Floats split = {}, curve = {};
    int shaping = 1;
    float parameter = 0;

    int operator()(icProfile_t p, uint32_t intentCode, uint32_t direction, icXform_t* out) const {
        const icRenderingIntent intent{intentCode};
        const icTransType type{direction};
        const EncodedTone encoded(tone.value_or(Tone{}));
        const unsigned short* pair = tone ? encoded.pair : nullptr;
        const float* tones = curve.empty() ? nullptr : curve.data();
        const float* points = split.empty() ? nullptr : split.data();
        const int count = static_cast<int>(split.size() / 3);
        switch (form) {
            case 1:
                return icXformGet(p, intent, type, out);
            case 2:
                return icXformGet(p, intent, type, pair, out);
            case 3:
                return icXformGet(p, intent, type, pair, tones, out);
            case 4:
                return icXformGet(p, intent, type, pair, fade, tones, out);
            case 5:
                return icXformGet(p, intent, type, pair, fade, out, shaping, parameter);
            case 6:
                return icXformGet(p, intent, type, pair, count, points, tones, out);
            default:
                return icXformGet(p, intent, type, pair, count, points, out, shaping, parameter);
        }
    }

    OwnedXform from(const OwnedProfile& profile, uint32_t intent, uint32_t direction) const {
        icXform_t xform = nullptr;
        EXPECT_EQ((*this)(profile.get(), intent, direction, &xform), 0);
        return OwnedXform(xform);
    }

    Tone at(double L) const {
        const double middle = 2 * L / 100 - 1, share = 1 - fade * middle * middle;
        Tone wanted = tone.value_or(Tone{});
        wanted.a *= share, wanted.b *= share;
        if (split.empty()) return wanted;
        size_t i = 0;
        while (i + 6 < split.size() && split[i + 3] < L)
            i += 3;
        const double part = std::clamp((L - split[i]) / (split[i + 3] - split[i]), 0.0, 1.0);
        wanted.a += split[i + 1] + part * (split[i + 4] - split[i + 1]);
        wanted.b += split[i + 2] + part * (split[i + 5] - split[i + 2]);
        return wanted;
    }
};

inline Floats toneCurve(double low, double high) {
    Floats curve;
    for (int k = 0; k < 256; ++k)
        curve.push_back(static_cast<float>(65280 * low + 256 * k * (high - low)));
    return curve;
}

}  // namespace lumoxa_test
