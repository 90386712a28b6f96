// SPDX-License-Identifier: Apache-2.0
#include <lumoxa/lmx.h>
#include <stdio.h>
#include <stdlib.h>

// The profile in a file; prints what is wrong with it and answers null where it can't be had.
static lmx_profile* profile_from_file(const char* path) {
    const size_t most = 16u << 20;
    lmx_fault fault = {sizeof fault, 0, 0, 0, 0, "can't be opened for reading"};
    lmx_profile* profile = NULL;
    FILE* file = fopen(path, "rb");
    void* bytes = malloc(most);
    if (file != NULL && bytes != NULL)
        lmx_profile_from_bytes(bytes, fread(bytes, 1, most, file), &profile, &fault);
    if (profile == NULL) fprintf(stderr, "%s: %s\n", path, fault.sentence);
    if (file != NULL) fclose(file);
    free(bytes);
    return profile;
}

// Rows without gaps of 8-bit pixels.
static lmx_image packed_image(unsigned char* data, int width, int height, int channels) {
    lmx_image image = {sizeof image, LMX_SAMPLES_8, NULL, 0, 0, 0, 0, 1, 0, 0};
    image.data = data;
    image.width = width;
    image.height = height;
    image.channels = channels;
    image.pixel_stride = channels;
    image.row_stride = image.pixel_stride * width;
    return image;
}

// Prints the inks of four sRGB pixels, 0..255, and of one colour, 0..1. Answers a result code.
static int32_t print_inks(lmx_conversion* to_press, lmx_fault* fault) {
    // A picture of two rows: red and white, then gray and black.
    unsigned char picture[12] = {255, 0, 0, 255, 255, 255, 128, 128, 128, 0, 0, 0};
    unsigned char inks[16] = {0};
    const lmx_image source = packed_image(picture, 2, 2, 3);
    const lmx_image destination = packed_image(inks, 2, 2, 4);
    int32_t code = lmx_conversion_run(to_press, &source, &destination, NULL, fault);
    if (code != LMX_SUCCESS) return code;
    for (int i = 0; i < 16; i += 4)
        printf("%d %d %d %d\n", inks[i], inks[i + 1], inks[i + 2], inks[i + 3]);

    // One colour, exactly.
    const float orange[3] = {1.0f, 0.5f, 0.0f};
    float ink[4] = {0};
    code = lmx_conversion_pixel(to_press, orange, ink, fault);
    if (code == LMX_SUCCESS) printf("%.3f %.3f %.3f %.3f\n", ink[0], ink[1], ink[2], ink[3]);
    return code;
}

// example CMYK-PROFILE
int main(int argc, char** argv) {
    if (argc != 2 || lmx_abi_version() != LMX_ABI_VERSION) return 2;
    lmx_profile* chain[2] = {NULL, profile_from_file(argv[1])};
    if (chain[1] == NULL) return 1;

    lmx_fault fault = {sizeof fault, 0, 0, 0, 0, ""};
    lmx_options options;
    lmx_options_init(&options);
    options.intent = LMX_PERCEPTUAL;
    lmx_conversion* to_press = NULL;
    int32_t code = lmx_profile_named("sRGB", &chain[0], &fault);
    if (code == LMX_SUCCESS) code = lmx_conversion_create(chain, 2, &options, &to_press, &fault);
    if (code == LMX_SUCCESS) code = print_inks(to_press, &fault);
    if (code != LMX_SUCCESS) fprintf(stderr, "%s\n", fault.sentence);
    lmx_conversion_free(to_press);
    lmx_profile_free(chain[0]);
    lmx_profile_free(chain[1]);
    return code == LMX_SUCCESS ? 0 : 1;
}
