// SPDX-License-Identifier: Apache-2.0
//
// What ICC.1 demands of the 128 bytes of the header.
#include <array>
#include <cmath>
#include <optional>

#include "base/pcs_encoding.h"
#include "inspect/icc_rules.h"
#include "inspect/profile_id.h"
#include "inspect/words.h"

namespace lumoxa::inspection {
namespace {

enum Versions : uint8_t { kVersion2 = 1, kVersion4 = 2, kAnyVersion = 4 };

// A rule says what it found instead; nothing when the header keeps it.
using Check = std::string (*)(const ProfileFile& file);

struct HeaderRule {
    uint64_t at;
    Versions versions;
    const char* rule;
    Clause clause;
    Check found;
};

std::string ifBroken(bool broken, const std::string& found) {
    return broken ? found : std::string();
}

std::string signatureIs(uint32_t signature) {
    return "it is " + quoted(signature);
}

std::string wrongSize(const ProfileFile& file) {
    const uint64_t field = file.bytes().u32(header_at::kSize);
    return ifBroken(field != file.bytes().size(),
                    "it is " + std::to_string(field) + " and the file has " +
                        std::to_string(file.bytes().size()) + " bytes");
}

std::string oddSize(const ProfileFile& file) {
    const uint32_t field = file.bytes().u32(header_at::kSize);
    return ifBroken(field % 4 != 0, "it is " + std::to_string(field));
}

std::string unknownVersion(const ProfileFile& file) {
    constexpr uint32_t kLatestMinor = 4;  // 2.4 and 4.4 close their series
    const uint32_t major = file.majorVersion();
    const uint32_t minor = file.bytes().u8(header_at::kVersion + 1) >> 4;
    const bool known = (major == 2 || major == 4) && minor <= kLatestMinor;
    return ifBroken(!known, "it is " + std::to_string(major) + "." + std::to_string(minor));
}

template <uint64_t First, uint64_t End>
std::string notZero(const ProfileFile& file) {
    for (uint64_t at = First; at < End; ++at) {
        if (file.bytes().u8(at) != 0) return "byte " + std::to_string(at) + " is not";
    }
    return {};
}

std::string unknownClass(const ProfileFile& file) {
    return ifBroken(deviceClassName(file.deviceClass()) == nullptr,
                    signatureIs(file.deviceClass()));
}

std::string unknownSpace(const ProfileFile& file) {
    return ifBroken(channelsOf(file.space()) == 0, signatureIs(file.space()));
}

std::string unknownPcs(const ProfileFile& file) {
    const bool known = file.deviceClass() == fourcc("link") ? channelsOf(file.pcs()) != 0
                                                            : isConnectionSpace(file.pcs());
    return ifBroken(!known, signatureIs(file.pcs()));
}

std::string noDate(const ProfileFile& file) {
    const ByteView date = file.bytes().part(header_at::kDate, 12);
    const bool sound = date.u16(2) >= 1 && date.u16(2) <= 12 && date.u16(4) >= 1 &&
                       date.u16(4) <= 31 && date.u16(6) < 24 && date.u16(8) < 60 &&
                       date.u16(10) < 60;
    std::string found = "it is";
    for (uint64_t part = 0; part < 6; ++part)
        found.append(" ").append(std::to_string(date.u16(2 * part)));
    return ifBroken(!sound, found);
}

std::string noMagic(const ProfileFile& file) {
    const uint32_t magic = file.bytes().u32(header_at::kMagicAt);
    return ifBroken(magic != fourcc("acsp"), signatureIs(magic));
}

std::string unknownIntent(const ProfileFile& file) {
    const uint32_t intent = file.bytes().u32(header_at::kIntent);
    return ifBroken(intent > 3, "it is " + std::to_string(intent));
}

// Rounded to four decimals, as the value is given.
std::string otherIlluminant(const ProfileFile& file) {
    constexpr double kHalfUnit = 0.00005;
    bool same = true;
    std::string found = "it is";
    for (uint64_t i = 0; i < 3; ++i) {
        const double part = file.bytes().fixed(header_at::kIlluminant + 4 * i);
        same = same && std::abs(part - kPcsWhite[i]) <= kHalfUnit;
        found.append(" ").append(numberText(part));
    }
    return ifBroken(!same, found);
}

std::string otherId(const ProfileFile& file) {
    const std::optional<Md5Digest> stored = storedProfileId(file);
    return ifBroken(stored && *stored != computedProfileId(file), "it is another one");
}

constexpr HeaderRule kRules[] = {
    {header_at::kSize,
     kAnyVersion,
     "the size field is the size of the file",
     {"6.1", "7.2.2"},
     wrongSize},
    {header_at::kSize,
     kVersion4,
     "the size of a profile is a multiple of four",
     {nullptr, "7.1"},
     oddSize},
    {header_at::kVersion,
     kAnyVersion,
     "the version is 2.0 to 2.4 or 4.0 to 4.4",
     {"6.1", "7.2.4"},
     unknownVersion},
    {header_at::kVersion + 2,
     kAnyVersion,
     "the last two bytes of the version are zero",
     {"6.1", "7.2.4"},
     notZero<header_at::kVersion + 2, header_at::kClass>},
    {header_at::kClass,
     kAnyVersion,
     "the class is scnr, mntr, prtr, link, spac, abst or nmcl",
     {"6.1", "7.2.5"},
     unknownClass},
    {header_at::kSpace,
     kAnyVersion,
     "the colour space is one of those listed",
     {"6.1", "7.2.6"},
     unknownSpace},
    {header_at::kPcs,
     kAnyVersion,
     "the connection space is 'XYZ ' or 'Lab ', a link's output space one of those listed",
     {"6.1", "7.2.7"},
     unknownPcs},
    {header_at::kDate,
     kAnyVersion,
     "the creation date is year, month, day, hours, minutes and seconds",
     {"6.1", "7.2.8"},
     noDate},
    {header_at::kMagicAt,
     kAnyVersion,
     "the profile file signature is 'acsp'",
     {"6.1", "7.2.9"},
     noMagic},
    {header_at::kIntent,
     kAnyVersion,
     "the rendering intent is 0 to 3",
     {"6.1", "7.2.15"},
     unknownIntent},
    {header_at::kIlluminant,
     kAnyVersion,
     "the illuminant is D50, 0.9642 1.0 0.8249",
     {"6.1", "7.2.16"},
     otherIlluminant},
    {header_at::kProfileId,
     kVersion2,
     "reserved header bytes 84 to 127 are zero",
     {"6.1", nullptr},
     notZero<header_at::kProfileId, kHeaderBytes>},
    {header_at::kProfileId,
     kVersion4,
     "the profile ID is zero or the MD5 digest of the profile",
     {nullptr, "7.2.18"},
     otherId},
    {header_at::kReserved,
     kVersion4,
     "reserved header bytes 100 to 127 are zero",
     {nullptr, "7.2.19"},
     notZero<header_at::kReserved, kHeaderBytes>},
};

bool concerns(const HeaderRule& rule, uint32_t majorVersion) {
    return rule.versions == kAnyVersion || (rule.versions == kVersion2 && majorVersion == 2) ||
           (rule.versions == kVersion4 && majorVersion == 4);
}

}  // namespace

void checkHeader(const ProfileFile& file, ViolationList& list) {
    if (!file.hasHeader()) {
        list.add("", file.bytes().size(), "a profile has a header of 128 bytes", kHeaderClause,
                 "the file has " + std::to_string(file.bytes().size()) + " bytes");
        return;
    }
    for (const HeaderRule& rule : kRules) {
        // What isn't a profile breaks every rule; one is enough to say so.
        if (!file.isProfile() && rule.at != header_at::kMagicAt) continue;
        if (!concerns(rule, file.majorVersion())) continue;
        const std::string found = rule.found(file);
        if (!found.empty()) list.add("", rule.at, rule.rule, rule.clause, found);
    }
}

}  // namespace lumoxa::inspection
