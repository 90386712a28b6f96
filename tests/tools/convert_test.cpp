// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa convert`: what becomes of pictures, by profiles, by links and for gray devices.
#include <cmath>
#include <csignal>
#include <numeric>
#include <string_view>

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "tests/support/gray_profiles.h"
#include "tests/support/pictures.h"

namespace {

namespace fs = std::filesystem;
using namespace lumoxa_test;

/// The first file of that tool that appears in a folder unfinished, from the construction on.
class CreatedFile {
  public:
    explicit CreatedFile(const fs::path& folder) : events_(inotify_init1(IN_CLOEXEC)) {
        EXPECT_GE(inotify_add_watch(events_, folder.c_str(), IN_CREATE), 0);
    }
    ~CreatedFile() { close(events_); }
    CreatedFile(const CreatedFile&) = delete;
    CreatedFile& operator=(const CreatedFile&) = delete;

    /// Waits for it; false where none comes.
    bool awaited() const {
        constexpr int kLongestWait = 60000;  // ms
        pollfd waiting = {events_, POLLIN, 0};
        alignas(inotify_event) char events[4096];
        while (poll(&waiting, 1, kLongestWait) == 1) {
            const ssize_t size = read(events_, events, sizeof events);
            if (size <= 0) return false;
            const std::string_view names(events, static_cast<size_t>(size));
            if (names.find(".lumoxa") != std::string_view::npos) return true;
        }
        return false;
    }

  private:
    int events_;
};

class Convert : public PictureRun {
  protected:
    void SetUp() override {
        PictureRun::SetUp();
        // Every ink but black is the complement of a Lab channel: not a press, but exact and tiny.
        LutContent fromPress, toPress;
        fromPress.inputs = toPress.outputs = 4;
        ProfileBytes press("prtr", "CMYK", "Lab ");
        press.addTag("A2B0", lut16Tag(fromPress)).addTag("B2A0", lut16Tag(toPress));
        save("press.icc", press.image());
    }
};

TEST_F(Convert, KeepsLinksAndPermissions) {
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

TEST_F(Convert, FaultsAndNotesGetOneLineAndTheirExitCode) {
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
    expectComplaints({{"convert rgb.png o.tif --to sRGB --depth x", 2, "{8,16}"},
                      {"convert rgb.png o.tif[strip] --to sRGB", 2, "'strip'"},
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

TEST_F(Convert, KeepsPixelsAlphaAndProfileOnTheWayToTheSameSpace) {
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
TEST_F(Convert, ConvertAndValuesAgree) {
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

TEST_F(Convert, ExtraChannelsAreKeptOrDroppedWhole) {
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

TEST_F(Convert, CmykJpegIsNotInverted) {
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

TEST_F(Convert, PrintFileHoldsThreeChannelsAndLeadsBack) {
    save("gray.icc", grayProfile().image());
    saveImage("in.png", 3, false, 256, 1, 0);
    for (const std::string depth : {"16", "8"}) {
        done("convert in.png print.tif --to gray.icc --depth " + depth);
        const Picture print = picture("print.tif");
        EXPECT_FALSE(print.hasProfile);
        const std::vector<double> black(print.samples.begin(), print.samples.begin() + 3);
        EXPECT_EQ(black, (std::vector<double>{depth == "8" ? 255.0 : 65535.0, 0, 0}));
        done("convert print.tif back.png --from gray.icc --to sRGB --depth 8");
        const Picture back = picture("back.png");
        EXPECT_TRUE(back.hasProfile);
        for (size_t value = 80; value < 256; value += 25)
            EXPECT_NEAR(back.samples.at(3 * value + 1), double(value), 1.5) << depth;
    }
    save("cmyk.icc", realProfile("ghostscript/default_cmyk.icc"));
    done("convert in.png cmyk.tif --to cmyk.icc");
    done("convert cmyk.tif out.tif --to gray.icc");
}

TEST_F(Convert, LinkConvertsPixelsAsTheChainDoes) {
    save("wide.icc", realProfile("colord/AdobeRGB1998.icc"));
    save("cmyk.icc", realProfile("ghostscript/default_cmyk.icc"));
    saveImage("rgb.tif[profile=" + path("wide.icc") + "]", 3, false, 256, 40, 70);
    done("convert rgb.tif cmyk.tif --to cmyk.icc");
    const struct {
        std::string image, from, options;
    } routes[] = {{"rgb.tif", "wide.icc", ""},
                  {"rgb.tif", "wide.icc", " --intent absolute"},
                  {"rgb.tif", "wide.icc", " --no-bpc"},
                  {"cmyk.tif", "cmyk.icc", " --intent perceptual"}};
    for (const auto& r : routes) {
        done("link " + r.from + " cmyk.icc -o link.icc" + r.options);
        for (const std::string depth : {" --depth 8", " --depth 16"}) {
            done("convert " + r.image + " linked.tif --to cmyk.icc -q --link link.icc" + depth);
            done("convert " + r.image + " chain.tif --to cmyk.icc -q" + r.options + depth);
            EXPECT_TRUE(bytes("linked.tif") == bytes("chain.tif")) << r.from << r.options << depth;
        }
    }
}

TEST_F(Convert, ImageHasTheProfileThatIsNamedOrNone) {
    save("wide.icc", realProfile("colord/AdobeRGB1998.icc"));
    save("cmyk.icc", realProfile("ghostscript/default_cmyk.icc"));
    done("link wide.icc cmyk.icc -o link.icc");
    saveImage("in.tif[profile=" + path("wide.icc") + "]", 3);
    const std::string notes = done("convert in.tif plain.tif --link link.icc").err;
    EXPECT_NE(notes.find("own profile"), std::string::npos) << notes;
    EXPECT_FALSE(picture("plain.tif").hasProfile);
    EXPECT_EQ(done("convert in.tif named.tif --link link.icc --to cmyk.icc -q").err, "");
    done("convert in.tif chain.tif --to cmyk.icc -q");
    EXPECT_TRUE(picture("named.tif").hasProfile);
    EXPECT_TRUE(bytes("named.tif") == bytes("chain.tif"));
}

TEST_F(Convert, WhatGrayDevicesAndLinksCannotDoIsRefused) {
    save("gray.icc", grayProfile().image());
    done("link sRGB press.icc -o link.icc");
    saveImage("in.png", 3);
    saveImage("gray.tif", 1);
    done("convert in.png rgb.tif --to sRGB");
    expectComplaints({{"convert in.png o.png --to gray.icc", 2, "write .tif"},
                      {"convert in.png o.tif[compression=jpeg] --to gray.icc", 2, "device values"},
                      {"convert in.png o.tif --to sRGB --tone 1,2", 2, "is for none"},
                      {"convert rgb.tif o.tif --from gray.icc --to sRGB", 1, "leave out --from"},
                      {"convert gray.tif o.tif", 2, "--to or --link"},
                      {"convert gray.tif o.tif --link link.icc", 1, "has 1"},
                      {"convert gray.tif o.tif --link link.icc --to sRGB", 1, "gives CMYK"}});
    EXPECT_FALSE(exists("o.tif") || exists("o.png"));
}

TEST_F(Convert, LargeImagesDoNotFillTheMemory) {
    saveImage("large.tif", 3, false, 2000, 40000);  // 240 MB of pixels
    EXPECT_LT(done("convert large.tif out.tif --to sRGB -q").peakKilobytes, 150 * 1024);
}

TEST_F(Convert, InterruptLeavesTheTargetAsItWas) {
    saveImage("large.tif", 3, false, 4000, 10000);
    save("target.tif", "old");
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const CreatedFile written(folder_);
        const Process child = start("convert large.tif target.tif --to sRGB");
        EXPECT_TRUE(written.awaited()) << "a file that isn't finished";
        kill(static_cast<pid_t>(child), number);
        EXPECT_EQ(finish(child).signal, number);
        EXPECT_EQ(leftovers(), 0);
        EXPECT_EQ(text("target.tif"), "old");
    }
}

}  // namespace
