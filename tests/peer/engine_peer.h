// SPDX-License-Identifier: Apache-2.0
//
// What the comparisons of conversions share: profiles, seeded colours, Delta E*ab of two results
// seen through one path, and the same conversions through Little CMS.
#pragma once

#if defined(LUMOXA_HAVE_LCMS2)

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <lcms2.h>

#include "lumoxa/lumoxa.hpp"
#include "tests/support/real_profiles.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {

using Words = std::vector<uint16_t>;
using Colours = std::vector<float>;  // Lab, three numbers a colour

constexpr uint32_t kCmykSpace = 0x434D594B;
constexpr uint32_t kLabSpace = 0x4C616220;

/// A profile in both libraries.
struct PeerProfile {
    std::string name;
    lumoxa::Profile ours;
    std::vector<uint8_t> bytes;

    PeerProfile(std::string text, lumoxa::Profile profile)
        : name(std::move(text)), ours(std::move(profile)), bytes(ours.bytes()) {}

    uint32_t space() const { return ours.colorSpace(); }

    /// A built-in space, or an installed profile by the end of its path.
    static PeerProfile of(const std::string& name) {
        if (name.find('.') == std::string::npos)
            return {name, lumoxa::Profile::named(name.c_str())};
        const std::vector<uint8_t> image = realProfile(name);
        return {name.substr(name.find('/') + 1),
                lumoxa::Profile::fromBytes(image.data(), image.size())};
    }
};

/// Options of both libraries.
struct Way {
    lumoxa::Intent intent = lumoxa::Intent::Relative;
    bool compensate = false;

    lumoxa::Options options(bool exact) const {
        lumoxa::Options options;
        options.intent = intent;
        options.blackPointCompensation = compensate;
        options.exact = exact;
        return options;
    }

    friend void PrintTo(const Way& way, std::ostream* out) {
        static constexpr const char* kNames[] = {"Perceptual", "Relative", "Saturation",
                                                 "Absolute"};
        *out << kNames[static_cast<size_t>(way.intent)] << (way.compensate ? "Compensated" : "");
    }
};

/// Pixels of one type through one of our conversions.
template <class Out, class In>
std::vector<Out> through(const lumoxa::Conversion& conversion, const std::vector<In>& in) {
    const auto inputs = static_cast<size_t>(conversion.inputChannels());
    const auto count = static_cast<int64_t>(in.size() / inputs);
    const int outputs = conversion.outputChannels();
    std::vector<Out> out(in.size() / inputs * static_cast<size_t>(outputs));
    conversion.run(lumoxa::ImageView::packed(in.data(), count, 1, static_cast<int>(inputs)),
                   lumoxa::ImageView::packed(out.data(), count, 1, outputs));
    return out;
}

/// Results of a device as Lab: through its profile, exactly, relative to its white.
class Eye {
  public:
    explicit Eye(const PeerProfile& device)
        : toLab_(device.ours, lumoxa::Profile::named("Lab"), Way().options(true)) {}
    Colours operator()(const Words& results) const { return through<float>(toLab_, results); }

  private:
    lumoxa::Conversion toLab_;
};

struct Difference {
    double mean = 0, percentile99 = 0, largest = 0;

    bool within(const Difference& limit) const {
        return mean <= limit.mean && percentile99 <= limit.percentile99 && largest <= limit.largest;
    }
};

inline Difference difference(const Colours& a, const Colours& b) {
    std::vector<double> each;
    Difference result;
    for (size_t i = 0; i + 2 < a.size(); i += 3) {
        const double L = a[i] - b[i], da = a[i + 1] - b[i + 1], db = a[i + 2] - b[i + 2];
        each.push_back(std::sqrt(L * L + da * da + db * db));
        result.mean += each.back();
    }
    std::sort(each.begin(), each.end());
    result.mean /= static_cast<double>(each.size());
    result.percentile99 = each[each.size() * 99 / 100];
    result.largest = each.back();
    return result;
}

enum class PeerMode { kDefault, kExact };

/// Packed pixels of one sample type through Little CMS; empty where it makes no such transform.
template <class Sample>
std::vector<Sample> throughPeer(const PeerProfile& from, const PeerProfile& to, const Way& way,
                                PeerMode mode, const std::vector<Sample>& in) {
    const auto open = [](const PeerProfile& profile) {
        return std::shared_ptr<void>(
            cmsOpenProfileFromMem(profile.bytes.data(),
                                  static_cast<cmsUInt32Number>(profile.bytes.size())),
            cmsCloseProfile);
    };
    const auto source = open(from), target = open(to);
    const cmsUInt32Number bytes = sizeof(Sample);
    const cmsUInt32Number inFormat = cmsFormatterForColorspaceOfProfile(source.get(), bytes, 0);
    const cmsUInt32Number outFormat = cmsFormatterForColorspaceOfProfile(target.get(), bytes, 0);
    const std::shared_ptr<void> transform(
        cmsCreateTransform(source.get(), inFormat, target.get(), outFormat,
                           static_cast<uint32_t>(way.intent),
                           (mode == PeerMode::kExact ? cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE : 0) |
                               (way.compensate ? cmsFLAGS_BLACKPOINTCOMPENSATION : 0)),
        [](void* handle) {
            if (handle != nullptr) cmsDeleteTransform(handle);
        });
    if (transform == nullptr) return {};
    const size_t count = in.size() / T_CHANNELS(inFormat);
    std::vector<Sample> out(count * T_CHANNELS(outFormat));
    cmsDoTransform(transform.get(), in.data(), out.data(), static_cast<cmsUInt32Number>(count));
    return out;
}

// --- colours ------------------------------------------------------------------------------------

inline Words randomColours(const PeerProfile& device, size_t count) {
    return SeededRandom(1).samples(count * static_cast<size_t>(device.ours.channels()));
}

/// Dark ones: the lowest 1/16 of additive devices, the highest of inks.
inline Words shadowColours(const PeerProfile& device, size_t count) {
    constexpr uint16_t kDepth = 4096, kNeutral = 32768;
    const auto channels = static_cast<size_t>(device.ours.channels());
    Words samples = SeededRandom(2).samples(count * channels, kDepth);
    for (size_t i = 0; i < samples.size(); ++i) {
        if (device.space() == kCmykSpace) samples[i] = static_cast<uint16_t>(65535 - samples[i]);
        if (device.space() == kLabSpace && i % channels > 0)
            samples[i] = static_cast<uint16_t>(samples[i] + kNeutral - kDepth / 2);
    }
    return samples;
}

/// Centres of the cells of a grid of so many points a channel.
inline Words coloursBetween(const PeerProfile& device, size_t count, uint32_t points) {
    Words samples =
        SeededRandom(3).samples(count * static_cast<size_t>(device.ours.channels()), points - 2);
    for (uint16_t& sample : samples)
        sample = static_cast<uint16_t>((2U * sample + 1) * 65535U / (2 * (points - 1)));
    return samples;
}

}  // namespace lumoxa_test

#endif
