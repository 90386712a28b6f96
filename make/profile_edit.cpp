// SPDX-License-Identifier: Apache-2.0
#include "make/profile_edit.h"

#include <algorithm>
#include <string>

#include "base/fault.h"
#include "convert/profile_view.h"
#include "lumoxa/tags.h"
#include "make/text_tag.h"
#include "profile/tag_edit.h"
#include "profile/tag_table.h"

namespace lumoxa::engine {
namespace {

constexpr uint32_t kCurves[] = {fourcc("rTRC"), fourcc("gTRC"), fourcc("bTRC"), fourcc("kTRC")};

[[noreturn]] void refuse(int code, uint32_t signature, const std::string& rule) {
    Fault fault;
    fault.code = code;
    fault.tag = signature;
    fault.sentence = rule;
    throw FaultError(fault);
}

void requireEditable(icProfileInternal& profile) {
    if (editableProfile(&profile) != nullptr) return;
    throw FaultError(icErrInvalid,
                     "the profile's tags stay in its file, where they can't be edited");
}

void clearIdentifier(icProfileInternal& profile) {
    constexpr size_t kIdBytes = 16;
    std::fill_n(profile.header.reserved, kIdBytes, uint8_t{0});
}

void setTag(icProfileInternal& profile, uint32_t signature, const TagBytes& tag) {
    requireEditable(profile);
    if (icTagAdd(&profile, signature, static_cast<uint32_t>(tag.size()), tag.data()) != icSuccess)
        throw std::bad_alloc();
    clearIdentifier(profile);
}

}  // namespace

void setText(icProfileInternal& profile, uint32_t signature, std::string_view text) {
    setTag(profile, signature, textTagFor(signature, text, profile.header.version));
}

void setWhite(icProfileInternal& profile, const std::array<double, 3>& xyz) {
    constexpr double kHalfStep = 0.5 / kFixedOne;
    constexpr uint32_t kWhite = fourcc("wtpt");
    FixedXyz fixed = {};
    for (size_t i = 0; i < fixed.size(); ++i) {
        if (!(xyz[i] >= kHalfStep && xyz[i] < 32768 - kHalfStep)) {
            refuse(icErrInvalid, kWhite,
                   "X, Y and Z of a white are above 0 and below 32768, with 1 for a full Y");
        }
        fixed[i] = toFixed16(xyz[i]);
    }
    setTag(profile, kWhite, xyzTag(fixed));
}

void setCurve(icProfileInternal& profile, uint32_t signature, const ToneCurveForm& curve) {
    if (std::find(std::begin(kCurves), std::end(kCurves), signature) == std::end(kCurves)) {
        refuse(icErrInvalid, signature,
               "tag " + quoted(signature) +
                   " is none of the tone curves 'rTRC', 'gTRC', 'bTRC' and 'kTRC'");
    }
    setTag(profile, signature, toneCurveTag(curve, profile.header.version));
}

void removeTag(icProfileInternal& profile, uint32_t signature) {
    requireEditable(profile);
    const auto entries = entriesOf(*profile.tagList);
    const auto isNamed = [=](const icTag_safe64bit& entry) { return entry.signature == signature; };
    if (std::none_of(entries.begin(), entries.end(), isNamed))
        refuse(icErrNoTag, signature, "the profile has no tag " + quoted(signature));
    if (std::all_of(entries.begin(), entries.end(), isNamed)) {
        refuse(icErrInvalid, signature,
               "tag " + quoted(signature) + " is the only one, and a profile has at least one");
    }
    while (icTagRemove(&profile, signature) == icSuccess) {
        // entries of the same name, which would come to light now
    }
    clearIdentifier(profile);
}

}  // namespace lumoxa::engine
