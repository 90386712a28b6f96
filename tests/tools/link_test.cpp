// SPDX-License-Identifier: Apache-2.0
//
// Device links: made by the tool, looked into, and used by it in place of the chains.
#include <filesystem>
#include <sstream>

#include <gtest/gtest.h>
#include <vips/vips.h>

#include "tests/support/real_profiles.h"
#include "tests/support/run_tool.h"
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace {

using namespace lumoxa_test;

class LinkTool : public ToolRun {
  protected:
    void SetUp() override {
        ASSERT_EQ(VIPS_INIT("link_test"), 0);
        ToolRun::SetUp();
        save("wide.icc", realProfile("colord/AdobeRGB1998.icc"));
        save("cmyk.icc", realProfile("ghostscript/default_cmyk.icc"));
        save("gray.icc", realProfile("icc/Gray-CIE_L.icc"));
    }

    std::string word(const std::string& name) const { return name == "sRGB" ? name : path(name); }

    void saveRamp(const std::string& name, int bands) const {
        VipsImage *ramp = nullptr, *image = nullptr;
        const auto meaning = bands == 1 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB;
        ASSERT_EQ(vips_identity(&ramp, "bands", bands, nullptr), 0);
        ASSERT_EQ(vips_copy(ramp, &image, "interpretation", meaning, nullptr), 0);
        ASSERT_EQ(vips_image_write_to_file(image, path(name).c_str(), nullptr), 0);
        g_object_unref(ramp);
        g_object_unref(image);
    }

    Result link(const std::vector<std::string>& profiles, const std::string& output,
                const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments = {"link"};
        for (const std::string& name : profiles)
            arguments.push_back(word(name));
        arguments.insert(arguments.end(), {"-o", path(output)});
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run(arguments);
    }

    // Grid points of the table that a link stores.
    unsigned long loadedGrid(const std::string& name) const {
        OwnedXform xform;
        EXPECT_EQ(request(fileBytes(path(name)), 0, icDeviceToPcs, xform), 0);
        return xform->gridPoints;
    }
    Samples values(std::vector<std::string> options, const std::string& input) const {
        options.insert(options.begin(), "values");
        const Result result = run(options, input);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        Samples samples;
        std::istringstream in(result.out);
        for (int value = 0; in >> value; in.ignore())
            samples.push_back(static_cast<uint16_t>(value));
        return samples;
    }
    Samples linked(const std::string& name, const std::string& input) const {
        return values({"--link", path(name)}, input);
    }
};

// Colours as lines of text.
std::string lines(const Samples& samples, size_t channels) {
    std::string text;
    for (size_t i = 0; i < samples.size(); ++i)
        text += std::to_string(samples[i]) + ((i + 1) % channels == 0 ? "\n" : ",");
    return text;
}

std::string randomLines(size_t channels, uint32_t top) {
    return lines(SeededRandom(20).samples(3000 * channels, top), channels);
}

struct Route {
    const char *from, *to;
    size_t inputs;
    const char *intent, *grid, *option;  // by which the chain uses a table as well
};
void PrintTo(const Route& route, std::ostream* out) {
    *out << route.from << "_to_" << route.to << "_" << route.intent;
}
class LinkedColours : public LinkTool, public testing::WithParamInterface<Route> {};

TEST_P(LinkedColours, AreThoseOfTheChain) {
    const Route& route = GetParam();
    const std::string option = route.option;
    std::vector<std::string> linkOptions = {"--intent", route.intent};
    std::vector<std::string> chain = {"--from",       word(route.from), "--to",
                                      word(route.to), "--intent",       route.intent};
    if (!option.empty()) chain.push_back(option);
    if (option == "--display-flare") linkOptions.push_back(option);
    const Result made = link({route.from, route.to}, "link.icc", linkOptions);
    EXPECT_NE(made.out.find(route.grid), std::string::npos) << made.out << made.err;
    EXPECT_EQ(loadedGrid("link.icc"), std::stoul(route.grid + 5));
    for (const uint32_t top : {255u, 65535u}) {
        std::vector<std::string> linkChain = {"--link", path("link.icc")};
        if (top > 255) chain.push_back("-16"), linkChain.push_back("-16");
        const std::string colours = randomLines(route.inputs, top);
        const Samples expected = values(chain, colours);
        EXPECT_GE(expected.size(), 3000u);
        EXPECT_TRUE(values(linkChain, colours) == expected) << top;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Routes, LinkedColours,
    testing::Values(Route{"sRGB", "cmyk.icc", 3, "relative", "grid 33, tetra", ""},
                    Route{"sRGB", "cmyk.icc", 3, "perceptual", "grid 33, tetra", ""},
                    Route{"sRGB", "cmyk.icc", 3, "absolute", "grid 33, tetra", ""},
                    Route{"cmyk.icc", "sRGB", 4, "relative", "grid 17, penta", ""},
                    Route{"cmyk.icc", "cmyk.icc", 4, "relative", "grid 17, penta", ""},
                    Route{"sRGB", "wide.icc", 3, "relative", "grid 49, tetra", "--combine"},
                    Route{"wide.icc", "sRGB", 3, "absolute", "grid 49, tetra", "--combine"},
                    Route{"wide.icc", "sRGB", 3, "relative", "grid 49, tetra", "--display-flare"},
                    Route{"gray.icc", "sRGB", 1, "relative", "grid 255, multi", "--combine"}));

// The table between two profiles without one has to come near what they give one after the other.
TEST_F(LinkTool, TableBetweenProfilesWithoutOneIsFine) {
    save("half-white.icc", rgbProfile({curveTag({563})}, "mntr")
                               .addTag("wtpt", xyzTag(0.9642 / 2, 0.5, 0.8249 / 2))
                               .image());
    const std::string colours = "100,180,90\n60,90,140\n200,200,200\n9,9,9\n255,255,255";
    const std::pair<const char*, const char*> pairs[] = {
        {"wide.icc", "sRGB"}, {"half-white.icc", "sRGB"}, {"sRGB", "half-white.icc"}};
    for (const auto& [from, to] : pairs) {
        const std::vector<std::string> steps = {"--from", word(from), "--to",
                                                word(to), "--intent", "absolute"};
        std::vector<std::string> table = steps;
        table.push_back("--combine");
        EXPECT_LE(largestDifference(values(steps, colours), values(table, colours)), 1)
            << from << to;
    }
}

// A press that says more of itself than the built-in sRGB does.
Bytes talkativePress() {
    LutContent fromPress, toPress;
    fromPress.inputs = toPress.outputs = 4;
    const auto bytes = [](const std::string& text, size_t size) {
        Bytes result(text.begin(), text.end());
        result.resize(size);
        return result;
    };
    Bytes maker = bytes("desc....____Ink", 100);
    put32(maker, 8, 4);
    const Bytes cut(maker.begin(), maker.begin() + 40);
    Bytes image = ProfileBytes("prtr", "CMYK", "Lab ")
                      .addTag("A2B0", lut16Tag(fromPress))
                      .addTag("B2A0", lut16Tag(toPress))
                      .addTag("wtpt", xyzTag(0.9, 0.95, 0.8))
                      .addTag("tech", bytes("sig ....offs", 12))
                      .addTag("dmnd", maker)
                      .addTag("dmdd", cut)
                      .image();
    put32(image, 48, signature("ABCD"));
    return image;
}

Bytes tagBytes(const OwnedProfile& profile, const char* name) {
    icTagValue_t value = {};
    EXPECT_EQ(icTagGetById(profile.get(), signature(name), &value), 0) << name;
    const auto* first = static_cast<const uint8_t*>(value.data);
    Bytes bytes(first, first + value.size);
    icTagFree(&value);
    return bytes;
}

TEST_F(LinkTool, ProfileSaysWhatItWasMadeFrom) {
    save("press.icc", talkativePress());
    ASSERT_EQ(link({"sRGB", "press.icc"}, "link.icc", {"--intent", "absolute", "-q"}).exitCode, 0);
    const OwnedProfile profile = loaded(fileBytes(path("link.icc")));
    icHeader header = {};
    ASSERT_EQ(icProfileGetHeader(profile.get(), &header), 0);
    EXPECT_EQ(header.version, 0x02400000u);
    EXPECT_EQ(header.deviceClass, signature("link"));
    EXPECT_EQ(header.colorSpace, signature("RGB "));
    EXPECT_EQ(header.pcs, signature("CMYK"));
    EXPECT_EQ(header.renderingIntent, 3u);
    EXPECT_EQ(header.size, fileBytes(path("link.icc")).size());
    char text[100] = {};
    EXPECT_EQ(icGetDescription(profile.get(), text, sizeof text), 0);
    EXPECT_STREQ(text, "sRGB (IEC 61966-2-1) to press.icc");
    EXPECT_EQ(icGetCopyright(profile.get(), text, sizeof text), 0);
    const OwnedProfile press = loaded(talkativePress());
    EXPECT_EQ(tagBytes(profile, "wtpt"), tagBytes(press, "wtpt"));
    EXPECT_EQ(tagBytes(profile, "A2B0")[9], 4);

    // Of each profile 20 bytes and two descriptions; an empty one has 91 bytes, the maker's 94.
    const Bytes sequence = tagBytes(profile, "pseq");
    constexpr size_t kSecond = 12 + 20 + 2 * 91;
    ASSERT_EQ(sequence.size(), kSecond + 20 + 94 + 91);
    EXPECT_EQ(sequence[11], 2);
    const auto at = [&](size_t offset, size_t size) {
        return std::string(sequence.begin() + static_cast<long>(offset),
                           sequence.begin() + static_cast<long>(offset + size));
    };
    EXPECT_EQ(at(kSecond, 4), "ABCD");
    EXPECT_EQ(at(kSecond + 16, 4), "offs");
    EXPECT_EQ(at(kSecond + 20 + 12, 3), "Ink");
    EXPECT_EQ(at(kSecond + 20 + 94, 4), "desc");
}

// Corners of the cube are grid points everywhere, so that only rounding is between the ways.
TEST_F(LinkTool, ProofsAndLinksOfLinksGiveWhatTheirPartsGive) {
    const std::string corners = "255,0,0\n0,255,0\n0,0,255\n255,255,255\n0,0,0\n";
    const Samples ink = values({"--from", "sRGB", "--to", path("cmyk.icc")}, corners);
    const Samples expected = values({"--from", path("cmyk.icc"), "--to", "sRGB"}, lines(ink, 4));
    ASSERT_EQ(link({"sRGB", "cmyk.icc", "sRGB"}, "proof.icc").exitCode, 0);
    ASSERT_EQ(link({"sRGB", "cmyk.icc"}, "there.icc").exitCode, 0);
    ASSERT_EQ(link({"cmyk.icc", "sRGB"}, "back.icc").exitCode, 0);
    const Result both = link({"there.icc", "back.icc"}, "both.icc");
    ASSERT_EQ(both.exitCode, 0) << both.err;
    ASSERT_EQ(link({"sRGB", "sRGB", "there.icc", "cmyk.icc", "sRGB"}, "mix.icc").exitCode, 0);
    EXPECT_GT(expected[1], 5) << "a press has no such red";
    for (const char* name : {"proof.icc", "both.icc", "mix.icc"}) {
        EXPECT_LE(largestDifference(linked(name, corners), expected), 2) << name;
    }
}

TEST_F(LinkTool, AbstractProfileChangesColoursOnTheWay) {
    LutContent gray;  // keeps L*, makes a* and b* neutral
    for (const uint16_t lightness : {0, 65535}) {
        for (int ab = 0; ab < 4; ++ab)
            gray.clut.insert(gray.clut.end(), {lightness, 32768, 32768});
    }
    save("gray-look.icc",
         ProfileBytes("abst", "Lab ", "Lab ").addTag("A2B0", lut16Tag(gray)).image());
    const Result made = link({"sRGB", "gray-look.icc", "sRGB"}, "look.icc");
    ASSERT_EQ(made.exitCode, 0) << made.err;
    EXPECT_LE(
        largestDifference(linked("look.icc", "255,0,0\n60,60,60"), {130, 130, 130, 60, 60, 60}), 1);
}

TEST_F(LinkTool, EightBitTableStaysWithinOneStep) {
    ASSERT_EQ(link({"sRGB", "gray.icc"}, "16.icc").exitCode, 0);
    const Result made = link({"sRGB", "gray.icc"}, "8.icc", {"--lut8"});
    ASSERT_NE(made.out.find("lut8, RGB to GRAY, grid 33"), std::string::npos) << made.err;
    EXPECT_EQ(loadedGrid("8.icc"), 33u);
    EXPECT_LT(std::filesystem::file_size(path("8.icc")), 40000u);
    const std::string colours = randomLines(3, 255);
    EXPECT_LE(largestDifference(linked("8.icc", colours), linked("16.icc", colours)), 1);
}

TEST_F(LinkTool, ImageHasTheProfileThatIsNamedOrNone) {
    ASSERT_EQ(link({"wide.icc", "cmyk.icc"}, "link.icc").exitCode, 0);
    saveRamp("in.tif[profile=" + path("wide.icc") + "]", 3);
    const auto convert = [&](const std::string& output, std::vector<std::string> options) {
        options.insert(options.begin(), {"convert", path("in.tif"), path(output)});
        const Result result = run(options);
        EXPECT_EQ(result.exitCode, 0);
        return result.err;
    };
    const std::string linkPath = path("link.icc"), cmyk = path("cmyk.icc");
    const std::string notes = convert("plain.tif", {"--link", linkPath});
    EXPECT_NE(notes.find("own profile"), std::string::npos) << notes;
    EXPECT_NE(notes.find("gets no profile"), std::string::npos) << notes;
    EXPECT_EQ(text("plain.tif").find("acsp"), std::string::npos) << "the source's profile";
    EXPECT_EQ(convert("named.tif", {"--link", linkPath, "--to", cmyk, "-q"}), "");
    convert("chain.tif", {"--to", cmyk, "-q"});
    EXPECT_GT(text("chain.tif").size(), 1000u);
    EXPECT_TRUE(text("named.tif") == text("chain.tif"));
}

TEST_F(LinkTool, RefusesWithReasonAndExitCode) {
    ASSERT_EQ(link({"sRGB", "cmyk.icc"}, "link.icc").exitCode, 0);
    save("names.icc", realProfile("colord/x11-colors.icc"));
    save("lab.icc", realProfile("ghostscript/lab.icc"));
    save("look.icc", ProfileBytes("abst", "Lab ", "Lab ").addTag("A2B0", lut16Tag({})).image());
    Bytes liar = fileBytes(path("link.icc"));
    put32(liar, 16, signature("CMYK"));
    save("liar.icc", liar);
    saveRamp("gray.tif", 1);
    const std::string linkPath = path("link.icc"), out = path("out.icc"), tif = path("out.tif");
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        const char* word;
    } cases[] = {
        {{"link", "sRGB", "-o", out}, 2, "two profiles"},
        {{"link", "sRGB", "sRGB"}, 2, "--output"},
        {{"link", "sRGB", "sRGB", "-o", out, "--lut8", "--lut16"}, 2, "--lut"},
        {{"link", "sRGB", "sRGB", "-o", out, "--description", "caf\xC3\xA9"}, 2, "ASCII"},
        {{"link", "sRGB", path("names.icc"), "-o", out}, 1, "named colour"},
        {{"link", "sRGB", path("lab.icc"), "-o", out}, 1, "lab.icc: is for Lab"},
        {{"link", path("look.icc"), "sRGB", "-o", out}, 1, "look.icc: is an abstract"},
        {{"link", "sRGB", path("look.icc"), "-o", out}, 1, "look.icc: ends the chain"},
        {{"link", "sRGB", linkPath, "-o", out}, 1, "link.icc: is a device link"},
        {{"link", linkPath, "sRGB", "-o", out}, 1, "built-in sRGB: is for RGB, but"},
        {{"link", linkPath, linkPath, "-o", out}, 1, "gives CMYK"},
        {{"values", "--from", linkPath, "--to", "sRGB", "1,2,3"}, 1, "--link"},
        {{"values", "--link", "sRGB", "1,2,3"}, 1, "no device link"},
        {{"values", "--link", path("liar.icc"), "1,2,3,4"}, 1, "has 3 channels"},
        {{"values", "--link", linkPath, "--from", "sRGB", "1,2,3"}, 2, "--from"},
        {{"values", "--link", linkPath, "--intent", "relative", "1,2,3"}, 2, "--intent"},
        {{"values", "--to", "sRGB", "1,2,3"}, 2, "--from"},
        {{"convert", path("gray.tif"), tif}, 2, "--to or --link"},
        {{"convert", path("gray.tif"), tif, "--link", linkPath}, 1, "has 1"},
        {{"convert", path("gray.tif"), tif, "--link", linkPath, "--to", "sRGB"}, 1, "gives CMYK"},
        {{"convert", path("gray.tif"), path("out.png"), "--link", linkPath}, 2, ".tif or .jpg"},
    };
    for (const auto& fault : cases) {
        const Result result = run(fault.arguments);
        EXPECT_EQ(result.exitCode, fault.exitCode) << result.err;
        EXPECT_NE(result.err.find(fault.word), std::string::npos) << fault.word << result.err;
    }
    EXPECT_FALSE(std::filesystem::exists(out) || std::filesystem::exists(tif));
}

}  // namespace
