// SPDX-License-Identifier: Apache-2.0
#include <cstdint>
#include <cstdio>
#include <vector>

#include <lumoxa/lumoxa.hpp>

// example CMYK-PROFILE: prints the inks of four sRGB pixels, 0..255, and of one colour, 0..1.
int main(int argc, char** argv) {
    if (argc != 2) return 2;
    try {
        lumoxa::Options options;
        options.intent = lumoxa::Intent::Perceptual;
        const lumoxa::Conversion toPress(lumoxa::Profile::named("sRGB"),
                                         lumoxa::Profile::fromFile(argv[1]), options);

        // A picture of two rows: red and white, then gray and black.
        const std::vector<uint8_t> picture = {255, 0,   0,   255, 255, 255,  //
                                              128, 128, 128, 0,   0,   0};
        std::vector<uint8_t> inks(4 * 4);
        toPress.run(lumoxa::ImageView::packed(picture.data(), 2, 2, 3),
                    lumoxa::ImageView::packed(inks.data(), 2, 2, 4));
        for (int i = 0; i < 16; i += 4)
            std::printf("%d %d %d %d\n", inks[i], inks[i + 1], inks[i + 2], inks[i + 3]);

        // One colour, exactly.
        const std::vector<float> orange = toPress({1.0f, 0.5f, 0.0f});
        std::printf("%.3f %.3f %.3f %.3f\n", orange[0], orange[1], orange[2], orange[3]);
    } catch (const lumoxa::Error& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
