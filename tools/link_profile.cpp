// SPDX-License-Identifier: Apache-2.0
#include "tools/link_profile.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "tools/filled_tag.h"
#include "tools/result_text.h"
#include "tools/signatures.h"
#include "tools/text_tag.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint32_t kDescriptionType = fourCc("desc");
constexpr uint32_t kVersion2 = 0x02000000;

// Bytes of a textDescriptionType from its type to its ScriptCode part; nothing for a tag that is
// none or ends before that. One inside another tag has no bytes to spare.
std::optional<Bytes> wholeDescription(const Bytes& tag) {
    constexpr uint64_t kCount = 8;         // of the ASCII part
    constexpr uint64_t kScriptPart = 70;   // ScriptCode code, count and name
    constexpr uint64_t kUnicodeHead = 8;   // language and count
    constexpr uint64_t kUnicodeCount = 4;  // in it
    if (tag.size() < kCount + 4 || bigEndian32(tag.data()) != kDescriptionType) return std::nullopt;
    const uint64_t unicode = kCount + 4 + bigEndian32(&tag[kCount]);
    if (unicode + kUnicodeHead > tag.size()) return std::nullopt;
    const uint64_t characters = bigEndian32(&tag[unicode + kUnicodeCount]);
    const uint64_t size = unicode + kUnicodeHead + 2 * characters + kScriptPart;
    if (size > tag.size()) return std::nullopt;
    return Bytes(tag.begin(), tag.begin() + static_cast<ptrdiff_t>(size));
}

Bytes embeddedDescription(const Profile& profile, uint32_t signature) {
    const std::optional<Tag> tag = profile.tag(signature);
    const std::optional<Bytes> own = tag ? wholeDescription(tag->bytes) : std::nullopt;
    return own ? *own : wholeDescription(descriptionTag("", kVersion2)).value();
}

uint32_t technologyOf(const Profile& profile) {
    constexpr size_t kValue = 8;  // behind type and reserved bytes
    const std::optional<Tag> tag = profile.tag(fourCc("tech"));
    return tag && tag->bytes.size() >= kValue + 4 ? bigEndian32(&tag->bytes[kValue]) : 0;
}

// profileSequenceDescType: what was linked.
Bytes sequenceTag(const std::vector<Profile>& profiles) {
    Bytes tag;
    put32(tag, fourCc("pseq"));
    put32(tag, 0);
    put32(tag, static_cast<uint32_t>(profiles.size()));
    for (const Profile& profile : profiles) {
        const icHeader& header = profile.header();
        put32(tag, header.manufacturer);
        put32(tag, header.model);
        put32(tag, static_cast<uint32_t>(header.attributes >> 32));
        put32(tag, static_cast<uint32_t>(header.attributes));
        put32(tag, technologyOf(profile));
        for (const uint32_t signature : {fourCc("dmnd"), fourCc("dmdd")}) {
            const Bytes description = embeddedDescription(profile, signature);
            tag.insert(tag.end(), description.begin(), description.end());
        }
    }
    return tag;
}

Bytes whitePointTag(const Profile& last) {
    constexpr size_t kXyzTagBytes = 20;
    const std::optional<Tag> own = last.tag(fourCc("wtpt"));
    if (own && own->type == kXyz && own->bytes.size() >= kXyzTagBytes) {
        return {own->bytes.begin(), own->bytes.begin() + kXyzTagBytes};
    }
    return filledTag(
        [](icTagBase** tag) { return icFillWhitePoint(0.9642f, 1.0f, 0.8249f, tag); });  // D50
}

std::string asciiText(std::string text) {
    const auto isOther = [](char c) { return c < ' ' || c > '~'; };
    std::replace_if(text.begin(), text.end(), isOther, '?');
    return text;
}

// A profile without a description is called by its file, wherever that lies.
std::string ownName(const Profile& profile) {
    const std::string text = profile.description();
    return text == profile.name() ? std::filesystem::path(text).filename().string() : text;
}

}  // namespace

std::string linkDescription(const std::vector<Profile>& profiles) {
    return asciiText(ownName(profiles.front()) + " to " + ownName(profiles.back()));
}

void requireStorable(const LinkTexts& texts) {
    descriptionTag(texts.description, kVersion2);
    copyrightTag(texts.copyright, kVersion2);
}

ProfileHandle makeLinkProfile(const std::vector<Profile>& profiles, const Table& table,
                              icRenderingIntent intent, const LinkTexts& texts) {
    ProfileHandle profile = newProfile(kLinkClass, table.desc.inSpace, table.desc.outSpace, intent);
    icTagRemove(profile.get(), fourCc("cprt"));  // the library's own
    addTag(profile, fourCc("desc"), descriptionTag(texts.description, kVersion2));
    addTag(profile, fourCc("cprt"), copyrightTag(texts.copyright, kVersion2));
    addTag(profile, fourCc("wtpt"), whitePointTag(profiles.back()));
    addTag(profile, fourCc("pseq"), sequenceTag(profiles));
    // Readers of links look for this tag whatever the intent is.
    const int code =
        icXformSet(profile.get(), table.desc.kind, icPerceptual, icDeviceToPcs, table.xform.get());
    if (code != icSuccess) throw InputError("device link: its table " + faultText(code));
    return profile;
}

}  // namespace lumoxa_tool
