// SPDX-License-Identifier: Apache-2.0
//
// Chains made into one transform: the table that it becomes in a profile, and what it converts.
#include <map>
#include <sstream>

#include "tests/bytes/rows.h"
#include "tests/support/gray_profiles.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

// Stages, options of the combination, and from-Lab or to-Lab for those builders. A stage is
// PROFILE>INTENT to the connection space, PROFILE<INTENT from it, PROFILE?INTENT for the gamut, or
// one without a profile.
constexpr const char* kChains =
    "screen>0 press<0; screen>1 press<1 1; screen>1 press<1 2; screen>1 press<1 3;"
    "screen>3 press<3; screen>2 proofer<2; screen>1 scanner<1; screen>1 gray<1;"
    "screen>1 Lab-8-10-6; screen>1 XYZ-Lab; screen>0 patches<0; screen>1 press?1;"
    "screen>1 press<1 press>3 screen<3; screen>1 screen<1 screen>1 ab<1 3; scanner>1 screen<1;"
    "scanner>3 proofer<3; press>1 screen<1; press>3 screen<3 3; press>0 press<0;"
    "press>1 stretched screen<0; press>1 five<1; five>1 press<1; duo>1 proofer<1; gray>1 press<1;"
    "patches>0 screen<0; proofer>1 ab<1; ab>0 squeezed press<1; link>0 scanner>1 press<1;"
    "Lab press<1; Lab-XYZ screen<1; full-Lab-XYZ proofer<1; from-Lab press<0; from-Lab screen<1;"
    "from-Lab press<1 press>1; to-Lab screen>1; to-Lab press>3 1";

/// A grid whose outputs follow the inputs in turn, or run against them, with some noise.
Bytes gridded(uint32_t inputs, uint32_t outputs, uint32_t grid, bool against, bool lut8 = false) {
    SeededRandom random(inputs * 10 + outputs);
    LutContent c{inputs, outputs, grid};
    for (size_t i = 0; i < power(grid, inputs) * outputs; ++i) {
        const size_t dimension = outputs > 3 ? 0 : i % outputs % inputs;  // L* alone rules inks
        const size_t node = i / outputs / power(grid, inputs - 1 - dimension) % grid;
        const auto v = static_cast<uint16_t>(node * 64500 / (grid - 1) + random.upTo(1000));
        c.clut.push_back(against ? uint16_t(65535 - v) : v);
    }
    for (uint32_t i = 0; i < 256 * (inputs + outputs); ++i)
        (i < 256 * inputs ? c.inTables : c.outTables)
            .push_back(static_cast<uint16_t>(257 * (i % 256) * (i % 256) / 255));
    return lut8 ? lut8Tag(c) : lut16Tag(c);
}

ProfileBytes lutDevice(const char* space, const char* pcs, uint32_t inks, uint32_t grid,
                       uint32_t backGrid, bool lut8 = false) {
    return ProfileBytes("prtr", space, pcs)
        .addTag("A2B0", gridded(inks, 3, grid, inks > 3, lut8))
        .addTag("B2A0", gridded(3, inks, backGrid, inks > 3, lut8))
        .addTag("gamt", gridded(3, 1, 9, false))
        .addTag("wtpt", xyzTag(0.82, 0.85, 0.72));
}

std::map<std::string, ProfileBytes> devices() {
    const Bytes white = xyzTag(0.93, 0.98, 0.87);
    LutABContent ab{3, 3, 2, curves("ghs"), {}, curves("ghi")};
    ab.grid = {9, 9, 9};
    return {{"screen", rgbProfile(curves("h"), "mntr").addTag("wtpt", white)},
            {"scanner", rgbProfile(curves("3"), "scnr").addTag("wtpt", white)},
            {"press", lutDevice("CMYK", "Lab ", 4, 5, 17)},
            {"proofer", lutDevice("RGB ", "XYZ ", 3, 9, 17, true)},
            {"five", lutDevice("5CLR", "Lab ", 5, 3, 9)},
            {"duo", lutDevice("2CLR", "Lab ", 2, 17, 9)},
            {"link", lutProfile(gridded(3, 3, 9, false), "RGB ", "RGB ")},
            {"ab", lutProfile(lutAToBTag(ab), "RGB ", "Lab ").addTag("B2A0", lutBToATag(ab))},
            {"gray", ProfileBytes("prtr", "GRAY", "Lab ").addTag("kTRC", curves("g")[0])},
            {"patches", grayProfile()}};
}

OwnedXform stage(const std::string& code) {
    static const std::map<std::string, ProfileBytes> kDevices = devices();
    const unsigned short d50[3] = {31595, 32768, 27030}, paper[3] = {26870, 27853, 23593};
    const size_t at = code.find_first_of("><?");
    if (at != std::string::npos) {
        const uint32_t direction = code[at] == '>' ? 1 : code[at] == '<' ? 2 : 3;
        return requested(kDevices.at(code.substr(0, at)), uint32_t(code[at + 1] - '0'), direction);
    }
    if (code == "Lab-XYZ") return OwnedXform(icGetLabToXyzXform(d50, paper, false));
    if (code == "full-Lab-XYZ") return OwnedXform(icGetLabToXyzXform(d50, d50, true));
    if (code == "XYZ-Lab") return OwnedXform(icGetXyzToLabXform(d50, d50));
    if (code == "squeezed") return OwnedXform(icGetPerceptualToRelativeXform(stage("ab>1").get()));
    if (code == "stretched")
        return OwnedXform(icGetRelativeToPerceptualXform(stage("press>1").get()));
    icXform_t lab = nullptr;
    EXPECT_EQ(code == "Lab" ? icMakeLabXform(16, 16, 16, &lab) : icMakeLabXform(8, 10, 6, &lab), 0);
    return OwnedXform(lab);
}

OwnedXform built(const std::string& line) {
    std::istringstream words(line);
    std::vector<OwnedXform> owners;
    std::vector<icXform_t> chain;
    std::string builder;
    int options = 0;
    for (std::string word; words >> word;) {
        if (word == "from-Lab" || word == "to-Lab") {
            builder = word;
        } else if (word.size() == 1) {
            options = word[0] - '0';
        } else {
            owners.push_back(stage(word));
            chain.push_back(owners.back().get());
        }
    }
    if (builder.empty()) return combined(chain, options);
    icXform_t out = nullptr;
    const int count = static_cast<int>(chain.size());
    EXPECT_EQ(builder == "from-Lab" ? icBuildLabXform(count, chain.data(), &out, nullptr)
                                    : icBuild2LabXform(count, chain.data(), &out, options, nullptr),
              0);
    return OwnedXform(out);
}

}  // namespace

Rows chainRows() {
    Rows rows;
    std::istringstream lines(kChains);
    for (std::string line; std::getline(lines >> std::ws, line, ';');) {
        const OwnedXform whole = built(line);
        std::replace(line.begin(), line.end(), ' ', ',');
        rows.push_back({line, {}});
        addStored(rows.back().hash, whole.get());
        for (const int bits : {8, 16})
            addConverted(rows.back().hash, whole.get(), bits, bits);
    }
    return rows;
}

}  // namespace lumoxa_test
