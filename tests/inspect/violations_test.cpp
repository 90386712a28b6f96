// SPDX-License-Identifier: Apache-2.0
//
// One broken profile a rule: each is reported with tag, position and clause, and nothing else is.
#include <algorithm>
#include <cstdlib>
#include <set>

#include <gtest/gtest.h>

#include "inspect/icc_rules.h"
#include "tests/support/real_profiles.h"
#include "tests/support/sound_profiles.h"

namespace lumoxa_test {
namespace {

using namespace lumoxa::inspection;

constexpr size_t kCountAt = 128;

std::vector<Violation> violationsOf(const Bytes& image) {
    const Subject subject(image);
    return findViolations(subject, transformFacts(subject)).violations();
}

std::string listed(const std::vector<Violation>& violations) {
    std::string text;
    for (const Violation& v : violations)
        text += v.tag + " @" + std::to_string(v.offset) + " " + v.rule + " [" + v.clause + "]\n";
    return text;
}

struct Breakage {
    const char* name;
    Bytes image;
    const char* tag;  // empty: header or tag table
    size_t offset;
    const char* rule;
    const char* clause;
    bool alone = true;  // the only rule that the image breaks

    friend void PrintTo(const Breakage& breakage, std::ostream* out) { *out << breakage.name; }
};

std::vector<Breakage> brokenHeadersAndTables() {
    const Bytes v2 = version2(), v4 = version4();
    const size_t row = entryOf(v2, "wtpt");
    const Bytes twice = made(completed(completed(ProfileBytes("mntr", "GRAY"))), 2);
    return {
        {"Size", withWord(v2, 0, 100), "", 0, "size field is the size", "ICC.1:2001-04, 6.1"},
        {"Class", withText(v2, 12, "abcd"), "", 12, "the class is", "ICC.1:2001-04, 6.1"},
        {"Magic", withText(v2, 36, "acsq"), "", 36, "but it is 'acsq'", "ICC.1:2001-04, 6.1"},
        {"White", withWord(v2, 68, 0xF351), "", 68, "illuminant", "ICC.1:2001-04, 6.1"},
        {"Id", withWord(v4, 84, 1), "", 84, "MD5", "ICC.1:2010, 7.2.18"},
        {"Reserved", withWord(v4, 100, 1), "", 100, "100 to 127", "ICC.1:2010, 7.2.19"},
        {"Short", Bytes(v2.begin(), v2.begin() + 100), "", 100, "128 bytes", "ICC.1:2001-04, 6.1"},
        {"Count", withWord(v2, kCountAt, 5000), "", kCountAt, "table lies within",
         "ICC.1:2001-04, 6.2", false},
        {"End", withWord(v2, row + 4, 99996), "wtpt", row + 4, "ends within the file",
         "ICC.1:2001-04, 6.2"},
        {"Step", withWord(v2, row + 4, numberAt(v2, row + 4) + 1), "wtpt", row + 4,
         "multiple of four", "ICC.1:2001-04, 6.2", false},
        {"Twice", twice, "desc", 168, "comes once", "ICC.1:2001-04, 6.2", false}};
}

std::vector<Breakage> brokenTags() {
    const Bytes v2 = version2(), v4 = version4();
    const Bytes matrixProfile = made(completed(rgbProfile({curveTag({})}, "scnr")), 2);
    const auto without = [](const Bytes& image, const char* tag) {
        return withText(image, entryOf(image, tag), "priv");
    };
    LutContent channels, matrix;
    channels.inputs = 4;
    matrix.matrix[1] = 0.5;
    const Bytes wide = output2(lut16Tag(channels)), bent = output2(lut16Tag(matrix));
    const size_t gray = dataOf(v2, "kTRC"), tone = dataOf(v4, "kTRC"), text = dataOf(v2, "cprt");
    return {
        {"White", without(v2, "wtpt"), "wtpt", kCountAt, "a profile has", "ICC.1:2001-04, 6.3"},
        {"Gray", without(v4, "kTRC"), "kTRC", kCountAt, "gray display", "ICC.1:2010, 8.4"},
        {"Matrix", without(matrixProfile, "gXYZ"), "gXYZ", kCountAt, "matrix input",
         "ICC.1:2001-04, 6.3.1"},
        {"Gamut", without(output2({}), "gamt"), "gamt", kCountAt, "colour output",
         "ICC.1:2001-04, 6.3.3"},
        {"Link", display4(cube(), "link"), "pseq", kCountAt, "device link", "ICC.1:2010, 8.6",
         false},
        {"Names", withText(v2, 12, "nmcl"), "ncl2", kCountAt, "named colour",
         "ICC.1:2001-04, 6.3.4"},
        {"Type", withWord(v4, 8, 0x02000000), "desc", dataOf(v4, "desc"), "but it is 'mluc'",
         "ICC.1:2001-04, 6.4", false},
        {"Channels", wide, "A2B0", dataOf(wide, "A2B0") + 8, "3 to 3, but they are 4 to 3",
         "ICC.1:2001-04, 6.5.7"},
        {"Identity", bent, "A2B0", dataOf(bent, "A2B0") + 12, "identity", "ICC.1:2001-04, 6.5.7"},
        {"Entries", withWord(v2, gray + 8, 2000), "kTRC", gray, "counts take",
         "ICC.1:2001-04, 6.5.3"},
        {"Function", withWord(v4, tone + 8, 5 << 16), "kTRC", tone + 8, "function type",
         "ICC.1:2010, 10.16"},
        {"Ascii", withText(v2, text + 8, "\xA9"), "cprt", text + 8, "7-bit",
         "ICC.1:2001-04, 6.5.18"}};
}

// What no rule of a table names, but keeps the engine from making a transform.
std::vector<Breakage> brokenTransforms() {
    LutABContent narrow = cube();
    narrow.grid = {}, narrow.aCurves = {}, narrow.outputs = 1;
    const Bytes small = display4(narrow, "nmcl");
    Bytes thin = display4(cube());
    const size_t grid = dataOf(thin, "A2B0") + numberAt(thin, dataOf(thin, "A2B0") + 24);
    thin[grid + 1] = 1;
    Bytes black = made(completed(rgbProfile({curveTag({563})}, "mntr")), 2);
    const size_t colorant = dataOf(black, "gXYZ");
    for (size_t i = 8; i < 20; i += 4)
        black = withWord(black, colorant + i, 0);
    const Bytes still = withWord(version2(), dataOf(version2(), "kTRC") + 12, 0);
    return {
        {"Grid", thin, "A2B0", grid, "at least 2 points", "ICC.1:2010, 10.10"},
        {"NoClut", small, "B2A0", dataOf(small, "B2A0") + 24, "as many inputs as outputs",
         "ICC.1:2010, 10.11", false},
        {"Colorants", black, "rXYZ", dataOf(black, "rXYZ"), "no colour leads back",
         "ICC.1:2001-04, 6.5.26"},
        {"Gamma", still, "kTRC", dataOf(still, "kTRC") + 12, "gamma 0", "ICC.1:2001-04, 6.5.3"}};
}

class Violations : public testing::TestWithParam<Breakage> {};

TEST_P(Violations, AreReportedWithTagPlaceAndClause) {
    const Breakage& broken = GetParam();
    const std::vector<Violation> found = violationsOf(broken.image);
    EXPECT_TRUE(std::any_of(found.begin(), found.end(), [&](const Violation& violation) {
        return violation.tag == broken.tag &&
               violation.offset == static_cast<int64_t>(broken.offset) &&
               violation.rule.find(broken.rule) != std::string::npos &&
               violation.clause == broken.clause;
    })) << listed(found);
    EXPECT_TRUE(found.size() == 1 || !broken.alone) << listed(found);
}

const auto nameOf = [](const auto& info) { return info.param.name; };
INSTANTIATE_TEST_SUITE_P(Header, Violations, testing::ValuesIn(brokenHeadersAndTables()), nameOf);
INSTANTIATE_TEST_SUITE_P(Tags, Violations, testing::ValuesIn(brokenTags()), nameOf);
INSTANTIATE_TEST_SUITE_P(Transforms, Violations, testing::ValuesIn(brokenTransforms()), nameOf);

TEST(SoundProfiles, BreakNoRule) {
    for (const Bytes& image :
         {version2(), version4(), output2(lut8Tag({})), output2({}, "CMYK"), display4(cube())})
        EXPECT_EQ(listed(violationsOf(image)), "");
}

// Two of colord hold a tag that an old builder got wrong.
TEST(SoundProfiles, InstalledBreakNoRule) {
    const std::set<std::string> broken = {"Crayons.icc", "x11-colors.icc"};
    int seen = 0;
    for (const std::string& path : realProfilePaths()) {
        const std::string name = path.substr(path.find_last_of("/\\") + 1);
        const bool sound = path.find("colord") != std::string::npos && broken.count(name) == 0;
        if (!sound) continue;
        ++seen;
        EXPECT_EQ(listed(violationsOf(fileBytes(path))), "") << path;
    }
    EXPECT_GT(seen, 20);
}

TEST(SoundProfiles, NamedColoursTagThatNoTransformCanBeMadeFromIsNamed) {
    const std::string all = listed(violationsOf(realProfile("colord/Crayons.icc")));
    EXPECT_NE(all.find("B2A0 @5356"), std::string::npos) << all;
}

}  // namespace
}  // namespace lumoxa_test
