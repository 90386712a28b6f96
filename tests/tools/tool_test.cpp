// SPDX-License-Identifier: Apache-2.0
//
// The tool as a user or a script meets it: a program with arguments, streams and an exit code.
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <thread>

#include <gtest/gtest.h>
#include <vips/vips.h>

#include "tests/support/profile_bytes.h"
#include "tests/support/real_profiles.h"
#include "tests/support/run_tool.h"
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace {

namespace fs = std::filesystem;
using namespace lumoxa_test;

class Tool : public ToolRun {
  protected:
    void SetUp() override {
        ASSERT_EQ(VIPS_INIT("tool_test"), 0);
        ToolRun::SetUp();
        save("press.icc", pressProfile().image());
    }

    // Every ink but black is the complement of a Lab channel: not a press, but exact and tiny.
    static ProfileBytes pressProfile() {
        LutContent fromPress, toPress;
        fromPress.inputs = toPress.outputs = 4;
        ProfileBytes profile("prtr", "CMYK", "Lab ");
        return profile.addTag("A2B0", lut16Tag(fromPress)).addTag("B2A0", lut16Tag(toPress));
    }

    // A diagonal ramp; the last of 2, 4 or 5 bands is alpha.
    void saveImage(const std::string& name, int bands, VipsBandFormat format, int width = 64,
                   int height = 48) const {
        VipsImage *ramp = nullptr, *scaled = nullptr, *cast = nullptr, *copy = nullptr;
        const bool sixteen = format == VIPS_FORMAT_USHORT;
        std::vector<double> gain, offset;
        for (int band = 0; band < bands; ++band) {
            gain.push_back((sixteen ? 900.0 : 3.0) / (band + 1));
            offset.push_back(10.0 * band);
        }
        const auto interpretation = bands < 3 ? VIPS_INTERPRETATION_B_W
                                    : sixteen ? VIPS_INTERPRETATION_RGB16
                                              : VIPS_INTERPRETATION_sRGB;
        ASSERT_EQ(vips_xyz(&ramp, width, height, nullptr), 0);
        VipsImage* x = nullptr;
        ASSERT_EQ(vips_extract_band(ramp, &x, 0, nullptr), 0);
        ASSERT_EQ(vips_linear(x, &scaled, gain.data(), offset.data(), bands, nullptr), 0);
        ASSERT_EQ(vips_cast(scaled, &cast, format, nullptr), 0);
        ASSERT_EQ(vips_copy(cast, &copy, "interpretation", interpretation, nullptr), 0);
        ASSERT_EQ(vips_image_write_to_file(copy, path(name).c_str(), nullptr), 0);
        for (VipsImage* image : {ramp, x, scaled, cast, copy})
            g_object_unref(image);
    }

    int leftovers() const {
        int count = 0;
        for (const auto& entry : fs::directory_iterator(folder_)) {
            count += entry.path().filename().string().starts_with(".lumoxa");
        }
        return count;
    }
};

TEST_F(Tool, ValuesLoseNothingFromProfileToItself) {
    EXPECT_EQ(run({"values", "--from", "sRGB", "--to", "sRGB", "255,128,0", "0,0,0"}).out,
              "255,128,0\n0,0,0\n");
    const Result lines = run({"values", "--from", "sRGB", "--to", "sRGB", "-16"},
                             "65535,65535,65535\n\n 0, 0, 0 \r\n");
    EXPECT_EQ(lines.out, "65535,65535,65535\n0,0,0\n") << lines.err;
}

TEST_F(Tool, ValuesSurviveGamutCutsAndParametricCurves) {
    const std::vector<double> srgb = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045, 0, 0};
    save("wide.icc", realProfile("colord/AdobeRGB1998.icc"));
    save("type2.icc", rgbProfile({parametricTag(2, {1, 0.98, 0, 0.02})}, "mntr").image());
    save("type3.icc", realProfile("colord/sRGB.icc"));
    save("type4.icc", rgbProfile({parametricTag(4, srgb)}, "mntr").image());
    const auto values = [&](const char* from, const char* value, const char* depth) {
        return run({"values", "--from", path(from), "--to", "sRGB", depth, value}).out;
    };
    EXPECT_EQ(values("wide.icc", "60,90,140", "--16=false"), "36,90,143\n");
    EXPECT_LT(std::stoi(values("wide.icc", "15420,23130,35980", "-16")), 40 * 257);
    EXPECT_EQ(values("type2.icc", "0,255,255", "--16=false"), "39,255,255\n");
    EXPECT_EQ(values("type3.icc", "5,5,255", "--16=false"), "5,5,255\n");
    EXPECT_EQ(values("type4.icc", "255,5,255", "--16=false"), "255,5,255\n");
}

// No transform of these chains has a grid of its own, and what is between their curves is not
// linear.
TEST_F(Tool, ValuesSurviveLabAndWhitesBetweenCurves) {
    save("wide.icc", realProfile("colord/AdobeRGB1998.icc"));
    save("lab.icc", realProfile("ghostscript/lab.icc"));
    save("gray.icc", realProfile("icc/Gray-CIE_L.icc"));
    const Bytes halfWhite = xyzTag(0.9642 / 2, 0.5, 0.8249 / 2);
    save("dim.icc", rgbProfile({curveTag({563})}, "mntr").addTag("wtpt", halfWhite).image());
    const struct {
        const char *from, *to, *intent, *value, *expected;
    } cases[] = {{"sRGB", "gray.icc", "relative", "128,128,128", "137\n"},
                 {"gray.icc", "sRGB", "relative", "200", "194,194,194\n"},
                 {"gray.icc", "sRGB", "relative", "255", "255,255,255\n"},
                 {"sRGB", "lab.icc", "relative", "128,128,128", "137,128,128\n"},
                 {"wide.icc", "sRGB", "relative", "100,180,90", "0,181,83\n"},
                 {"wide.icc", "sRGB", "absolute", "100,180,90", "0,181,83\n"},
                 {"dim.icc", "sRGB", "absolute", "255,255,255", "188,188,188\n"}};
    for (const auto& c : cases) {
        const auto word = [&](const char* w) { return std::strchr(w, '.') ? path(w) : w; };
        const Result result = run(
            {"values", "--from", word(c.from), "--to", word(c.to), "--intent", c.intent, c.value});
        EXPECT_EQ(result.out, c.expected) << c.from << c.to << result.err;
    }
}

TEST_F(Tool, KeepsLinksAndPermissions) {
    saveImage("in.tif", 3, VIPS_FORMAT_UCHAR);
    save("old", {'o', 'l', 'd'});
    fs::permissions(path("old"), fs::perms(0640));
    for (const char* name : {"old", "new"}) {  // the second link dangles
        const std::string link = path(name) + ".tif";
        fs::create_symlink(name, link);
        EXPECT_EQ(run({"convert", path("in.tif"), link, "--to", "sRGB"}).exitCode, 0);
        EXPECT_TRUE(fs::is_symlink(link));
        EXPECT_GT(fs::file_size(path(name)), 1000u);
    }
    EXPECT_EQ(fs::status(path("old")).permissions(), fs::perms(0640));
}

TEST_F(Tool, FaultsAndNotesGetOneLineAndTheirExitCode) {
    Bytes noGrid = lut16Tag({});
    noGrid[10] = 1;
    save("bad-lut.icc", ProfileBytes("prtr", "RGB ", "Lab ").addTag("B2A0", noGrid).image());
    save("no-tags.icc", ProfileBytes().addTag("cprt", xyzTag(1, 1, 1)).image());
    const Bytes cut = smallRgbProfile();
    save("cut.icc", Bytes(cut.begin(), cut.end() - 10));
    saveImage("half.png", 3, VIPS_FORMAT_UCHAR, 900, 900);
    fs::resize_file(path("half.png"), fs::file_size(path("half.png")) / 2);
    saveImage("rgb.png", 3, VIPS_FORMAT_UCHAR);
    saveImage("gray.png", 1, VIPS_FORMAT_UCHAR);
    saveImage("cut.tif[profile=" + path("cut.icc") + "]", 3, VIPS_FORMAT_UCHAR);
    saveImage("pages.tif[page_height=24]", 3, VIPS_FORMAT_UCHAR);
    save("protected.tif", {});
    fs::permissions(path("protected.tif"), fs::perms::owner_read);
    fs::create_symlink("loop.tif", path("loop.tif"));
    struct Case {
        std::vector<std::string> arguments;
        int exitCode;
        std::string word;
    };
    const std::string srgb = "sRGB", out = path("out.tif"), pages = path("pages.tif");
    const std::vector<Case> cases = {
        {{}, 2, "--help"},
        {{"bogus"}, 2, "'bogus'"},
        {{"convert", "in.tif"}, 2, "OUT"},
        {{"convert", "in.tif", out, "--to", srgb, "--depth", "x"}, 2, "{8,16}"},
        {{"convert", "in.tif", out + "[strip]", "--to", srgb}, 2, "'strip'"},
        {{"convert", "in.tif", out + "[bigtiff,profile=none]", "--to", srgb}, 2, "'profile'"},
        {{"convert", "in.tif", out + "[keep=none]", "--to", srgb}, 2, "'keep'"},
        {{"convert", "in.tif", "out.xyz", "--to", srgb}, 2, "out.xyz"},
        {{"values", "--from", srgb, "--to", srgb, "1,2"}, 2, "'1,2'"},
        {{"values", "--from", srgb, "--to", srgb, "1,2,3,4"}, 2, "'1,2,3,4'"},
        {{"values", "--from", srgb, "--to", srgb, "1,2,256"}, 2, "0..255"},
        {{"values", "--from", srgb, "--to", srgb, "--intent", "best", "1,2,3"}, 2, "intent"},
        {{"values", "--from", srgb, "--to", srgb, "--intent", "9", "1,2,3"}, 2, "relative"},
        {{"values", "--from", srgb, "--to", srgb, "--intent", "", "1,2,3"}, 2, "relative"},
        {{"values", "--from", srgb, "--to", path("nowhere.icc"), "1,2,3"}, 1, "nowhere.icc"},
        {{"values", "--from", srgb, "--to", path("bad-lut.icc"), "1,2,3"}, 1, "'B2A0'"},
        {{"values", "--from", path("no-tags.icc"), "--to", srgb, "1,2,3"}, 1, "'rTRC'"},
        {{"info", path("cut.icc")}, 1, "ends at byte"},
        {{"info", path("rgb.png")}, 1, "acsp"},
        {{"convert", path("none.tif"), out, "--to", srgb}, 1, "none.tif"},
        {{"convert", path("cut.icc"), out, "--to", srgb}, 1, "cut.icc"},
        {{"convert", path("half.png"), path("half.tif"), "--to", srgb}, 1, "half.png"},
        {{"convert", path("gray.png"), out, "--to", srgb}, 1, "--from"},
        {{"convert", path("rgb.png"), out, "--to", srgb, "--from", path("press.icc")}, 1, "4 CMYK"},
        {{"convert", path("rgb.png"), path("o.png"), "--to", path("press.icc")}, 2, ".tif or .jpg"},
        {{"convert", path("rgb.png"), path("o.jpg"), "--to", srgb, "--depth", "16"}, 2, "JPEG"},
        {{"convert", path("rgb.png"), path("no/o.tif"), "--to", srgb}, 1, "folder"},
        {{"convert", path("rgb.png"), "/proc/o.tif", "--to", srgb}, 1, "/proc/o.tif: can't be cr"},
        {{"convert", path("rgb.png"), path("loop.tif"), "--to", srgb}, 1, "link"},
        {{"convert", path("rgb.png"), path("protected.tif"), "--to", srgb}, 1, "write-protected"},
        {{"convert", path("cut.tif"), out, "--to", srgb}, 1, "name the image's profile with"},
        {{"convert", path("cut.tif"), out, "--to", srgb, "--from", srgb},
         0,
         std::to_string(cut.size() - 10) + "; --from is used"},
        {{"convert", path("cut.tif"), out, "--to", srgb, "--from", srgb, "-q"}, 0, ""},
        {{"convert", pages, out, "--to", srgb}, 0, "2 pages"},
        {{"convert", pages + "[n=-1]", out, "--to", srgb}, 0, ""},
    };
    for (const Case& fault : cases) {
        const Result result = run(fault.arguments);
        EXPECT_EQ(result.exitCode, fault.exitCode) << result.err;
        EXPECT_NE(result.err.find(fault.word), std::string::npos) << fault.word << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'),
                  fault.word.empty() ? 0 : 1);
        const bool tells = !fault.arguments.empty() && fault.arguments[0] == "info";
        EXPECT_TRUE(result.out.empty() || result.exitCode == 0 || tells) << result.out;
    }
    EXPECT_EQ(leftovers(), 0);
    EXPECT_FALSE(fs::exists(path("half.tif")));
}

struct Shape {
    const char* suffix;  // none: the output replaces the input
    int bands;
    VipsBandFormat format;
    const char* depth;
    VipsBandFormat expected;
};
void PrintTo(const Shape& shape, std::ostream* out) {
    *out << shape.bands << "_bands_" << (shape.format == VIPS_FORMAT_UCHAR ? 8 : 16) << "_bits_to"
         << shape.suffix;
}
class ToolConversion : public Tool, public testing::WithParamInterface<Shape> {};

TEST_P(ToolConversion, KeepsPixelsAlphaAndProfileOnTheWayToTheSameSpace) {
    const Shape& shape = GetParam();
    saveImage("in.tif", shape.bands, shape.format, 301, 203);
    fs::copy(path("in.tif"), path("before.tif"));
    const std::string out = path(*shape.suffix == 0 ? "in.tif" : std::string("out") + shape.suffix);
    std::vector<std::string> arguments = {"convert", path("in.tif"), out, "--to", "sRGB"};
    if (*shape.depth != 0) arguments.insert(arguments.end(), {"--depth", shape.depth});
    const Result result = run(arguments);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.out.find("megapixels per second"), std::string::npos);
    VipsImage* before = vips_image_new_from_file(path("before.tif").c_str(), nullptr);
    VipsImage* after = vips_image_new_from_file(out.c_str(), nullptr);
    ASSERT_TRUE(before != nullptr && after != nullptr);
    EXPECT_EQ(vips_image_get_format(after), shape.expected);
    EXPECT_EQ(vips_image_get_bands(after), shape.bands);
    EXPECT_NE(vips_image_get_typeof(after, VIPS_META_ICC_NAME), 0u);
    const double beforeTop = shape.format == VIPS_FORMAT_UCHAR ? 255.0 : 65535.0;
    const double afterTop = shape.expected == VIPS_FORMAT_UCHAR ? 255.0 : 65535.0;
    VipsImage *a = nullptr, *b = nullptr, *difference = nullptr, *absolute = nullptr;
    vips_linear1(before, &a, 1 / beforeTop, 0, nullptr);
    vips_linear1(after, &b, 1 / afterTop, 0, nullptr);
    vips_subtract(a, b, &difference, nullptr);
    vips_abs(difference, &absolute, nullptr);
    double largest = 1;
    vips_max(absolute, &largest, nullptr);
    EXPECT_LT(largest, 1.01 / 255);
    for (VipsImage* image : {before, after, a, b, difference, absolute})
        g_object_unref(image);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, ToolConversion,
    testing::Values(Shape{".tif", 3, VIPS_FORMAT_UCHAR, "", VIPS_FORMAT_UCHAR},
                    Shape{"", 4, VIPS_FORMAT_UCHAR, "", VIPS_FORMAT_UCHAR},
                    Shape{".png", 4, VIPS_FORMAT_UCHAR, "16", VIPS_FORMAT_USHORT},
                    Shape{".tif", 4, VIPS_FORMAT_USHORT, "8", VIPS_FORMAT_UCHAR},
                    Shape{".png", 4, VIPS_FORMAT_USHORT, "", VIPS_FORMAT_USHORT}));

TEST_F(Tool, WarnsOfStagesThatAreLeftOut) {
    const std::vector<Bytes> ramps(3, curveTag({})), gammas(3, curveTag({0x200}));
    LutABContent plain, bent;
    plain.grid = bent.grid = {2, 2, 2};
    plain.aCurves = plain.mCurves = plain.bCurves = ramps;
    plain.matrix = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};
    bent = plain;
    bent.mCurves = gammas;
    bent.matrix[1] = 0.5;
    const auto warning = [&](const std::string& tag, const Bytes& data) {
        save("v4.icc", ProfileBytes("mntr", "RGB ", "Lab ").addTag(tag, data).image());
        const bool from = tag == "A2B0";
        return run({"values", "--from", from ? path("v4.icc") : "sRGB", "--to",
                    from ? "sRGB" : path("v4.icc"), "1,2,3"})
            .err;
    };
    EXPECT_EQ(warning("A2B0", lutAToBTag(plain)), "");
    EXPECT_NE(warning("A2B0", lutAToBTag(bent)).find("matrix and M curves"), std::string::npos);
    EXPECT_EQ(warning("B2A0", lutBToATag(bent)), "");
    bent.aCurves.clear();
    bent.grid.clear();
    EXPECT_NE(warning("B2A0", lutBToATag(bent)).find("the M curves of"), std::string::npos);
}

TEST_F(Tool, CmykJpegIsNotInverted) {
    saveImage("in.png", 3, VIPS_FORMAT_UCHAR);
    const std::string press = path("press.icc");
    ASSERT_EQ(run({"convert", path("in.png"), path("a.tif"), "--to", press}).exitCode, 0);
    ASSERT_EQ(run({"convert", path("in.png"), path("b.jpg"), "--to", press}).exitCode, 0);
    double means[2] = {};
    for (int i = 0; i < 2; ++i) {
        VipsImage* image =
            vips_image_new_from_file(path(i == 0 ? "a.tif" : "b.jpg").c_str(), nullptr);
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(vips_image_get_interpretation(image), VIPS_INTERPRETATION_CMYK);
        vips_avg(image, &means[i], nullptr);
        g_object_unref(image);
    }
    EXPECT_NEAR(means[0], means[1], 3);
    const Result back = run({"convert", path("b.jpg"), path("c.png"), "--to", "sRGB"});
    EXPECT_EQ(back.exitCode, 0) << "embedded profile not used: " << back.err;
}

TEST_F(Tool, LargeImagesDoNotFillTheMemory) {
    saveImage("large.tif", 3, VIPS_FORMAT_UCHAR, 2000, 40000);  // 240 MB of pixels
    const Result result =
        run({"convert", path("large.tif"), path("out.tif"), "--to", "sRGB", "-q"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_LT(result.peakKilobytes, 150 * 1024);
}

TEST_F(Tool, InterruptLeavesTheTargetAsItWas) {
    saveImage("large.tif", 3, VIPS_FORMAT_UCHAR, 4000, 10000);
    save("target.tif", {'o', 'l', 'd'});
    for (const int number : kSignals) {
        const pid_t child =
            start({"convert", path("large.tif"), path("target.tif"), "--to", "sRGB"});
        for (int i = 0; i < 1000 && leftovers() == 0; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        EXPECT_EQ(leftovers(), 1);
        kill(child, number);
        EXPECT_EQ(finish(child).signal, number);
        EXPECT_EQ(leftovers(), 0);
        EXPECT_EQ(text("target.tif"), "old");
    }
}

}  // namespace
