// SPDX-License-Identifier: Apache-2.0
//
// Pictures for the command-line tool, and what it has made of them.
#pragma once

#include <vips/vips.h>

#include "tests/support/run_tool.h"

namespace lumoxa_test {

struct Picture {
    int bands = 0;
    VipsBandFormat format = VIPS_FORMAT_NOTSET;
    VipsInterpretation meaning = VIPS_INTERPRETATION_ERROR;
    bool hasProfile = false;
    std::vector<double> samples;
};

/// A test of the tool whose files are pictures too.
class PictureRun : public ToolRun {
  protected:
    void SetUp() override {
        ASSERT_EQ(VIPS_INIT("lumoxa_tool_tests"), 0);
        vips_cache_set_max(0);  // files change under their names
        ToolRun::SetUp();
    }

    // A ramp from left to right, each band ahead of the one before; the last of 2 or 4 is alpha.
    void saveImage(const std::string& name, int bands, bool sixteenBits = false, int width = 256,
                   int height = 1, double ahead = 10) const {
        const size_t count = static_cast<size_t>(bands);
        std::vector<double> gain(count, sixteenBits ? 200 : 1), offset(count);
        for (size_t band = 0; band < count; ++band)
            offset[band] = ahead * static_cast<double>(band);
        const auto meaning = bands < 3     ? VIPS_INTERPRETATION_B_W
                             : sixteenBits ? VIPS_INTERPRETATION_RGB16
                                           : VIPS_INTERPRETATION_sRGB;
        VipsImage *steps[5] = {}, **at = steps;
        ASSERT_EQ(vips_xyz(at, width, height, nullptr), 0);
        ASSERT_EQ(vips_extract_band(at[0], at + 1, 0, nullptr), 0);
        ASSERT_EQ(vips_linear(at[1], at + 2, gain.data(), offset.data(), bands, nullptr), 0);
        ASSERT_EQ(
            vips_cast(at[2], at + 3, sixteenBits ? VIPS_FORMAT_USHORT : VIPS_FORMAT_UCHAR, nullptr),
            0);
        ASSERT_EQ(vips_copy(at[3], at + 4, "interpretation", meaning, nullptr), 0);
        EXPECT_EQ(vips_image_write_to_file(at[4], path(name).c_str(), nullptr), 0);
        for (VipsImage* step : steps)
            g_object_unref(step);
    }
    Picture picture(const std::string& name) const {
        VipsImage *file = vips_image_new_from_file(path(name).c_str(), nullptr), *cast = nullptr;
        size_t size = 0;
        if (file == nullptr || vips_cast(file, &cast, VIPS_FORMAT_DOUBLE, nullptr) != 0) return {};
        auto* const data = static_cast<double*>(vips_image_write_to_memory(cast, &size));
        const Picture result = {vips_image_get_bands(file), vips_image_get_format(file),
                                vips_image_get_interpretation(file),
                                vips_image_get_typeof(file, VIPS_META_ICC_NAME) != 0,
                                std::vector<double>(data, data + size / sizeof(double))};
        g_free(data);
        g_object_unref(cast);
        g_object_unref(file);
        return result;
    }
};

}  // namespace lumoxa_test
