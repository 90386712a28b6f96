// SPDX-License-Identifier: Apache-2.0
//
// Making, editing and inspecting profiles for C.
#pragma once

#include "lumoxa/lmx_profile.h"

#ifdef __cplusplus
extern "C" {
#endif

// Kinds of tone curves.
#define LMX_CURVE_SRGB 0   ///< the two parts of IEC 61966-2-1
#define LMX_CURVE_GAMMA 1  ///< a power
#define LMX_CURVE_TABLE 2  ///< values over even steps of the device value

/// A tone curve, from device values to linear light, both 0..1.
typedef struct lmx_curve {
    uint32_t size;         ///< sizeof(lmx_curve)
    int32_t kind;          ///< LMX_CURVE_SRGB, LMX_CURVE_GAMMA or LMX_CURVE_TABLE
    double gamma;          ///< of LMX_CURVE_GAMMA: above 0 and below 256
    const double* values;  ///< of LMX_CURVE_TABLE: 0..1, none below the one before it
    int32_t value_count;   ///< 2..4096
    uint32_t reserved;     ///< 0
} lmx_curve;

/// An RGB display. Set by `lmx_display_init`, then changed where something else is meant.
typedef struct lmx_display {
    uint32_t size;            ///< sizeof(lmx_display)
    uint32_t version;         ///< of the profile: 0x04300000 (4.3, default) or 0x02400000 (2.4)
    double red[2];            ///< CIE 1931 chromaticities x and y, those of sRGB by default
    double green[2];          ///< as red
    double blue[2];           ///< as red
    double white[2];          ///< inside the triangle of the three; D65 by default
    const lmx_curve* curve;   ///< of all three channels; null (default) for that of sRGB
    const char* description;  ///< UTF-8, ASCII for version 2.4; "RGB display" by default
    const char* copyright;    ///< as description; "No copyright, use freely" by default
} lmx_display;

/// A printed and measured patch of a gray print device: a main ink and two weak companions that
/// tint its tones.
typedef struct lmx_gray_patch {
    double device[3];  ///< amounts of main, first and second companion; 0 is the bare paper
    double xyz[3];     ///< measured X, Y and Z: Y = 1, or Y = 100, for a perfect white
} lmx_gray_patch;

/// A gray print device. Set by `lmx_gray_print_init`, then given patches.
///
/// The patches, in any order, are a ramp, in which all three channels are equal, or for each of
/// some even steps of main (16 serve best) a grid of the companions, with paper (0, 0, 0) and black
/// (full, 0, 0). Steps may be rounded to whole numbers of 255. A patch that occurs repeatedly is
/// averaged.
typedef struct lmx_gray_print {
    uint32_t size;                  ///< sizeof(lmx_gray_print)
    uint32_t reserved;              ///< 0
    const lmx_gray_patch* patches;  ///< patch_count patches
    int64_t patch_count;
    double range;             ///< device value of full ink, 1 by default; 255, 65535, 100 ...
    const char* description;  ///< ASCII; "Gray print of three channels" by default
    const char* copyright;    ///< ASCII; "No copyright, use freely" by default
} lmx_gray_print;

/// Fills a display with its defaults, which are sRGB.
///
/// @param display  receives them, `size` included; null does nothing
LUMOXA_API void lmx_display_init(lmx_display* display);

/// Makes the profile of a display: matrix and curves, created now, adapted to D50 with the Bradford
/// transform, which its 'chad' tag states. Version 4.3 has its curves as parameters; version 2.4
/// has one gamma where 8 fractional bits hold it, else a table of 4096.
///
/// @param display  only read
/// @param out      receives the handle, released with `lmx_profile_free`; null on failure
/// @param fault    optional
/// @return 0; LMX_ERR_INVALID for a null argument, another version, texts that the version can't
///         hold, curves outside of the limits above, and for what no display can be: primaries on a
///         line or without luminance, a white outside of them; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_make_display(const lmx_display* display, lmx_profile** out,
                                    lmx_fault* fault);

/// Fills a gray print device with its defaults: all of them but the patches.
///
/// @param print  receives them, `size` included; null does nothing
LUMOXA_API void lmx_gray_print_init(lmx_gray_print* print);

/// Makes the profile of a gray print device, ICC version 2.4, created now. Conversions to it give
/// three channels, whose prints have the tone asked for (`lmx_gray_tone`). Its tone curve serves
/// software that knows nothing of the patches.
///
/// @param print  only read
/// @param out    receives the handle, released with `lmx_profile_free`; null on failure
/// @param fault  optional; names the patch that is missing, too many or impossible, in units of
///               `range`
/// @return 0; LMX_ERR_INVALID for a null argument, texts that aren't ASCII, and patches that are
///         neither ramp nor grids; LMX_ERR_TAG_TYPE for patches that no tones can be fitted to;
///         LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_make_gray_print(const lmx_gray_print* print, lmx_profile** out,
                                       lmx_fault* fault);

/// Tells as JSON what the patches of a gray print profile are and how near its neutral prints come
/// to it: "layout" ("ramp" or "grids"), "points", "steps", "best_steps"; "black" and "paper", L* of
/// the ends; "tone_error" in a* and b* over 401 tones, with "mean", "largest", its L*
/// ("largest_at") and the least that is "visible"; and "off_neutral", the ranges of L* ("dark" to
/// "light") where it is.
///
/// @param profile  only read
/// @param json     receives a block with the text and its NUL, UTF-8, released with `lmx_free`
/// @param fault    optional
/// @return 0; LMX_ERR_INVALID for a null argument; LMX_ERR_NO_TAG for a profile without patches;
///         LMX_ERR_XFORM_KIND for one that has them but serves no gray print; LMX_ERR_TAG_TYPE,
///         LMX_ERR_READ for faulty ones; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_gray_print_report(lmx_profile* profile, char** json, lmx_fault* fault);

/// Sets a text of a profile, in the type that the profile's version has for it: from version 4 on
/// multi-localized Unicode (American English), before it a description or text in ASCII. Like the
/// three functions below, it clears the profile's identifier, a digest of what the profile was.
///
/// @param profile    edited: one thread at a time. On failure it is as it was
/// @param signature  'desc', 'cprt', 'dmnd', 'dmdd' or 'vued'
/// @param text       UTF-8 with its NUL, no control characters but line breaks and tabs
/// @param fault      optional
/// @return 0; LMX_ERR_INVALID for a null argument, another signature, a text that the type can't
///         hold; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_profile_set_text(lmx_profile* profile, uint32_t signature, const char* text,
                                        lmx_fault* fault);

/// Sets the media white of a profile ('wtpt').
///
/// @param profile  as `lmx_profile_set_text`
/// @param X, Y, Z  above 0 and below 32768, with Y = 1 for a perfect white
/// @param fault    optional
/// @return 0; LMX_ERR_INVALID for a null profile and numbers outside; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_profile_set_white(lmx_profile* profile, double X, double Y, double Z,
                                         lmx_fault* fault);

/// Sets a tone curve of a profile, in the exact form that the profile's version has for it, as
/// `lmx_make_display` does.
///
/// @param profile    as `lmx_profile_set_text`
/// @param signature  'rTRC', 'gTRC', 'bTRC' or 'kTRC'
/// @param curve      only read
/// @param fault      optional
/// @return 0; LMX_ERR_INVALID for a null argument, another signature, and a curve outside of the
///         limits of its record; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_profile_set_curve(lmx_profile* profile, uint32_t signature,
                                         const lmx_curve* curve, lmx_fault* fault);

/// Removes a tag from a profile, all of them where several have that signature.
///
/// @param profile    as `lmx_profile_set_text`
/// @param signature  such as LMX_SIGNATURE('t', 'e', 'c', 'h')
/// @param fault      optional
/// @return 0; LMX_ERR_NO_TAG; LMX_ERR_INVALID for a null profile and for its only tag
LUMOXA_API int32_t lmx_profile_remove_tag(lmx_profile* profile, uint32_t signature,
                                          lmx_fault* fault);

/// Tells as JSON what a profile holds and what is wrong with it: header, tags, texts, curves and
/// tables, the transforms that the engine makes of it or the fault that keeps it from that, black
/// points, total ink, and violations of ICC.1 with tag, byte position and clause. The members are
/// listed in docs/inspect.md. Bytes that are no profile, or too broken to load, make a report too.
///
/// @param bytes  `size` bytes of anything; only read
/// @param size   in bytes
/// @param json   receives a block with the text and its NUL, UTF-8, released with `lmx_free`; null
///               on failure
/// @param fault  optional
/// @return 0; LMX_ERR_INVALID for a null argument; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_inspect(const void* bytes, uint64_t size, char** json, lmx_fault* fault);

#ifdef __cplusplus
}
#endif
