// SPDX-License-Identifier: Apache-2.0
//
// The tool as a user or a script meets it: a program with arguments, streams and an exit code; and
// `lumoxa values`.
#include "tests/support/run_tool.h"

namespace {

using namespace lumoxa_test;

using Tool = ToolRun;

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

TEST_F(Tool, FaultsGetOneLineAndTheirExitCode) {
    Bytes noGrid = lut16Tag({});
    noGrid[10] = 1;
    save("bad-lut.icc", ProfileBytes("prtr", "RGB ", "Lab ").addTag("B2A0", noGrid).image());
    save("no-tags.icc", ProfileBytes().addTag("cprt", xyzTag(1, 1, 1)).image());
    const Bytes whole = smallRgbProfile();
    save("cut.icc", Bytes(whole.begin(), whole.end() - 10));
    expectComplaints({{"bogus", 2, "'bogus'"},
                      {"convert rgb.png", 2, "OUT"},
                      {"values --from sRGB --to sRGB 1,2,256", 2, "0..255"},
                      {"values --from sRGB --to sRGB --intent best 1,2,3", 2, "relative"},
                      {"values --from sRGB --to nowhere.icc 1,2,3", 1, "nowhere.icc"},
                      {"values --from sRGB --to bad-lut.icc 1,2,3", 1, "'B2A0'"},
                      {"values --from no-tags.icc --to sRGB 1,2,3", 1, "nor colorants"},
                      {"info cut.icc", 1, "ends at byte"}});
}

TEST_F(Tool, FileNamesAreUnicode) {
    const std::string name = "Gr\u00FC\u00DFe-\u65E5\u672C-\U0001F3A8.icc";
    done("edit sRGB -o " + name + " --copyright x");
    EXPECT_EQ(done("values --from " + name + " --to sRGB 1,2,3").out, "1,2,3\n");
    expectComplaints({{"edit sRGB -o " + name + "/x --copyright x", 1, name + "/x: its folder"}});
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder_))
        files += entry.path().filename().u8string() == std::u8string(name.begin(), name.end());
    EXPECT_EQ(files, 1);
}

#if !defined(LUMOXA_TOOL_PICTURES)
TEST_F(Tool, WithoutPicturesConvertSaysSo) {
    expectComplaints({{"convert in.tif out.tif --to sRGB", 2, "built without pictures"}});
}
#endif

}  // namespace
