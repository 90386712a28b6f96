// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

#include <lumoxa/lumoxa.h>

// The transform of a profile file for relative colorimetry, or null. It outlives the profile.
static icXform_t transformOf(const char* path, icTransType direction) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    icProfile_t profile = nullptr;
    icXform_t xform = nullptr;
    if (icProfileLoadFromBuffer(nullptr, bytes.data(), bytes.size(), &profile) == icSuccess) {
        icXformGet(profile, icRelativeColorimetric, direction, &xform);
        icProfileFree(profile);
    }
    return xform;
}

// example_ic RGB-PROFILE CMYK-PROFILE: prints the inks, 0..255, of a full red pixel.
int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const icXform_t chain[] = {transformOf(argv[1], icDeviceToPcs),
                               transformOf(argv[2], icPcsToDevice)};
    icXform_t toPress = nullptr;
    int failingLink = 0;
    int code = icCombineXforms(2, chain, &toPress, icCombineColorimetric, &failingLink, nullptr,
                               nullptr, 0);
    icXformFree(chain[0]);
    icXformFree(chain[1]);

    unsigned char rgb[] = {255, 0, 0};
    unsigned char cmyk[4] = {};
    icPixelLayout_t source = {icSamples8, 1, 1, 1, 3, 3, 3, {rgb}};
    icPixelLayout_t destination = {icSamples8, 1, 1, 1, 4, 4, 4, {cmyk}};
    if (code == icSuccess) code = icEvaluate(toPress, &source, &destination, nullptr, nullptr);
    icXformFree(toPress);
    if (code != icSuccess) {
        char text[100];
        icGetErrorText(code, sizeof text, text);
        std::fprintf(stderr, "%s\n", text);
        return 1;
    }
    std::printf("%d %d %d %d\n", cmyk[0], cmyk[1], cmyk[2], cmyk[3]);
    return 0;
}
