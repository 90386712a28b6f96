/* SPDX-License-Identifier: Apache-2.0
 *
 * Usage: everyday RGB_PROFILE CMYK_PROFILE TABLE_PROFILE
 *
 * What everyone expects of a conversion, through lmx.h alone: prints everyday.txt.
 */
#include <stdio.h>
#include <stdlib.h>

#include "lumoxa/lmx.h"

static lmx_fault fault;

static void require(int32_t code) {
    if (code == LMX_SUCCESS) return;
    printf("%s\n", fault.sentence);
    exit(1);
}

static lmx_profile* named(const char* name) {
    lmx_profile* profile = NULL;
    require(lmx_profile_named(name, &profile, &fault));
    return profile;
}

static lmx_profile* loaded(const char* path) {
    static uint8_t bytes[1 << 20];
    lmx_profile* profile = NULL;
    FILE* file = fopen(path, "rb");
    size_t size = 0;
    if (file != NULL) {
        size = fread(bytes, 1, sizeof bytes, file);
        fclose(file);
    }
    require(lmx_profile_from_bytes(bytes, size, &profile, &fault));
    return profile;
}

static lmx_image pixel(const void* data, int32_t sample, int32_t channels) {
    lmx_image image = {0};
    image.size = sizeof image;
    image.sample = sample;
    image.data = (void*)data;
    image.width = image.height = 1;
    image.channels = channels;
    image.channel_stride = sample == LMX_SAMPLES_8 ? 1 : sample == LMX_SAMPLES_16 ? 2 : 4;
    return image;
}

/* Converts one pixel between two profiles; returns the code of the run. Takes the profiles over. */
static int32_t convert(lmx_profile* from, lmx_profile* to, lmx_image source, lmx_image result) {
    lmx_profile* chain[2];
    lmx_conversion* conversion = NULL;
    int32_t code;
    chain[0] = from;
    chain[1] = to;
    require(lmx_conversion_create(chain, 2, NULL, &conversion, &fault));
    code = lmx_conversion_run(conversion, &source, &result, NULL, &fault);
    lmx_conversion_free(conversion);
    lmx_profile_free(from);
    lmx_profile_free(to);
    return code;
}

int main(int argc, char** argv) {
    const uint8_t red[3] = {200, 30, 60}, shadow[3] = {10, 10, 10}, white[3] = {123, 128, 105};
    const uint8_t full[3] = {255, 255, 255};
    const uint16_t gray[3] = {32768, 32768, 32768};
    uint8_t rgb[3] = {0};
    float value[3] = {0};
    lmx_profile* none = NULL;
    fault.size = sizeof fault;
    if (argc != 4) return 2;
    require(convert(named("AdobeRGB"), named("sRGB"), pixel(red, LMX_SAMPLES_8, 3),
                    pixel(rgb, LMX_SAMPLES_8, 3)));
    printf("AdobeRGB 200 30 60: sRGB %d %d %d\n", rgb[0], rgb[1], rgb[2]);
    require(convert(loaded(argv[1]), named("XYZ"), pixel(shadow, LMX_SAMPLES_8, 3),
                    pixel(value, LMX_SAMPLES_F32, 3)));
    printf("parametric sRGB 10: Y %.5f\n", (double)value[1]);
    require(convert(named("XYZ"), named("sRGB"), pixel(white, LMX_SAMPLES_8, 3),
                    pixel(rgb, LMX_SAMPLES_8, 3)));
    printf("white in bytes of XYZ: sRGB %d %d %d\n", rgb[0], rgb[1], rgb[2]);
    require(convert(named("sRGB"), named("Lab"), pixel(gray, LMX_SAMPLES_16, 3),
                    pixel(value, LMX_SAMPLES_F32, 3)));
    printf("mid gray: L* %.1f\n", (double)value[0]);
    require(convert(loaded(argv[3]), named("sRGB"), pixel(full, LMX_SAMPLES_8, 3),
                    pixel(rgb, LMX_SAMPLES_8, 3)));
    printf("table with matrix and M curves, white: sRGB %d %d %d\n", rgb[0], rgb[1], rgb[2]);
    printf("three channels for four: code %d\n",
           (int)convert(loaded(argv[2]), named("sRGB"), pixel(red, LMX_SAMPLES_8, 3),
                        pixel(rgb, LMX_SAMPLES_8, 3)));
    printf("%s\n", fault.sentence);
    printf("junk: code %d\n", (int)lmx_profile_from_bytes("junk", 4, &none, &fault));
    printf("%s\n", fault.sentence);
    return 0;
}
