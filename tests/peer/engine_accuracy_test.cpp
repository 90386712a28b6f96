// SPDX-License-Identifier: Apache-2.0
//
// What is fast against what is exact: 8- and 16-bit pixels of conversions, and those of the same
// conversions stage by stage. Over random colours of the whole range, between the nodes of grids,
// and in the shadows. docs/accuracy.md has the figures.
#if defined(LUMOXA_HAVE_LCMS2)

#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/peer/engine_peer.h"

namespace {

using namespace lumoxa_test;
using lumoxa::Conversion;
using lumoxa::Intent;

/// A value of the JSON of explain(), as text; empty where it isn't there.
std::string explained(const std::string& json, const std::string& member) {
    const size_t name = json.find("\"" + member + "\"");
    if (name == std::string::npos) return "";
    const size_t first = json.find_first_not_of(": \n[", json.find(':', name));
    return json.substr(first, json.find_first_of(",\n]}", first) - first);
}

std::vector<PeerProfile> installedDevices() {
    std::vector<PeerProfile> devices;
    for (const char* name : {"sRGB", "AdobeRGB", "ProPhotoRGB", "gray", "Lab"})
        devices.push_back(PeerProfile::of(name));
    constexpr uint32_t kNamedColours = 0x6E6D636C, kAbstract = 0x61627374;
    for (const std::string& path : realProfilePaths()) {
        const size_t folder = path.find("/color/icc/");
        if (folder == std::string::npos) continue;
        const PeerProfile profile = PeerProfile::of(path);
        const uint32_t kind = profile.ours.deviceClass();
        if (kind == kNamedColours || kind == kAbstract) continue;
        devices.emplace_back(path.substr(folder + 11), profile.ours);
    }
    return devices;
}

std::string pairName(const PeerProfile& from, const PeerProfile& to) {
    return from.name + " to " + to.name;
}

// --- shapers ------------------------------------------------------------------------------------

template <class Sample>
int largestStep(const std::vector<Sample>& a, const std::vector<Sample>& b) {
    int largest = 0;
    for (size_t i = 0; i < a.size(); ++i)
        largest = std::max(largest, std::abs(int{a[i]} - int{b[i]}));
    return largest;
}

struct ShaperSum {
    int pairs = 0, largest16 = 0;
};

/// Every level of gray, or random colours.
std::vector<uint8_t> bytesOf(const PeerProfile& device, const Words& colours) {
    std::vector<uint8_t> bytes;
    if (device.ours.channels() == 1) {
        for (int level = 0; level < 256; ++level)
            bytes.push_back(static_cast<uint8_t>(level));
        return bytes;
    }
    for (const uint16_t sample : colours)
        bytes.push_back(static_cast<uint8_t>(sample >> 8));
    return bytes;
}

void measureShaper(const PeerProfile& from, const PeerProfile& to, ShaperSum& sum) {
    SCOPED_TRACE(pairName(from, to));
    const Conversion fast(from.ours, to.ours, Way().options(false));
    if (explained(fast.explain(), "plan") != "\"shaper\"") return;
    const Conversion exact(from.ours, to.ours, Way().options(true));
    const Words whole = randomColours(from, 500), dark = shadowColours(from, 500);

    const auto step = [&](const auto& pixels) {
        using Sample = typename std::decay_t<decltype(pixels)>::value_type;
        return largestStep(through<Sample>(fast, pixels), through<Sample>(exact, pixels));
    };
    EXPECT_EQ(step(bytesOf(from, whole)), 0);
    EXPECT_EQ(step(bytesOf(from, dark)), 0);
    const int step16 = std::max(step(whole), step(dark));
    EXPECT_LE(step16, 8);
    ++sum.pairs;
    sum.largest16 = std::max(sum.largest16, step16);
}

TEST(EngineAccuracy, ShapersAnswerAsTheirStagesDo) {
    const std::vector<PeerProfile> devices = installedDevices();
    ShaperSum sum;
    for (const char* name : {"sRGB", "ProPhotoRGB", "gray", "icc/CineonLog_M.icc"}) {
        const PeerProfile other = PeerProfile::of(name);
        for (const PeerProfile& device : devices) {
            measureShaper(device, other, sum);
            measureShaper(other, device, sum);
        }
    }
    std::printf("[ shapers  ] %d pairs, bytes equal, largest %d of 65535\n", sum.pairs,
                sum.largest16);
    EXPECT_GT(sum.pairs, 100);
}

// --- tables -------------------------------------------------------------------------------------

constexpr size_t kColours = 2000;

/// Both libraries' tables against their own stages, seen through one path.
class TablePair {
  public:
    TablePair(const PeerProfile& from, const PeerProfile& to, const Way& way, double slack)
        : from_(from),
          to_(to),
          way_(way),
          slack_(slack),
          fast_(from.ours, to.ours, way.options(false)),
          exact_(from.ours, to.ours, way.options(true)),
          toLab_(to),
          explain_(fast_.explain()) {}

    bool isTable() const { return explained(explain_, "plan") == "\"table\""; }

    void keepsToItsLimits() const {
        const auto points = static_cast<uint32_t>(std::stoul(explained(explain_, "grid")));
        const uint32_t peerPoints = from_.space() == kCmykSpace ? 17 : 33;
        keeps("whole", randomColours(from_, kColours), randomColours(from_, kColours));
        keeps("between", coloursBetween(from_, kColours, points),
              coloursBetween(from_, kColours, peerPoints));
        keeps("shadows", shadowColours(from_, kColours), shadowColours(from_, kColours));
    }

  private:
    // Grids are best at their nodes, so each library has the worst places of its own.
    void keeps(const char* colours, const Words& mine, const Words& theirs) const {
        SCOPED_TRACE(pairName(from_, to_) + ", " + colours +
                     (way_.compensate ? ", compensated" : ""));
        const Difference ours = difference(toLab_(through<uint16_t>(fast_, mine)),
                                           toLab_(through<uint16_t>(exact_, mine)));
        const Difference peers =
            difference(toLab_(throughPeer(from_, to_, way_, PeerMode::kDefault, theirs)),
                       toLab_(throughPeer(from_, to_, way_, PeerMode::kExact, theirs)));
        const bool within = explained(explain_, "withinLimits") == "true";
        std::printf(
            "[ table    ] %-26s %-26s bpc %d %-7s grid %s %s %.3f %.3f %.3f  "
            "peer %.3f %.3f %.3f\n",
            from_.name.c_str(), to_.name.c_str(), way_.compensate ? 1 : 0, colours,
            explained(explain_, "grid").c_str(), within ? "within" : "beyond", ours.mean,
            ours.percentile99, ours.largest, peers.mean, peers.percentile99, peers.largest);
        const bool four = fast_.inputChannels() == 4;
        Difference limit = {four ? 0.2 : 0.1, four ? 1.0 : 0.5, 100};
        if (!within) {
            limit.mean = std::max(limit.mean, slack_ * peers.mean);
            limit.percentile99 = std::max(limit.percentile99, slack_ * peers.percentile99);
        }
        EXPECT_LE(ours.mean, limit.mean);
        EXPECT_LE(ours.percentile99, limit.percentile99);
    }

    const PeerProfile &from_, &to_;
    Way way_;
    double slack_;
    Conversion fast_, exact_;
    Eye toLab_;
    std::string explain_;
};

struct Ends {
    const char* name;
    std::vector<std::string> sources, targets;
    double slack = 1;  // how much worse than the peer's a table may be that is beyond the limits

    friend void PrintTo(const Ends& ends, std::ostream* out) { *out << ends.name; }
};

class EngineTables : public testing::TestWithParam<Ends> {};

TEST_P(EngineTables, AreWithinTheirLimitsOrNoWorseThanThePeers) {
    for (const std::string& source : GetParam().sources) {
        const PeerProfile from = PeerProfile::of(source);
        for (const std::string& target : GetParam().targets) {
            const PeerProfile to = PeerProfile::of(target);
            for (const bool compensate : {false, true}) {
                const TablePair pair(from, to, {Intent::Relative, compensate}, GetParam().slack);
                if (source == target || !pair.isTable()) continue;
                pair.keepsToItsLimits();
            }
        }
    }
}

const std::vector<std::string> kRgbs = {"sRGB",
                                        "AdobeRGB",
                                        "ProPhotoRGB",
                                        "colord/sRGB.icc",
                                        "icc/LStar-RGB.icc",
                                        "ghostscript/esrgb.icc"};
const std::vector<std::string> kLabs = {"Lab", "icc/ITULab.icc"};
const std::vector<std::string> kInks = {"ghostscript/default_cmyk.icc", "ghostscript/ps_cmyk.icc"};
const std::vector<std::string> kPress = {"ghostscript/default_cmyk.icc"};
const std::vector<std::string> kGrays = {"gray", "icc/Gray-CIE_L.icc"};

// Five points an ink to linear XYZ are ps_cmyk.icc's own: between them colours bend so much that
// every grid over them errs by several Delta E*ab. Amid cells that are not the same in both
// libraries, one or the other is ahead.
const std::vector<std::string> kCoarse = {"ghostscript/ps_cmyk.icc"};
constexpr double kCoarseSlack = 1.15;

INSTANTIATE_TEST_SUITE_P(
    Between, EngineTables,
    testing::Values(Ends{"RgbAndInks", kRgbs, kInks}, Ends{"RgbAndLab", kRgbs, kLabs},
                    Ends{"LabAndRgb", kLabs, {"sRGB", "ProPhotoRGB"}},
                    Ends{"LabAndInks", kLabs, kInks},
                    Ends{"InksAndRgb", kPress, {"sRGB", "AdobeRGB", "ProPhotoRGB"}},
                    Ends{"InksAndLab", kPress, kLabs}, Ends{"InksAndGray", kPress, kGrays},
                    Ends{"CoarseInksAndRgb", kCoarse, {"sRGB", "ProPhotoRGB"}, kCoarseSlack},
                    Ends{"CoarseInksAndInks", kCoarse, kPress, kCoarseSlack},
                    Ends{"InksAndCoarseInks", kPress, kCoarse, kCoarseSlack}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace

#endif
