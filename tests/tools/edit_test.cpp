// SPDX-License-Identifier: Apache-2.0
//
// Profiles that the tool edits and makes, read back byte by byte.
#include "tests/support/run_tool.h"

namespace {

using namespace lumoxa_test;

class ToolEdit : public ToolRun {
  protected:
    // The coordinates of an 'XYZ ' or 'sf32' tag.
    std::vector<double> fixed(const std::string& signature) const {
        const Bytes bytes = tag(signature);
        std::vector<double> values;
        for (size_t at = 8; at + 4 <= bytes.size(); at += 4)
            values.push_back(static_cast<int32_t>(number(bytes, at)) / 65536.0);
        return values;
    }
};

const std::string kDisplay = "make-display -o out.icc --white 0.3127,0.329 --primaries ";
const std::string kSrgb = kDisplay + "0.64,0.33,0.3,0.6,0.15,0.06 --trc ";

TEST_F(ToolEdit, ChangesNothingButWhatIsAsked) {
    const Bytes added = {'d', 'a', 't', 'a', 0, 0, 0, 0, 1, 2, 3};
    save("new.bin", added);
    size_t edited = 0;
    for (const std::string& profile : realProfilePaths()) {
        if (run("edit " + profile + " -o out.icc --set-tag ab=new.bin").exitCode != 0) continue;
        ++edited;
        Bytes before = fileBytes(profile), after = bytes("out.icc");
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
#if !defined(_WIN32)  // which sets no limit to files
    largestFile_ = 4096;
    expectComplaints({{"edit in.icc -o in.icc --remove-tag A2B0", 1, "can't be written whole"}});
    EXPECT_EQ(bytes("in.icc"), before);
    largestFile_ = 0;
#endif
    done("edit in.icc -o in.icc --remove-tag A2B0");
    EXPECT_EQ(tagsOf(bytes("in.icc")).size() + 1, tagsOf(before).size());
    EXPECT_TRUE(tag("A2B0", "in.icc").empty());
}

TEST_F(ToolEdit, TextsTakeTheFormOfTheVersion) {
    Bytes profile = smallRgbProfile();
    profile[8] = 2;
    save("v2.icc", profile);
    profile[8] = 4;
    save("v4.icc", profile);
    done("edit v2.icc -o out.icc --description Plain --copyright (c)");
    EXPECT_EQ(tag("cprt"), (Bytes{'t', 'e', 'x', 't', 0, 0, 0, 0, '(', 'c', ')', 0}));
    EXPECT_EQ(run("info out.icc").out.substr(0, 6), "Plain\n");
    EXPECT_EQ(run("edit v2.icc -o out.icc --description Gr\u00F6\u00DFe").exitCode, 2);
    done("edit v4.icc -o out.icc --description \u00DF\u20AC\U0001D11E");
    const Bytes utf16 = {0, 0xDF, 0x20, 0xAC, 0xD8, 0x34, 0xDD, 0x1E}, made = tag("desc");
    EXPECT_EQ(letters(made, 0) + letters(made, 16), "mlucenUS");
    EXPECT_EQ(Bytes(made.begin() + 28, made.end()), utf16);
#if !defined(_WIN32)  // where arguments are UTF-16
    for (const char* broken : {"\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\xFF"})
        EXPECT_EQ(run(std::string("edit v4.icc -o out.icc --copyright ") + broken).exitCode, 2);
#endif
}

TEST_F(ToolEdit, WhiteAndCurvesGetTheirExactBytes) {
    save("in.icc", smallRgbProfile());
    done("edit in.icc -o out.icc --white 1,0.5,2 --trc gTRC=2.25 --trc bTRC=1");
    EXPECT_EQ(fixed("wtpt"), (std::vector<double>{1, 0.5, 2}));
    EXPECT_EQ(tag("gTRC"), (Bytes{'c', 'u', 'r', 'v', 0, 0, 0, 0, 0, 0, 0, 1, 2, 0x40, 0, 0}));
    EXPECT_EQ(tag("bTRC")[12], 1);
    EXPECT_EQ(tag("rTRC"), tag("rTRC", "in.icc"));
}

TEST_F(ToolEdit, RefusalsSayWhatIsWrong) {
    save("in.icc", smallRgbProfile());
    save("one.icc", ProfileBytes().addTag("cprt", xyzTag(1, 1, 1)).image());
    save("short.bin", "data123");
    save("down.txt", "0\n1\n.5");
    save("one.txt", "#\n1\n");
    const std::string edit = "edit in.icc -o out.icc ";
    expectComplaints({{"edit in.icc -o out.icc", 2, "nothing to edit"},
                      {edit + "--remove-tag A2B0", 1, "has no tag 'A2B0'"},
                      {"edit one.icc -o out.icc --remove-tag cprt", 1, "is the only one"},
                      {edit + "--remove-tag rTRC --trc rTRC=2", 2, "'rTRC' is named by two"},
                      {edit + "--set-tag data", 2, "'data'"},
                      {edit + "--set-tag data=short.bin", 1, "has 7 bytes"},
                      {edit + "--trc A2B0=2", 2, "none of the tone curves"},
                      {edit + "--trc rTRC=256", 2, "above 0 and below 256"},
                      {edit + "--white 1e-9,1,1", 2, "above 0"},
                      {edit + "--description a\x1b[31m", 2, "control characters"},
                      {kDisplay + "0.1,0.1,0.2,0.2,0.3,0.3 --trc srgb", 2, "on a line"},
                      {kDisplay + "0.64,0,0.3,0.6,0.15,0.06 --trc srgb", 2, "y = 0"},
                      {kDisplay + "0.64,0.33,0.5,0.45,0.6,0.2 --trc srgb", 2, "outside the"},
                      {kSrgb + "gamma:0", 2, "above 0 and below 256"},
                      {kSrgb + "down.txt", 1, "line 3: goes down"},
                      {kSrgb + "one.txt", 1, "second value"}});
    EXPECT_FALSE(exists("out.icc"));
}

TEST_F(ToolEdit, DisplayHasTheKnownColorantsOfItsPrimaries) {
    done(kSrgb + "srgb");
    const std::vector<std::pair<const char*, std::vector<double>>> known = {
        {"rXYZ", {0.4360, 0.2225, 0.0139}},
        {"gXYZ", {0.3851, 0.7169, 0.0971}},
        {"bXYZ", {0.1431, 0.0606, 0.7141}},
        {"wtpt", {0.9642, 1, 0.8249}},
        {"chad", {1.0478, 0.0229, -0.0501, 0.0295, 0.9905, -0.0171, -0.0092, 0.0151, 0.7517}}};
    for (const auto& [name, values] : known) {
        const std::vector<double> made = fixed(name);
        ASSERT_EQ(made.size(), values.size());
        for (size_t i = 0; i < values.size(); ++i)
            EXPECT_NEAR(made[i], values[i], 0.0005) << name << i;
    }
}

TEST_F(ToolEdit, ColorantsAddUpToTheWhiteExactly) {
    const std::string primaries[] = {"0.64,0.33,0.3,0.6,0.15,0.06", "0.64,0.33,0.21,0.71,0.15,0.06",
                                     "0.68,0.32,0.265,0.69,0.15,0.06",
                                     "0.7347,0.2653,0,1,0.0001,-0.077"};
    for (const std::string& display : primaries) {
        done(kDisplay + display + " --trc gamma:1");
        const auto r = fixed("rXYZ"), g = fixed("gXYZ"), b = fixed("bXYZ");
        const int32_t d50[] = {63190, 65536, 54061};
        for (size_t i = 0; i < 3; ++i)
            EXPECT_EQ((r[i] + g[i] + b[i]) * 65536, d50[i]) << display;
    }
}

TEST_F(ToolEdit, CurvesKeepTheirExactGamma) {
    save("ramp.txt", "#x\n0\n.25 #\n1");
    const auto entries = [&](const std::string& curve) {
        done(kSrgb + curve);
        const Bytes bytes = tag("gTRC");
        Samples samples(number(bytes, 8));
        for (size_t i = 0; i < samples.size(); ++i)
            samples[i] = static_cast<uint16_t>(bytes[12 + 2 * i] << 8 | bytes[13 + 2 * i]);
        return samples;
    };
    EXPECT_EQ(entries("ramp.txt"), (Samples{0, 16384, 65535}));
    const Samples table = entries("gamma:2.2");
    ASSERT_EQ(table.size(), 4096u);
    EXPECT_EQ(table[2048], 14271);  // 65535 (2048 / 4095)^2.2
    EXPECT_EQ(table[4095], 65535);
}

}  // namespace
