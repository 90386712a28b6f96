// SPDX-License-Identifier: Apache-2.0
#include <lumoxa/lmx.h>
#include <stdio.h>
#include <stdlib.h>

// The transform of a profile file for relative colorimetry, or null. It outlives the profile.
static lmx_transform* transform_of(const char* path, uint32_t direction) {
    const size_t most = 16u << 20;
    FILE* file = fopen(path, "rb");
    void* bytes = malloc(most);
    lmx_profile* profile = NULL;
    lmx_transform* transform = NULL;
    if (file != NULL && bytes != NULL) {
        const size_t length = fread(bytes, 1, most, file);
        if (lmx_profile_load(bytes, length, &profile) == LMX_SUCCESS) {
            lmx_transform_get(profile, LMX_RELATIVE_COLORIMETRIC, direction, &transform);
            lmx_profile_free(profile);
        }
    }
    if (file != NULL) fclose(file);
    free(bytes);
    return transform;
}

// example RGB-PROFILE CMYK-PROFILE: prints the inks, 0..255, of a full red pixel.
int main(int argc, char** argv) {
    if (argc != 3 || lmx_abi_version() != LMX_ABI_VERSION) return 2;
    lmx_transform* chain[2];
    chain[0] = transform_of(argv[1], LMX_DEVICE_TO_PCS);
    chain[1] = transform_of(argv[2], LMX_PCS_TO_DEVICE);
    lmx_transform* to_press = NULL;
    int32_t code = lmx_combine(2, chain, LMX_COMBINE_COLORIMETRIC, &to_press, NULL, NULL, NULL);
    lmx_transform_free(chain[0]);
    lmx_transform_free(chain[1]);

    unsigned char rgb[3] = {255, 0, 0};
    unsigned char cmyk[4] = {0};
    lmx_pixel_layout source = {LMX_SAMPLES_8, 1, 1, 1, 3, 3, 3, {NULL}};
    lmx_pixel_layout destination = {LMX_SAMPLES_8, 1, 1, 1, 4, 4, 4, {NULL}};
    source.channel_data[0] = rgb;
    destination.channel_data[0] = cmyk;
    if (code == LMX_SUCCESS) code = lmx_evaluate(to_press, &source, &destination, NULL, NULL);
    lmx_transform_free(to_press);
    if (code != LMX_SUCCESS) {
        char text[100];
        lmx_error_text(code, text, sizeof text);
        fprintf(stderr, "%s\n", text);
        return 1;
    }
    printf("%d %d %d %d\n", cmyk[0], cmyk[1], cmyk[2], cmyk[3]);
    return 0;
}
