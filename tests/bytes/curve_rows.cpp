// SPDX-License-Identifier: Apache-2.0
//
// Tone curves with and without a matrix, gray tables of patches, and the Lab and XYZ kernels.
#include "tests/bytes/rows.h"
#include "tests/support/gray_asks.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

// u8Fixed8, from 0.004 to 256.
constexpr uint16_t kGammas[] = {1,   13,  64,  128, 142, 171, 200,  230,  255,  256,
                                257, 282, 307, 333, 358, 384, 410,  435,  461,  480,
                                486, 500, 512, 538, 544, 563, 589,  614,  620,  640,
                                666, 691, 717, 768, 777, 832, 1024, 2560, 65535};
static_assert(std::size(kGammas) % 3 == 0);

constexpr uint32_t kDirections[] = {icDeviceToPcs, icPcsToDevice};

/// Rows of both directions.
void addProfiles(Rows& rows, const std::string& name, const std::vector<ProfileBytes>& profiles) {
    for (const uint32_t direction : kDirections) {
        rows.push_back({name + "," + std::to_string(direction), {}});
        for (const ProfileBytes& profile : profiles) {
            const OwnedXform xform = requested(profile, 1, direction);
            Samples levels;  // all: a power's last bit shows in few of them
            for (uint32_t v = 0; v <= 65535; ++v)
                levels.insert(levels.end(), described(xform.get()).inChannels, uint16_t(v));
            addInAllDepths(rows.back().hash, xform.get());
            rows.back().hash.add(converted(xform.get(), levels));
        }
    }
}

ProfileBytes gray(const Bytes& curve, const char* pcs) {
    return ProfileBytes("prtr", "GRAY", pcs).addTag("kTRC", curve);
}

const struct {
    const char* name;
    Ask ask;
    int steps = 16;
} kPrints[] = {{"neutral", {1}},
               {"cool", {2, Tone{-2, -4}}},
               {"faded", {5, Tone{1, -4}, 0.75f}},
               {"split", {7, Tone{0, -2}, 0, {25, -2, -1, 60, 0, 0, 90, 2, -3}}},
               {"curve", {4, Tone{-2, -4}, 0.5f, {}, toneCurve(0.125, 0.75)}},
               {"split-curve", {6, {}, 0, {25, -2, -1, 90, 2, -3}, toneCurve(0.25, 1)}},
               {"unshaped", {5, Tone{-2, -4}, 0, {}, {}, 0}},
               {"shaped", {5, Tone{-2, -4}, 0, {}, {}, 1, 2}},
               {"8-steps", {1}, 8},
               {"20-steps", {2, Tone{-2, -4}}, 20}};

void addPrints(Rows& rows, const std::string& name, const Ask& ask, const ProfileBytes& bytes) {
    const OwnedProfile profile = loaded(bytes.image());
    for (const uint32_t direction : kDirections) {
        rows.push_back({name + "," + std::to_string(direction), {}});
        for (const uint32_t intent : {0U, 1U})
            addInAllDepths(rows.back().hash, ask.from(profile, intent, direction).get());
    }
}

}  // namespace

Rows curveRows() {
    Rows rows;
    for (const char* letters : {"i", "slk", "l", "hs0", "0", "567", "1", "2", "3", "4"}) {
        const std::vector<Bytes> set = curves(letters);
        addProfiles(rows, letters, {rgbProfile(set, "scnr", true)});
        addProfiles(rows, std::string("matrix,") + letters, {rgbProfile(set, "mntr")});
        addProfiles(rows, std::string("gray,") + letters,
                    {gray(set[0], "Lab "), gray(set[0], "XYZ ")});
    }
    for (const uint16_t* g = kGammas; g != std::end(kGammas); g += 3) {
        std::vector<Bytes> gammas, powers;
        for (int c = 0; c < 3; ++c) {
            gammas.push_back(curveTag({g[c]}));
            powers.push_back(parametricTag(0, {g[c] / 256.0}));
        }
        const std::string name = std::to_string(g[0]);
        addProfiles(rows, "gamma," + name, {rgbProfile(gammas, "scnr", true)});
        addProfiles(rows, "power," + name, {rgbProfile(powers, "scnr", true)});
    }
    return rows;
}

Rows grayRows() {
    Rows rows = {{"patches", {}}};  // made by powers: where these differ, the system does
    rows[0].hash.add(grayProfile().image());
    for (const auto& [name, ask, steps] : kPrints)
        addPrints(rows, name, ask, grayProfile(5, steps));
    const auto ramp = grayPatches({100, 80, 60, 40, 20, 5});
    addPrints(rows, "ramp", {1}, grayProfile(grayTag(6, 16, 2, ramp)));
    return rows;
}

Rows labXyzRows() {
    Rows rows;
    Samples pixels = image(3, 16);
    for (uint32_t v = 0; v <= 65535; ++v)  // of each table every entry
        pixels.insert(pixels.end(),
                      {uint16_t(v), uint16_t(v), uint16_t(v), uint16_t(v), 32768, 32768});
    const unsigned short whites[][3] = {
        {31595, 32768, 27030}, {26000, 27100, 20300}, {65535, 65535, 65535}, {31, 32, 27}};
    for (const auto& w : whites) {
        const auto add = [&](const char* name, const auto convert, const OwnedXform& xform) {
            Samples out = pixels;
            convert(xform->state.get(), out.data(), out.data(), int(out.size() / 3));
            rows.push_back({name + std::to_string(w[0]), {}});
            rows.back().hash.add(out);
        };
        add("to-Lab,", icConvertXYZToLab, OwnedXform(icGetXyzToLabXform(w, w)));
        add("to-XYZ,", icConvertLabToXyz, OwnedXform(icGetLabToXyzXform(w, w, false)));
        add("full-to-XYZ,", icConvertLabToXyz, OwnedXform(icGetLabToXyzXform(w, w, true)));
    }
    return rows;
}

}  // namespace lumoxa_test
