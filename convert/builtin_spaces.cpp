// SPDX-License-Identifier: Apache-2.0
#include "convert/builtin_spaces.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "base/fault.h"
#include "convert/colorimetry.h"
#include "profile/new_profile.h"

namespace lumoxa::engine {
namespace {

/// ((x + offset) / (1 + offset))^gamma from `start` on, x * slope below it. A pure power starts
/// at 0.
struct ToneCurve {
    double gamma, offset = 0, slope = 0, start = 0;
};

constexpr Chromaticity kD65 = {0.3127, 0.3290};

// IEC 61966-2-1, with the primaries of ITU-R BT.709.
constexpr DisplayColorimetry kSrgb = {{{{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}}, kD65};
constexpr ToneCurve kSrgbCurve = {2.4, 0.055, 1 / 12.92, 0.04045};

// Adobe RGB (1998) Color Image Encoding, 4.3.1: a gamma of 2 51/256.
constexpr DisplayColorimetry kAdobeRgb = {{{{0.64, 0.33}, {0.21, 0.71}, {0.15, 0.06}}}, kD65};
constexpr ToneCurve kAdobeRgbCurve = {2.0 + 51.0 / 256.0};

// SMPTE EG 432-1: the primaries of digital cinema, here with D65 and the curve of sRGB.
constexpr DisplayColorimetry kDisplayP3 = {{{{0.68, 0.32}, {0.265, 0.69}, {0.15, 0.06}}}, kD65};

// ITU-R BT.2020: the inverse of alpha * E^0.45 - (alpha - 1), which is 4.5 * E up to beta. These
// digits let both parts meet with one slope.
constexpr double kAlpha = 1.09929682680944, kBeta = 0.018053968510807;
constexpr DisplayColorimetry kRec2020 = {{{{0.708, 0.292}, {0.170, 0.797}, {0.131, 0.046}}}, kD65};
constexpr ToneCurve kRec2020Curve = {1 / 0.45, kAlpha - 1, 1 / 4.5, 4.5 * kBeta};

// ISO 22028-2 (ROMM RGB): 16 * E below 2^-9, then E^(1/1.8); both are 1/32 there.
constexpr DisplayColorimetry kRomm = {{{{0.7347, 0.2653}, {0.1596, 0.8404}, {0.0366, 0.0001}}},
                                      kD50Chromaticity};
constexpr ToneCurve kRommCurve = {1.8, 0, 1.0 / 16, 16.0 / 512};

constexpr ToneCurve kGamma22 = {2.2};

struct Space {
    std::string_view name;
    const char* description;
    uint32_t space;
    const DisplayColorimetry* colorimetry = nullptr;  ///< of RGB
    const ToneCurve* curve = nullptr;                 ///< of RGB and gray
};

constexpr Space kSpaces[] = {
    {"sRGB", "sRGB (IEC 61966-2-1)", kSpaceRgb, &kSrgb, &kSrgbCurve},
    {"AdobeRGB", "Adobe RGB (1998)", kSpaceRgb, &kAdobeRgb, &kAdobeRgbCurve},
    {"DisplayP3", "Display P3", kSpaceRgb, &kDisplayP3, &kSrgbCurve},
    {"Rec2020", "ITU-R BT.2020", kSpaceRgb, &kRec2020, &kRec2020Curve},
    {"ProPhotoRGB", "ProPhoto RGB (ISO 22028-2)", kSpaceRgb, &kRomm, &kRommCurve},
    {"gray", "Gray with the curve of sRGB", kSpaceGray, nullptr, &kSrgbCurve},
    {"gray-2.2", "Gray with gamma 2.2", kSpaceGray, nullptr, &kGamma22},
    {"Lab", "CIE 1976 L*a*b*, D50", kSpaceLab},
    {"XYZ", "CIE 1931 XYZ, D50", kSpaceXyz},
};

constexpr uint32_t kClassColorSpace = fourcc("spac");
constexpr uint32_t kRelativeColorimetric = icRelativeColorimetric;
constexpr icDateTimeNumber kCreated = {2026, 1, 1, 0, 0, 0};  // fixed, as the bytes are

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isSameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

TagBytes toneCurveTag(const ToneCurve& curve) {
    if (curve.start == 0) return parametricTag(0, std::array{curve.gamma});
    const double whole = 1 + curve.offset;
    return parametricTag(
        3, std::array{curve.gamma, 1 / whole, curve.offset / whole, curve.slope, curve.start});
}

// A lutAToBType or lutBToAType of three B curves that change nothing (ICC.1:2010, 10.10 and
// 10.11).
TagBytes identityTag(uint32_t type) {
    constexpr uint32_t kChannels = 3, kHeadBytes = 32;
    TagBytes tag = startOfTag(type);
    put16(tag, kChannels << 8 | kChannels);
    put16(tag, 0);
    put32(tag,
          kHeadBytes);  // offset of the B curves; there are no matrix, M curves, grid, A curves
    tag.resize(kHeadBytes, 0);
    const TagBytes identity = curveTag({});
    for (uint32_t c = 0; c < kChannels; ++c)
        tag.insert(tag.end(), identity.begin(), identity.end());
    return tag;
}

void addColorants(const DisplayColorimetry& colorimetry, std::vector<NewTag>& tags) {
    const DisplayMatrix matrix = displayMatrix(colorimetry);
    tags.push_back({fourcc("chad"), matrixTag(matrix.adaptation)});
    tags.push_back({fourcc("rXYZ"), xyzTag(matrix.colorants[0])});
    tags.push_back({fourcc("gXYZ"), xyzTag(matrix.colorants[1])});
    tags.push_back({fourcc("bXYZ"), xyzTag(matrix.colorants[2])});
}

std::vector<NewTag> tagsOf(const Space& space) {
    std::vector<NewTag> tags = {{fourcc("desc"), localizedTag(space.description)},
                                {fourcc("cprt"), localizedTag(kFreeCopyright)},
                                {fourcc("wtpt"), xyzTag(kD50Xyz)}};
    if (space.colorimetry != nullptr) {
        addColorants(*space.colorimetry, tags);
        for (const uint32_t signature : {fourcc("rTRC"), fourcc("gTRC"), fourcc("bTRC")})
            tags.push_back({signature, toneCurveTag(*space.curve)});
    } else if (space.curve != nullptr) {
        tags.push_back({fourcc("kTRC"), toneCurveTag(*space.curve)});
    } else {
        tags.push_back({fourcc("A2B0"), identityTag(kTypeLutAToB)});
        tags.push_back({fourcc("B2A0"), identityTag(kTypeLutBToA)});
    }
    return tags;
}

[[noreturn]] void refuseName() {
    std::string names;
    for (const Space& space : kSpaces)
        names.append(names.empty() ? "" : ", ").append(space.name);
    throw FaultError(icErrInvalid, "the name of a built-in space is one of " + names);
}

}  // namespace

std::vector<uint8_t> builtInSpace(std::string_view name) {
    const auto* const space =
        std::find_if(std::begin(kSpaces), std::end(kSpaces),
                     [=](const Space& candidate) { return isSameName(candidate.name, name); });
    if (space == std::end(kSpaces)) refuseName();
    NewProfile profile;
    const bool isPcs = isConnectionSpace(space->space);
    profile.deviceClass = isPcs ? kClassColorSpace : kClassDisplay;
    profile.space = space->space;
    profile.pcs = isPcs ? space->space : kSpaceXyz;
    profile.intent = kRelativeColorimetric;
    profile.created = kCreated;
    profile.tags = tagsOf(*space);
    return profileBytes(profile);
}

std::vector<std::string_view> builtInSpaceNames() {
    std::vector<std::string_view> names;
    for (const Space& space : kSpaces)
        names.push_back(space.name);
    return names;
}

}  // namespace lumoxa::engine
