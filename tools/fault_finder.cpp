// SPDX-License-Identifier: Apache-2.0
#include "tools/fault_finder.h"

#include <optional>

#include "tools/result_text.h"
#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

constexpr size_t kHeaderBytes = 128;
constexpr size_t kTableStart = kHeaderBytes + 4;
constexpr size_t kEntryBytes = 12;
constexpr const char* kGetSound = "get a sound copy of the profile";

std::string tagName(uint32_t signature) {
    return "tag " + quotedSignature(signature);
}

// The first thing in the profile that does not fit its bytes.
std::string misfit(const std::vector<uint8_t>& bytes) {
    const std::string size = std::to_string(bytes.size());
    if (bytes.size() < kTableStart) {
        return "has " + size + " bytes, fewer than an ICC header and tag count (132)";
    }
    const uint64_t count = bigEndian32(&bytes[kHeaderBytes]);
    if (count > (bytes.size() - kTableStart) / kEntryBytes) {
        return "tag table of " + std::to_string(count) + " entries does not fit " + size + " bytes";
    }
    for (uint64_t i = 0; i < count; ++i) {
        const uint8_t* entry = &bytes[kTableStart + i * kEntryBytes];
        const uint64_t end = uint64_t{bigEndian32(entry + 4)} + bigEndian32(entry + 8);
        if (end <= bytes.size()) continue;
        return tagName(bigEndian32(entry)) + " ends at byte " + std::to_string(end) +
               ", after the profile's end at " + size;
    }
    return "profile " + faultText(icErrRead);
}

// What a tag of a curves-and-matrix description has to be.
struct Colorant {
    uint32_t signature;
    bool curve;
};

constexpr Colorant kGrayTags[] = {{fourCc("kTRC"), true}};
constexpr Colorant kRgbTags[] = {
    {fourCc("rTRC"), true},  {fourCc("gTRC"), true},  {fourCc("bTRC"), true},
    {fourCc("rXYZ"), false}, {fourCc("gXYZ"), false}, {fourCc("bXYZ"), false},
};

bool curveFits(const Tag& tag) {
    static constexpr uint64_t kParameters[] = {1, 3, 4, 5, 7};
    if (tag.bytes.size() < 12) return false;
    if (tag.type == fourCc("curv"))
        return tag.bytes.size() >= 12 + 2ull * bigEndian32(&tag.bytes[8]);
    const uint32_t function = bigEndian16(&tag.bytes[8]);
    return function >= std::size(kParameters) || tag.bytes.size() >= 12 + 4 * kParameters[function];
}

std::optional<int> colorantFault(const Profile& profile, const Colorant& colorant) {
    const std::optional<Tag> tag = profile.tag(colorant.signature);
    if (!tag) return icErrNoTag;
    const bool known = colorant.curve ? tag->type == fourCc("curv") || tag->type == fourCc("para")
                                      : tag->type == fourCc("XYZ ");
    if (!known) return icErrTagType;
    const bool fits = colorant.curve ? curveFits(*tag) : tag->bytes.size() >= 20;
    return fits ? std::nullopt : std::optional<int>(icErrRead);
}

// The first tag with that fault, else the first with any: the library may notice another one first.
template <size_t Count>
uint32_t faultyColorant(const Profile& profile, const Colorant (&colorants)[Count], int code) {
    uint32_t other = 0;
    for (const Colorant& colorant : colorants) {
        const std::optional<int> fault = colorantFault(profile, colorant);
        if (fault == code) return colorant.signature;
        if (fault && other == 0) other = colorant.signature;
    }
    return other;
}

}  // namespace

Fault loadFault(const std::vector<uint8_t>& bytes, int code) {
    const bool noTags = bytes.size() >= kTableStart && bigEndian32(&bytes[kHeaderBytes]) == 0;
    if (code == icErrInvalid || bytes.size() < 40) {
        return {"is not an ICC profile (no 'acsp' at byte 36)", "give a profile file"};
    }
    if (code == icErrRead) return {misfit(bytes), kGetSound};
    if (noTags) return {"has an empty tag table", kGetSound};
    return {"profile " + faultText(code), kGetSound};
}

uint32_t lutTagFor(const Profile& profile, uint32_t intent, icTransType direction) {
    static constexpr uint32_t kAskedFirst[] = {0, 1, 2, 1};  // absolute is relative, scaled
    const uint32_t zero = direction == icDeviceToPcs ? fourCc("A2B0") : fourCc("B2A0");
    const uint32_t first = intent < std::size(kAskedFirst) ? kAskedFirst[intent] : 0;
    for (const uint32_t which : {first, 0u, 1u, 2u}) {
        if (profile.hasTag(zero + which)) return zero + which;
    }
    return 0;
}

Fault transformFault(const Profile& profile, uint32_t intent, icTransType direction, int code) {
    if (const uint32_t lut = lutTagFor(profile, intent, direction); lut != 0) {
        return {tagName(lut) + " " + faultText(code), kGetSound};
    }
    const bool gray = profile.space() == kGray;
    if (gray && profile.hasTag(kGrayTag)) {
        return {tagName(kGrayTag) + " " + faultText(code),
                "make the profile anew with lumoxa make-gray"};
    }
    if (!gray && profile.space() != kRgb && code == icErrNoTag) {
        const std::string tags = direction == icDeviceToPcs ? "'A2B0..2'" : "'B2A0..2'";
        const std::string role = direction == icDeviceToPcs ? "source" : "target";
        return {"has no tag " + tags + ", so it can't be the " + role, "choose another profile"};
    }
    const uint32_t fault =
        gray ? faultyColorant(profile, kGrayTags, code) : faultyColorant(profile, kRgbTags, code);
    return {(fault != 0 ? tagName(fault) : "profile") + " " + faultText(code), kGetSound};
}

}  // namespace lumoxa_tool
