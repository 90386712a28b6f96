// SPDX-License-Identifier: Apache-2.0
#include "make/display.h"

#include <cmath>

#include "base/fault.h"
#include "make/text_tag.h"

namespace lumoxa::engine {
namespace {

void requireNumbers(const DisplayColorimetry& colorimetry) {
    const auto require = [](const Chromaticity& color, const char* name) {
        if (std::isfinite(color.x) && std::isfinite(color.y)) return;
        throw FaultError(icErrInvalid, std::string("a chromaticity of ") + name + " is no number");
    };
    require(colorimetry.primaries[0], "red");
    require(colorimetry.primaries[1], "green");
    require(colorimetry.primaries[2], "blue");
    require(colorimetry.white, "the white");
}

}  // namespace

std::vector<uint8_t> makeDisplay(const DisplayForm& display) {
    const uint32_t version = display.version;
    if (version != kVersion2 && version != kVersion4) {
        throw FaultError(icErrInvalid,
                         "display profiles are made in the versions 2.4 (0x02400000) "
                         "and 4.3 (0x04300000)");
    }
    requireNumbers(display.colorimetry);
    const DisplayMatrix matrix = displayMatrix(display.colorimetry);
    const TagBytes curve = toneCurveTag(display.curve, version);
    NewProfile profile;
    profile.version = version;
    profile.created = utcNow();
    profile.tags = {
        {fourcc("desc"), textTagFor(fourcc("desc"), display.description, version)},
        {fourcc("cprt"), textTagFor(fourcc("cprt"), display.copyright, version)},
        {fourcc("wtpt"), xyzTag(kD50Xyz)},
        {fourcc("chad"), matrixTag(matrix.adaptation)},
        {fourcc("rXYZ"), xyzTag(matrix.colorants[0])},
        {fourcc("gXYZ"), xyzTag(matrix.colorants[1])},
        {fourcc("bXYZ"), xyzTag(matrix.colorants[2])},
        {fourcc("rTRC"), curve},
        {fourcc("gTRC"), curve},
        {fourcc("bTRC"), curve},
    };
    return profileBytes(profile);
}

}  // namespace lumoxa::engine
