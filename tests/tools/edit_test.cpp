// SPDX-License-Identifier: Apache-2.0
//
// Profiles that the tool edits and makes, read back byte by byte.
#include <algorithm>
#include <csignal>
#include <cstring>
#include <utility>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "tests/support/profile_bytes.h"
#include "tests/support/real_profiles.h"
#include "tests/support/run_tool.h"
#include "tests/support/xforms.h"

namespace {

namespace fs = std::filesystem;
using namespace lumoxa_test;

using Tags = std::vector<std::pair<std::string, Bytes>>;

// Makes every file end at `bytes`, as a disk does that is full there.
class FullDisk {
  public:
    explicit FullDisk(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit = {bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_IGN);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit before_ = {};
};

uint32_t number(const Bytes& bytes, size_t at) {
    return signature(std::string(bytes.begin() + static_cast<long>(at),
                                 bytes.begin() + static_cast<long>(at) + 4));
}

Tags tagsOf(const Bytes& profile) {
    Tags tags;
    for (size_t at = 132; at < 132 + 12 * size_t{number(profile, 128)}; at += 12) {
        const auto first = profile.begin() + number(profile, at + 4);
        tags.emplace_back(std::string(profile.begin() + static_cast<long>(at),
                                      profile.begin() + static_cast<long>(at) + 4),
                          Bytes(first, first + number(profile, at + 8)));
    }
    return tags;
}

class ToolEdit : public ToolRun {
  protected:
    Tags tags(const std::string& name) const { return tagsOf(fileBytes(path(name))); }
    Bytes tag(const std::string& name, const std::string& signature) const {
        const Tags all = tags(name);
        const auto found = std::find_if(
            all.begin(), all.end(), [&](const auto& entry) { return entry.first == signature; });
        return found == all.end() ? Bytes() : found->second;
    }
    // The coordinates of an 'XYZ ' or 'sf32' tag.
    std::vector<double> fixed(const std::string& name, const std::string& signature) const {
        const Bytes bytes = tag(name, signature);
        std::vector<double> values;
        for (size_t at = 8; at + 4 <= bytes.size(); at += 4)
            values.push_back(static_cast<int32_t>(number(bytes, at)) / 65536.0);
        return values;
    }
    Result edit(const std::string& in, std::vector<std::string> options) const {
        options.insert(options.begin(), {"edit", path(in), "-o", path("out.icc")});
        return run(options);
    }
    Result makeDisplay(const std::string& primaries, const std::string& white,
                       const std::string& curve) const {
        return run({"make-display", "--primaries", primaries, "--white", white, "--trc", curve,
                    "-o", path("out.icc")});
    }
};

constexpr const char* kSrgbPrimaries = "0.64,0.33,0.3,0.6,0.15,0.06";
constexpr const char* kD65 = "0.3127,0.329";

TEST_F(ToolEdit, ChangesNothingButWhatIsAsked) {
    const Bytes added = {'d', 'a', 't', 'a', 0, 0, 0, 0, 1, 2, 3};
    save("new.bin", added);
    size_t edited = 0;
    for (const std::string& profile : realProfilePaths()) {
        const Result result =
            run({"edit", profile, "-o", path("out.icc"), "--set-tag", "ab=" + path("new.bin")});
        if (result.exitCode != 0) continue;
        ++edited;
        Bytes before = fileBytes(profile), after = fileBytes(path("out.icc"));
        Tags expected = tagsOf(before);
        expected.emplace_back("ab  ", added);
        EXPECT_EQ(tagsOf(after), expected) << profile;
        EXPECT_EQ(number(after, 0), after.size()) << "cut off, for other software: " << profile;
        put32(before, 0, number(after, 0));
        std::fill_n(before.begin() + 84, 16, uint8_t{0});
        EXPECT_TRUE(std::equal(after.begin(), after.begin() + 128, before.begin())) << profile;
    }
    EXPECT_GT(edited, 10u);
}

TEST_F(ToolEdit, ReplacesItsInputWhenWholeAndNotBefore) {
    const Bytes before = realProfile("ghostscript/default_cmyk.icc");
    save("in.icc", before);
    const std::vector<std::string> inPlace = {"edit",         path("in.icc"), "-o",
                                              path("in.icc"), "--remove-tag", "A2B0"};
    {
        const FullDisk disk(4096);
        const Result result = run(inPlace);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_NE(result.err.find("can't be written whole"), std::string::npos) << result.err;
    }
    EXPECT_EQ(fileBytes(path("in.icc")), before);
    for (const auto& entry : fs::directory_iterator(folder_))
        EXPECT_FALSE(entry.path().filename().string().starts_with(".lumoxa")) << entry.path();
    EXPECT_EQ(run(inPlace).exitCode, 0);
    EXPECT_EQ(tags("in.icc").size() + 1, tagsOf(before).size());
    EXPECT_TRUE(tag("in.icc", "A2B0").empty());
}

TEST_F(ToolEdit, TextsTakeTheFormOfTheVersion) {
    Bytes profile = smallRgbProfile();
    profile[8] = 2;
    save("v2.icc", profile);
    profile[8] = 4;
    save("v4.icc", profile);
    ASSERT_EQ(edit("v2.icc", {"--description", "Plain", "--copyright", "(c)"}).exitCode, 0);
    EXPECT_EQ(tag("out.icc", "cprt"), (Bytes{'t', 'e', 'x', 't', 0, 0, 0, 0, '(', 'c', ')', 0}));
    EXPECT_EQ(run({"info", path("out.icc")}).out.substr(0, 6), "Plain\n");
    EXPECT_EQ(edit("v2.icc", {"--description", "Gr\u00F6\u00DFe"}).exitCode, 2);
    const std::string text = "\u00DF\u20AC\U0001D11E";
    ASSERT_EQ(edit("v4.icc", {"--description", text}).exitCode, 0);
    const Bytes localized = {'m', 'l', 'u', 'c', 0,   0,    0,    0,    0,    0,    0,    1,
                             0,   0,   0,   12,  'e', 'n',  'U',  'S',  0,    0,    0,    8,
                             0,   0,   0,   28,  0,   0xDF, 0x20, 0xAC, 0xD8, 0x34, 0xDD, 0x1E};
    EXPECT_EQ(tag("out.icc", "desc"), localized);
    for (const char* broken : {"\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\xFF"})
        EXPECT_EQ(edit("v4.icc", {"--copyright", broken}).exitCode, 2);
}

TEST_F(ToolEdit, WhiteAndCurvesGetTheirExactBytes) {
    save("in.icc", smallRgbProfile());
    ASSERT_EQ(edit("in.icc", {"--white", "1,0.5,2", "--trc", "gTRC=2.2", "--trc", "bTRC=1"}).err,
              "");
    EXPECT_EQ(fixed("out.icc", "wtpt"), (std::vector<double>{1, 0.5, 2}));
    EXPECT_EQ(tag("out.icc", "gTRC"),
              (Bytes{'c', 'u', 'r', 'v', 0, 0, 0, 0, 0, 0, 0, 1, 2, 0x33, 0, 0}));
    EXPECT_EQ(tag("out.icc", "bTRC")[12], 1);
    EXPECT_EQ(tag("out.icc", "rTRC"), tag("in.icc", "rTRC"));
}

TEST_F(ToolEdit, RefusalsSayWhatIsWrong) {
    save("in.icc", smallRgbProfile());
    save("short.bin", {'d', 'a', 't', 'a', 0, 0, 0});
    save("down.txt", {'0', '\n', '1', '\n', '.', '5'});
    save("one.txt", {'#', '\n', '1', '\n'});
    const struct {
        std::vector<std::string> options;
        int exitCode;
        const char* word;
    } edits[] = {{{}, 2, "nothing to edit"},
                 {{"--remove-tag", "A2B0"}, 1, "'A2B0' is missing"},
                 {{"--remove-tag", "A2B0x"}, 2, "'A2B0x'"},
                 {{"--remove-tag", ""}, 2, "''"},
                 {{"--remove-tag", "rTRC", "--trc", "rTRC=2"}, 2, "'rTRC' is named by two"},
                 {{"--set-tag", "data"}, 2, "'data'"},
                 {{"--set-tag", "data=" + path("short.bin")}, 1, "has 7 bytes"},
                 {{"--set-tag", "data=" + path("none.bin")}, 1, "none.bin"},
                 {{"--trc", "A2B0=2"}, 2, "rTRC, gTRC, bTRC or kTRC"},
                 {{"--trc", "rTRC=0"}, 2, "1/256 to"},
                 {{"--trc", "rTRC=256"}, 2, "1/256 to"},
                 {{"--white", "1,1"}, 2, "not 3 numbers"},
                 {{"--white", "1,1,1x"}, 2, "not 3 numbers"},
                 {{"--white", "0,1,1"}, 2, "above 0"},
                 {{"--white", "1e-9,1,1"}, 2, "above 0"},
                 {{"--white", "32767.9999,1,1"}, 2, "above 0"},
                 {{"--description", "a\x1b[31m"}, 2, "control characters"}};
    const auto expect = [&](const Result& result, int exitCode, const std::string& word) {
        EXPECT_EQ(result.exitCode, exitCode) << word;
        EXPECT_NE(result.err.find(word), std::string::npos) << word << ": " << result.err;
        EXPECT_FALSE(fs::exists(path("out.icc"))) << word;
    };
    for (const auto& c : edits)
        expect(edit("in.icc", c.options), c.exitCode, c.word);
    expect(makeDisplay("0.1,0.1,0.2,0.2,0.3,0.3", kD65, "srgb"), 2, "on a line");
    expect(makeDisplay("0.64,0,0.3,0.6,0.15,0.06", kD65, "srgb"), 2, "y = 0");
    expect(makeDisplay(kSrgbPrimaries, "0.7,0.31", "srgb"), 2, "1 - x - y");
    expect(makeDisplay(kSrgbPrimaries, "0.6,0.39", "srgb"), 2, "outside the triangle");
    expect(makeDisplay(kSrgbPrimaries, kD65, "gamma:0"), 2, "above 0 and below 256");
    expect(makeDisplay(kSrgbPrimaries, kD65, path("down.txt")), 1, "line 3: goes down");
    expect(makeDisplay(kSrgbPrimaries, kD65, path("one.txt")), 1, "second value");
}

TEST_F(ToolEdit, DisplayHasTheKnownColorantsOfItsPrimaries) {
    ASSERT_EQ(makeDisplay(kSrgbPrimaries, kD65, "srgb").err, "");
    const std::vector<std::pair<const char*, std::vector<double>>> known = {
        {"rXYZ", {0.4360, 0.2225, 0.0139}},
        {"gXYZ", {0.3851, 0.7169, 0.0971}},
        {"bXYZ", {0.1431, 0.0606, 0.7141}},
        {"wtpt", {0.9642, 1, 0.8249}},
        {"chad", {1.0478, 0.0229, -0.0501, 0.0295, 0.9905, -0.0171, -0.0092, 0.0151, 0.7517}}};
    for (const auto& [name, values] : known) {
        const std::vector<double> made = fixed("out.icc", name);
        ASSERT_EQ(made.size(), values.size());
        for (size_t i = 0; i < values.size(); ++i)
            EXPECT_NEAR(made[i], values[i], 0.0005) << name << i;
    }
    OwnedXform toXyz;
    ASSERT_EQ(request(fileBytes(path("out.icc")), 1, icDeviceToPcs, toXyz), 0);
    expectNear(toXyz, {65535, 65535, 65535, 0, 0, 0}, {31595, 32768, 27030, 0, 0, 0}, 1);
}

TEST_F(ToolEdit, ColorantsAddUpToTheWhiteExactly) {
    const char* const displays[][2] = {{kSrgbPrimaries, kD65},
                                       {"0.64,0.33,0.21,0.71,0.15,0.06", kD65},
                                       {"0.68,0.32,0.265,0.69,0.15,0.06", "0.314,0.351"},
                                       {"0.7347,0.2653,0,1,0.0001,-0.077", "0.32168,0.33767"},
                                       {"0.63,0.34,0.31,0.595,0.155,0.07", "0.2831,0.2971"}};
    for (const auto& display : displays) {
        ASSERT_EQ(makeDisplay(display[0], display[1], "gamma:1").err, "");
        const auto r = fixed("out.icc", "rXYZ"), g = fixed("out.icc", "gXYZ"),
                   b = fixed("out.icc", "bXYZ");
        const int32_t d50[] = {63190, 65536, 54061};
        for (size_t i = 0; i < 3; ++i)
            EXPECT_EQ((r[i] + g[i] + b[i]) * 65536, d50[i]) << display[0];
    }
}

TEST_F(ToolEdit, CurvesKeepTheirExactGamma) {
    save("ramp.txt", {'#', 'x', '\n', '0', '\n', '.', '2', '5', ' ', '#', '\n', '1'});
    const auto entries = [&](const std::string& curve) {
        EXPECT_EQ(makeDisplay(kSrgbPrimaries, kD65, curve).err, "");
        const Bytes bytes = tag("out.icc", "gTRC");
        Samples samples(number(bytes, 8));
        for (size_t i = 0; i < samples.size(); ++i)
            samples[i] = static_cast<uint16_t>(bytes[12 + 2 * i] << 8 | bytes[13 + 2 * i]);
        return samples;
    };
    EXPECT_EQ(entries("gamma:2.19921875"), Samples{0x0233});
    EXPECT_EQ(entries(path("ramp.txt")), (Samples{0, 16384, 65535}));
    const Samples table = entries("gamma:2.2");
    ASSERT_EQ(table.size(), 4096u);
    EXPECT_EQ(table[2048], 14271);  // 65535 (2048 / 4095)^2.2
    EXPECT_EQ(table[4095], 65535);
}

}  // namespace
