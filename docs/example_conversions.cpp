// SPDX-License-Identifier: Apache-2.0
//
// The programs that docs/conversions.md quotes, one function each.
#include <cstdint>
#include <cstdio>
#include <vector>

#include <lumoxa/lumoxa.hpp>

static std::vector<float> inksOfLab(const lumoxa::Profile& press) {
    const lumoxa::Conversion fromLab(lumoxa::Profile::named("Lab"), press);
    return fromLab({60.0f, 20.0f, -30.0f});  // L*, a*, b*
}

// What a picture in sRGB will look like on the press, on a display, paper and all.
static lumoxa::Conversion proofOf(const lumoxa::Profile& press) {
    const lumoxa::Profile rgb = lumoxa::Profile::named("sRGB");
    lumoxa::Options options;
    options.intents = {lumoxa::Intent::Perceptual, lumoxa::Intent::Absolute};
    return lumoxa::Conversion({rgb, press, rgb}, options);
}

// RGB with premultiplied alpha, rows from the bottom up, into planes of 16 bits with alpha.
static void convertBitmap(const lumoxa::Conversion& toPress, uint8_t* bitmap, uint16_t* planes,
                          int64_t width, int64_t height) {
    lumoxa::ImageView from = lumoxa::ImageView::packed(bitmap, width, height, 4);
    from.rowStride = -4 * width;
    from.data = bitmap + 4 * width * (height - 1);  // the top row is the last one in memory
    lumoxa::ImageView to = lumoxa::ImageView::packed(planes, width, height, 5);
    to.pixelStride = 2;
    to.rowStride = 2 * width;
    to.channelStride = 2 * width * height;
    lumoxa::Conversion::Run run;
    run.premultiplied = true;
    toPress.run(from, to, run);
}

static bool convertUpTo(const lumoxa::Conversion& conversion, const lumoxa::ImageView& from,
                        const lumoxa::ImageView& to, double most) {
    lumoxa::Conversion::Run run;
    run.threads = 2;
    run.progress = [most](double done) { return done < most; };  // false stops the run
    return conversion.run(from, to, run);                        // false: it was stopped
}

// The bytes of a device link, as a file holds them.
static std::vector<uint8_t> linkOf(const lumoxa::Profile& press) {
    const lumoxa::Profile link = lumoxa::makeLink({lumoxa::Profile::named("sRGB"), press});
    const lumoxa::Conversion toPress({link});  // a link is a chain by itself
    return link.bytes();
}

static void printFault() {
    try {
        const char junk[] = "no profile";
        lumoxa::Profile::fromBytes(junk, sizeof junk);
    } catch (const lumoxa::Error& error) {
        std::printf("%s (code %d, byte %d)\n", error.what(), error.code(),
                    static_cast<int>(error.offset()));
    }
}

// example_conversions CMYK-PROFILE
int main(int argc, char** argv) {
    if (argc != 2) return 2;
    try {
        const lumoxa::Profile press = lumoxa::Profile::fromFile(argv[1]);
        const std::vector<float> inks = inksOfLab(press);
        std::printf("%.2f %.2f %.2f %.2f\n", inks[0], inks[1], inks[2], inks[3]);

        const std::vector<float> white = proofOf(press)({1.0f, 1.0f, 1.0f});
        std::printf("paper is darker than white: %s\n", white[1] < 1 ? "yes" : "no");

        const lumoxa::Conversion toPress(lumoxa::Profile::named("sRGB"), press);
        std::vector<uint8_t> bitmap = {0, 0, 0, 0, 255, 255, 255, 255};  // white above nothing
        std::vector<uint16_t> planes(5 * 2);
        convertBitmap(toPress, bitmap.data(), planes.data(), 1, 2);
        std::printf("alpha of both rows: %d %d\n", planes[8], planes[9]);

        std::vector<uint8_t> rgb(3 * 64 * 64), cmyk(4 * 64 * 64);
        const bool whole = convertUpTo(toPress, lumoxa::ImageView::packed(rgb.data(), 64, 64, 3),
                                       lumoxa::ImageView::packed(cmyk.data(), 64, 64, 4), 0);
        std::printf("stopped: %s\n", whole ? "no" : "yes");
        std::printf("a link: %s\n", linkOf(press).size() > 128 ? "yes" : "no");
        printFault();
        std::printf("%s\n", toPress.explain().c_str());
    } catch (const lumoxa::Error& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
