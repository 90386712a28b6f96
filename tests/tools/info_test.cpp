// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa info`: that it prints the library's report, for people and as JSON, and its exit codes.
// What reports say is tested in tests/inspect.
#include <nlohmann/json.hpp>

#include "lumoxa/lumoxa.hpp"
#include "tests/support/run_tool.h"
#include "tests/support/seeded_random.h"
#include "tests/support/sound_profiles.h"

namespace {

using namespace lumoxa_test;
using Json = nlohmann::json;

class Info : public ToolRun {
  protected:
    Result runOn(const Bytes& image, const std::string& options = {}) const {
        save("p.icc", image);
        return run("info p.icc" + options);
    }

    Json infoOf(const Bytes& image) const {
        const Result result = runOn(image, " --json");
        const Json json = Json::parse(result.out, nullptr, false);
        EXPECT_FALSE(json.is_discarded()) << result.out;
        EXPECT_EQ(result.exitCode, json["fault"].is_null() ? 0 : 1) << result.out << result.err;
        return json;
    }
};

void expectWords(const std::string& text, std::initializer_list<const char*> words) {
    for (const char* word : words)
        EXPECT_NE(text.find(word), std::string::npos) << word << '\n' << text;
}

Bytes rgbDisplay() {
    ProfileBytes profile("mntr", "RGB ");
    profile.addTag("rTRC", curveTag({563})).addTag("gTRC", curveTag({0, 1, 65535}));
    profile.addTag("bTRC", parametricTag(0, {2.5})).addTag("A2B0", lutAToBTag(cube()));
    profile.addTag("B2A1", lut16Tag({})).addTag("bkpt", xyzTag(0.01, 0.01, 0.01));
    return made(completed(profile, 4), 4);
}

TEST_F(Info, PrintsFactsInWords) {
    const Result result = runOn(rgbDisplay());
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out.substr(0, 2), "x\n");
    expectWords(
        result.out,
        {"\n  copyright         en-US x\n", "\n  version           4.0.0\n", "mntr (display)",
         "(not embedded, independent)", "\n  media white       0.9642 1.0000 0.8249\n",
         "0.0100 0.0100 0.0100, L* 9.0\n", "\n  rTRC  curv ", "gamma 2.20\n",
         "table of 3 entries\n", "parametric type 0: g 2.5\n",
         "lutAtoB, 3 to 3 channels: A curves, CLUT 2x3x4 of 16 bits, B curves\n",
         "lut16, 3 to 3 channels, grid 2x2x2, tables of 256 and 256 entries\n",
         "from device, perceptual: A2B0 lutAtoB, RGB to XYZ, grid 4, 3 to 3 channels\n",
         "gamut test: not offered\n"});
    expectWords(run("info sRGB").out,
                {"curves and matrix, RGB to XYZ", "violations of ICC.1: none found\n"});
}

TEST_F(Info, PrintsWhatPrintersAddToTheFacts) {
    expectWords(runOn(output2({}, "CMYK")).out,
                {"gamut test: offered\n", "black points (ISO 18619)\n", "largest sum of inks\n",
                 "  perceptual        400 %\n"});
}

TEST_F(Info, PrintsViolationsWithPlaceAndClause) {
    constexpr size_t kIlluminantAt = 68;
    const Bytes sound = version2();
    const Result header = runOn(withWord(sound, kIlluminantAt, 0xF351));
    EXPECT_EQ(header.exitCode, 0) << header.err;
    expectWords(header.out, {"violations of ICC.1\n  profile, byte 68: ", "(ICC.1:2001-04, "});
    const Result tag = runOn(withText(sound, dataOf(sound, "cprt") + 8, "\xA9"));
    EXPECT_EQ(tag.exitCode, 0) << tag.err;
    expectWords(tag.out, {"\n  'cprt', byte ", "7-bit"});
}

TEST_F(Info, JsonIsTheReportOfTheLibrary) {
    const Bytes image = rgbDisplay();
    EXPECT_EQ(runOn(image, " --json").out, lumoxa::inspect(image.data(), image.size()) + "\n");
}

TEST_F(Info, FaultsMakeTheExitCode1) {
    const Bytes sound = version2();
    const Result result = runOn(withText(sound, dataOf(sound, "kTRC"), "sf32"));
    EXPECT_EQ(result.exitCode, 1);
    expectWords(result.out, {"from device, perceptual: faulty\n", "\n  'kTRC', byte "});
    expectWords(result.err, {"lumoxa: p.icc: tag 'kTRC'", "; get a sound copy of the profile\n"});
    for (const Bytes& none : {Bytes(), Bytes(500, 'x')}) {
        EXPECT_FALSE(infoOf(none)["fault"].is_null());
        expectWords(runOn(none).err, {"lumoxa: p.icc: ", "; give a profile file\n"});
    }
}

TEST_F(Info, UnreadableFilesMakeNoDocument) {
    const Result result = run("info --json nowhere.icc");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    expectWords(result.err, {"nowhere.icc"});
}

TEST_F(Info, RealProfilesArePrinted) {
    realProfile("colord/sRGB.icc");  // throws where none is installed
    for (const std::string& path : realProfilePaths()) {
        const Result result = runOn(fileBytes(path));
        EXPECT_EQ(result.exitCode, 0) << path << result.err;
        expectWords(result.out, {"  created  ", "\ntags\n", "\nviolations of ICC.1"});
    }
}

// People get words where a member of the report may be null, however the profile is broken.
TEST_F(Info, BentAndCutBytesArePrinted) {
    const Bytes display = rgbDisplay();
    SeededRandom random(1);
    for (int i = 0; i < 60; ++i) {
        Bytes bent = display;
        for (int j = 0; j < 4; ++j)
            bent[random.upTo(599)] = static_cast<uint8_t>(random.upTo(255));
        if (i % 3 == 0) bent.resize(random.upTo(599));
        const Result result = runOn(bent);
        EXPECT_EQ(result.signal, 0);
        EXPECT_LT(result.exitCode, 2) << result.err;
        expectWords(result.out, {"violations of ICC.1"});
    }
}

}  // namespace
