// SPDX-License-Identifier: Apache-2.0
#include "tools/images/source_image.h"

#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

struct Meaning {
    VipsInterpretation interpretation;
    uint32_t space;
    double white;  // largest sample of formats that aren't unsigned integers
};

constexpr Meaning kMeanings[] = {
    {VIPS_INTERPRETATION_B_W, kGray, 255.0},    {VIPS_INTERPRETATION_GREY16, kGray, 65535.0},
    {VIPS_INTERPRETATION_sRGB, kRgb, 255.0},    {VIPS_INTERPRETATION_RGB, kRgb, 255.0},
    {VIPS_INTERPRETATION_RGB16, kRgb, 65535.0}, {VIPS_INTERPRETATION_scRGB, kRgb, 1.0},
    {VIPS_INTERPRETATION_CMYK, kCmyk, 255.0},   {VIPS_INTERPRETATION_MULTIBAND, 0, 255.0},
};

const Meaning& meaningOf(const std::string& path, VipsImage* image) {
    for (const Meaning& meaning : kMeanings) {
        if (meaning.interpretation == vips_image_get_interpretation(image)) return meaning;
    }
    const char* name =
        vips_enum_nick(VIPS_TYPE_INTERPRETATION, vips_image_get_interpretation(image));
    throw InputError(path + ": holds " + name +
                     " samples; save it as gray, RGB or CMYK and try again");
}

std::optional<std::vector<uint8_t>> embeddedProfile(VipsImage* image) {
    const void* bytes = nullptr;
    size_t size = 0;
    if (vips_image_get_typeof(image, VIPS_META_ICC_NAME) == 0) return std::nullopt;
    if (vips_image_get_blob(image, VIPS_META_ICC_NAME, &bytes, &size) != 0) return std::nullopt;
    const auto* first = static_cast<const uint8_t*>(bytes);
    return std::vector<uint8_t>(first, first + size);
}

// Runs one libvips operation on the image and takes its result in the image's place.
template <class Operation>
void replaceBy(const std::string& path, ImageHandle& image, Operation operation) {
    VipsImage* result = nullptr;
    if (operation(image.get(), &result) != 0) throw InputError(path + ": " + takeVipsError());
    image.reset(result);
}

// Brings samples that are neither 8-bit nor 16-bit to 16 bits.
void normaliseSamples(const std::string& path, SourceImage& source, const Meaning& meaning) {
    const VipsBandFormat format = vips_image_get_format(source.image.get());
    if (format == VIPS_FORMAT_UCHAR || format == VIPS_FORMAT_USHORT) return;
    if (vips_band_format_iscomplex(format)) {
        throw InputError(path + ": holds complex numbers, not colours; give an image");
    }
    if (meaning.interpretation == VIPS_INTERPRETATION_scRGB && !source.profile) {
        // Linear light with sRGB's primaries and no profile to say so: encode it as sRGB.
        replaceBy(path, source.image, [](VipsImage* in, VipsImage** out) {
            return vips_colourspace(in, out, VIPS_INTERPRETATION_RGB16, nullptr);
        });
    } else {
        replaceBy(path, source.image, [&](VipsImage* in, VipsImage** out) {
            return vips_linear1(in, out, 65535.0 / meaning.white, 0.5, nullptr);  // casts truncate
        });
    }
    replaceBy(path, source.image, [](VipsImage* in, VipsImage** out) {
        return vips_cast(in, out, VIPS_FORMAT_USHORT, nullptr);
    });
}

}  // namespace

SourceImage openSourceImage(const std::string& path) {
    SourceImage source;
    // A damaged file stops the conversion instead of being filled up with gray.
    source.image.reset(vips_image_new_from_file(path.c_str(), "access", VIPS_ACCESS_SEQUENTIAL,
                                                "fail_on", VIPS_FAIL_ON_ERROR, nullptr));
    if (!source.image) {
        throw InputError(path + ": can't be read as an image (" + takeVipsError() +
                         "); check the file");
    }
    if (vips_image_get_coding(source.image.get()) != VIPS_CODING_NONE) {
        replaceBy(path, source.image,
                  [](VipsImage* in, VipsImage** out) { return vips_image_decode(in, out); });
    }
    const Meaning& meaning = meaningOf(path, source.image.get());
    source.space = meaning.space;
    source.profile = embeddedProfile(source.image.get());
    source.pages = vips_image_get_n_pages(source.image.get());
    normaliseSamples(path, source, meaning);
    VipsImage* image = source.image.get();
    source.sixteenBits = vips_image_get_format(image) == VIPS_FORMAT_USHORT;
    source.alpha = vips_image_hasalpha(image) != 0;
    source.bands = vips_image_get_bands(image);
    return source;
}

}  // namespace lumoxa_tool
