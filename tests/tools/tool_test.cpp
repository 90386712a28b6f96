// SPDX-License-Identifier: Apache-2.0
//
// The tool as a user or a script meets it: a program with arguments, streams and an exit code.
#include <chrono>
#include <cmath>
#include <numeric>
#include <thread>

#include "tests/support/run_tool.h"

namespace {

namespace fs = std::filesystem;
using namespace lumoxa_test;

class Tool : public ToolRun {
  protected:
    void SetUp() override {
        ToolRun::SetUp();
        // Every ink but black is the complement of a Lab channel: not a press, but exact and tiny.
        LutContent fromPress, toPress;
        fromPress.inputs = toPress.outputs = 4;
        ProfileBytes press("prtr", "CMYK", "Lab ");
        press.addTag("A2B0", lut16Tag(fromPress)).addTag("B2A0", lut16Tag(toPress));
        save("press.icc", press.image());
    }
};

TEST_F(Tool, ValuesLoseNothingFromProfileToItself) {
    EXPECT_EQ(run("values --from sRGB --to sRGB 255,128,0 0,0,0").out, "255,128,0\n0,0,0\n");
    EXPECT_EQ(run("values --from sRGB --to sRGB -16", "65535,65535,65535\n\n 0, 0, 0 \r\n").out,
              "65535,65535,65535\n0,0,0\n");
}

// What is between the curves of these profiles is not linear; some colours lie outside the gamut.
TEST_F(Tool, ValuesSurviveGamutCutsLabAndWhitesBetweenCurves) {
    save("wide.icc", realProfile("colord/AdobeRGB1998.icc"));
    save("lab.icc", realProfile("ghostscript/lab.icc"));
    save("gray.icc", realProfile("icc/Gray-CIE_L.icc"));
    save("bent.icc", rgbProfile({parametricTag(2, {1, 0.98, 0, 0.02})}, "mntr").image());
    const Bytes halfWhite = xyzTag(0.9642 / 2, 0.5, 0.8249 / 2);
    for (const std::string deviceClass : {"scnr", "mntr"}) {
        const ProfileBytes dim = rgbProfile({curveTag({563})}, deviceClass.c_str());
        save(deviceClass + ".icc", ProfileBytes(dim).addTag("wtpt", halfWhite).image());
    }
    const std::pair<const char*, const char*> cases[] = {
        {"--from sRGB --to gray.icc --intent relative 128,128,128", "137\n"},
        {"--from gray.icc --to sRGB --intent relative 200 255", "194,194,194\n255,255,255\n"},
        {"--from sRGB --to lab.icc --intent relative 128,128,128", "137,128,128\n"},
        {"--from wide.icc --to sRGB 60,90,140", "36,90,143\n"},
        {"--from wide.icc --to sRGB --intent absolute 100,180,90", "0,181,83\n"},
        {"--from scnr.icc --to sRGB --intent absolute 255,255,255", "188,188,188\n"},
        // Version 2 displays have D50 for their white, whatever their tag says.
        {"--from mntr.icc --to sRGB --intent absolute 255,255,255", "255,255,255\n"},
        // Its black is 2 % of its white, and becomes that of sRGB where it is compensated.
        {"--from bent.icc --to sRGB --no-bpc 0,255,255", "39,255,255\n"},
        {"--from bent.icc --to sRGB 0,255,255", "0,255,255\n"},
        {"--from sRGB --to Lab 255,255,255 0,0,0", "255,128,128\n0,128,128\n"}};
    for (const auto& [options, expected] : cases)
        EXPECT_EQ(run(std::string("values ") + options).out, expected) << options;
}

TEST_F(Tool, KeepsLinksAndPermissions) {
    saveImage("in.tif", 3);
    save("old", "old");
    fs::permissions(path("old"), fs::perms(0640));
    for (const std::string name : {"old", "new"}) {  // the second link dangles
        fs::create_symlink(name, path(name + ".tif"));
        done("convert in.tif " + name + ".tif --to sRGB");
        EXPECT_TRUE(fs::is_symlink(path(name + ".tif")));
        EXPECT_GT(fs::file_size(path(name)), 1000u);
    }
    EXPECT_EQ(fs::status(path("old")).permissions(), fs::perms(0640));
}

TEST_F(Tool, FaultsAndNotesGetOneLineAndTheirExitCode) {
    Bytes noGrid = lut16Tag({});
    noGrid[10] = 1;
    save("bad-lut.icc", ProfileBytes("prtr", "RGB ", "Lab ").addTag("B2A0", noGrid).image());
    save("no-tags.icc", ProfileBytes().addTag("cprt", xyzTag(1, 1, 1)).image());
    const Bytes whole = smallRgbProfile();
    save("cut.icc", Bytes(whole.begin(), whole.end() - 10));
    saveImage("half.png", 3, false, 900, 900);
    fs::resize_file(path("half.png"), fs::file_size(path("half.png")) / 2);
    saveImage("rgb.png", 3);
    saveImage("gray.png", 1);
    saveImage("cut.tif[profile=" + path("cut.icc") + "]", 3);
    saveImage("pages.tif[page_height=24]", 3, false, 64, 48);
    save("protected.tif", "");
    fs::permissions(path("protected.tif"), fs::perms::owner_read);
    fs::create_symlink("loop.tif", path("loop.tif"));
    expectComplaints({{"bogus", 2, "'bogus'"},
                      {"convert rgb.png", 2, "OUT"},
                      {"convert rgb.png o.tif --to sRGB --depth x", 2, "{8,16}"},
                      {"convert rgb.png o.tif[strip] --to sRGB", 2, "'strip'"},
                      {"values --from sRGB --to sRGB 1,2,256", 2, "0..255"},
                      {"values --from sRGB --to sRGB --intent best 1,2,3", 2, "relative"},
                      {"values --from sRGB --to nowhere.icc 1,2,3", 1, "nowhere.icc"},
                      {"values --from sRGB --to bad-lut.icc 1,2,3", 1, "'B2A0'"},
                      {"values --from no-tags.icc --to sRGB 1,2,3", 1, "nor colorants"},
                      {"info cut.icc", 1, "ends at byte"},
                      {"convert half.png o.tif --to sRGB", 1, "half.png"},
                      {"convert gray.png o.tif --to sRGB", 1, "--from"},
                      {"convert rgb.png o.tif --to sRGB --from press.icc", 1, "4 CMYK"},
                      {"convert rgb.png o.png --to press.icc", 2, ".tif or .jpg"},
                      {"convert rgb.png o.jpg --to sRGB --depth 16", 2, "JPEG"},
                      {"convert rgb.png no/o.tif --to sRGB", 1, "folder"},
                      {"convert rgb.png /proc/o.tif --to sRGB", 1, "can't be cr"},
                      {"convert rgb.png loop.tif --to sRGB", 1, "link"},
                      {"convert rgb.png protected.tif --to sRGB", 1, "write-protected"},
                      {"convert cut.tif o.tif --to sRGB", 1, "name the image's profile with"}});
    EXPECT_FALSE(exists("o.tif"));
    expectComplaints({{"convert cut.tif o.tif --to sRGB --from sRGB", 0, "--from is used"},
                      {"convert cut.tif o.tif --to sRGB --from sRGB -q", 0, ""},
                      {"convert pages.tif o.tif --to sRGB", 0, "2 pages"},
                      {"convert pages.tif[n=-1] o.tif --to sRGB", 0, ""}});
}

TEST_F(Tool, KeepsPixelsAlphaAndProfileOnTheWayToTheSameSpace) {
    const struct {
        const char* out;  // the input's name: it is replaced
        int bands, bits;
        const char* options;
        int expectedBits;
    } cases[] = {{"out.tif", 3, 8, "", 8},
                 {"in.tif", 4, 8, "", 8},
                 {"out.png", 4, 8, " --depth 16", 16},
                 {"out.tif", 4, 16, " --depth 8", 8}};
    for (const auto& c : cases) {
        saveImage("in.tif", c.bands, c.bits == 16, 301, 203);
        const Picture before = picture("in.tif");
        done("convert in.tif " + std::string(c.out) + " --to sRGB" + c.options);
        const Picture after = picture(c.out);
        EXPECT_EQ(after.format, c.expectedBits == 8 ? VIPS_FORMAT_UCHAR : VIPS_FORMAT_USHORT);
        EXPECT_EQ(after.bands, c.bands);
        EXPECT_TRUE(after.hasProfile);
        ASSERT_EQ(after.samples.size(), before.samples.size());
        const double step = c.bits == 8 ? 1 : 257, scale = (c.expectedBits == 8 ? 1 : 257) / step;
        for (size_t i = 0; i < before.samples.size(); ++i)
            ASSERT_NEAR(after.samples[i] / scale, before.samples[i], 1.01 * step) << c.out << i;
    }
}

// Tables stand between the pixels of an image and their answers, and none between single values:
// two steps of an ink are within what the report of this conversion calls its largest error.
TEST_F(Tool, ConvertAndValuesAgree) {
    save("cmyk.icc", realProfile("ghostscript/default_cmyk.icc"));
    saveImage("in.tif", 3);
    const Picture source = picture("in.tif");
    std::string colours;
    for (size_t i = 0; i < source.samples.size(); ++i)
        colours += std::to_string(int(source.samples[i])) + (i % 3 == 2 ? "\n" : ",");
    for (const std::string to : {"AdobeRGB", "cmyk.icc"}) {
        const Result report = done("convert in.tif out.tif --to " + to);
        EXPECT_NE(report.out.find(to == "AdobeRGB" ? "plan      curves" : "plan      table "),
                  std::string::npos)
            << report.out;
        const std::vector<double> pixels = picture("out.tif").samples;
        const Samples converted(pixels.begin(), pixels.end());
        const Samples exact = values("--from sRGB --to " + to, colours);
        EXPECT_LE(largestDifference(converted, exact), to == "AdobeRGB" ? 1 : 2) << to;
    }
}

TEST_F(Tool, ExtraChannelsAreKeptOrDroppedWhole) {
    saveImage("two.tif", 5);  // RGB and two more
    done("convert two.tif two-more.tif --to press.icc -q");
    done("convert two.tif none.png --to sRGB -q");
    const Picture source = picture("two.tif"), kept = picture("two-more.tif");
    ASSERT_EQ(kept.bands, 6);
    EXPECT_EQ(picture("none.png").bands, 3);
    for (size_t x = 0; x < 256; ++x) {
        EXPECT_EQ(kept.samples.at(6 * x + 4), source.samples.at(5 * x + 3));
        EXPECT_EQ(kept.samples.at(6 * x + 5), source.samples.at(5 * x + 4));
    }
}

TEST_F(Tool, CmykJpegIsNotInverted) {
    saveImage("in.png", 3, false, 256, 48);
    double means[2] = {};
    for (const std::string name : {"a.tif", "b.jpg"}) {
        done("convert in.png " + name + " --to press.icc");
        const Picture made = picture(name);
        EXPECT_EQ(made.meaning, VIPS_INTERPRETATION_CMYK);
        means[name == "b.jpg"] = std::accumulate(made.samples.begin(), made.samples.end(), 0.0) /
                                 static_cast<double>(made.samples.size());
    }
    EXPECT_NEAR(means[0], means[1], 3);
    done("convert b.jpg c.png --to sRGB");  // by the profile embedded
}

TEST_F(Tool, LargeImagesDoNotFillTheMemory) {
    saveImage("large.tif", 3, false, 2000, 40000);  // 240 MB of pixels
    EXPECT_LT(done("convert large.tif out.tif --to sRGB -q").peakKilobytes, 150 * 1024);
}

TEST_F(Tool, InterruptLeavesTheTargetAsItWas) {
    saveImage("large.tif", 3, false, 4000, 10000);
    save("target.tif", "old");
    for (const int number : kSignals) {
        const pid_t child = start("convert large.tif target.tif --to sRGB");
        for (int i = 0; i < 1000 && leftovers() == 0; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        EXPECT_EQ(leftovers(), 1);
        kill(child, number);
        EXPECT_EQ(finish(child).signal, number);
        EXPECT_EQ(leftovers(), 0);
        EXPECT_EQ(text("target.tif"), "old");
    }
}

}  // namespace
