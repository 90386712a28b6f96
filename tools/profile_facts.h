// SPDX-License-Identifier: Apache-2.0
//
// Everything that `lumoxa info` says of a profile, gathered once for whichever form it is printed
// in.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "lumoxa/lumoxa.h"
#include "tools/curve_form.h"
#include "tools/lut_shape.h"
#include "tools/profile_file.h"
#include "tools/profile_text.h"
#include "tools/violation_list.h"

namespace lumoxa_tool {

using Xyz = std::array<double, 3>;

struct HeaderFact {
    const char* label;  ///< for people: "rendering intent"
    const char* key;    ///< for programs: "renderingIntent"
    std::string text;
    std::variant<std::string, uint64_t, Xyz> value;  ///< for programs; empty for no signature
};

struct CurveFact {
    std::vector<uint32_t> tags;  ///< those that hold the same bytes
    CurveForm form;
};

struct LutFact {
    uint32_t tag;
    LutShape shape;
};

/// A gray device of three channels, from the head of its tag.
struct GrayDeviceFact {
    uint32_t points, steps, layout;

    std::string text() const;
};

struct TagFact {
    TagEntry entry;
    uint32_t type;  ///< 0 where the file has no byte of it
};

struct TransformFact {
    const char* direction = "";  ///< "from device", "to device", "link"
    std::string intent;          ///< in words; "all intents" for a link
    bool offered = false;
    std::string fault;  ///< why it can't be made although its tags are there
    std::string text;   ///< when it is offered and sound
    uint32_t tag = 0;   ///< 0 for curves and matrix
    icXformDesc_t desc = {};
    int grid = 0;
    std::string leftOut;  ///< stages of its tag that don't act
};

struct ProfileFacts {
    std::string name;   ///< as messages call it
    std::string title;  ///< the description in one language, or the name
    uint64_t fileSize = 0;
    LocalizedTexts description, copyright;
    std::vector<HeaderFact> header;  ///< empty where the file has none
    std::optional<Xyz> mediaWhite, mediaBlack;
    std::vector<CurveFact> curves;
    std::vector<LutFact> luts;
    std::optional<GrayDeviceFact> grayDevice;
    std::vector<TagFact> tags;
    uint64_t moreTags = 0;  ///< beyond those that are worth a line
    std::vector<TransformFact> transforms;
    std::optional<bool> gamutTest;  ///< nothing for what has no gamut: links, unreadable profiles
    std::vector<Violation> violations;
    uint64_t moreViolations = 0;
    std::string fault;  ///< why it can't be loaded, or the first transform that can't be made
};

/// @param name   as messages call the profile
/// @param bytes  any bytes at all
ProfileFacts gatherFacts(const std::string& name, const std::vector<uint8_t>& bytes);

/// The part on what the library makes of the profile: transforms, gamut test, fault.
void gatherTransforms(const std::string& name, const std::vector<uint8_t>& bytes,
                      ProfileFacts& facts);

/// The header's fields in their order.
std::vector<HeaderFact> headerFacts(const ProfileFile& file);

}  // namespace lumoxa_tool
