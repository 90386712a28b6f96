// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "inspect/facts.h"
#include "inspect/profile_id.h"
#include "inspect/words.h"
#include "profile/header_reader.h"

namespace lumoxa::inspection {
namespace {

std::string versionText(uint32_t version) {
    return std::to_string(version >> 24) + "." + std::to_string(version >> 20 & 15) + "." +
           std::to_string(version >> 16 & 15);
}

std::string padded(uint32_t number, size_t digits) {
    const std::string text = std::to_string(number);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

std::string dateText(const icDateTimeNumber& date) {
    return padded(date.year, 4) + "-" + padded(date.month, 2) + "-" + padded(date.day, 2) + " " +
           padded(date.hours, 2) + ":" + padded(date.minutes, 2) + ":" + padded(date.seconds, 2);
}

std::string idText(const Md5Digest& id) {
    std::string text;
    for (const uint8_t byte : id)
        text += hexText(byte, 2).substr(2);
    return text;
}

void writeSignature(JsonObject& header, const char* name, uint32_t signature) {
    writeText(header, name, signature == 0 ? std::string() : signatureText(signature));
}

// A bit in words (ICC.1:2010, 7.2.11 and 7.2.14).
struct BitWords {
    uint64_t bit;
    const char* clear;
    const char* set;
};

constexpr BitWords kFlagWords[] = {{1, "not embedded", "embedded"},
                                   {2, "independent", "only with the embedded colour data"}};
constexpr BitWords kAttributeWords[] = {{1, "reflective", "transparency"},
                                        {2, "glossy", "matte"},
                                        {4, "positive", "negative"},
                                        {8, "colour", "black and white"}};

template <size_t Count>
void writeBits(JsonObject& header, const char* name, const BitWords (&words)[Count],
               uint64_t value) {
    header.array(name, [&](JsonArray& list) {
        for (const BitWords& word : words)
            list.add((value & word.bit) != 0 ? word.set : word.clear);
    });
}

constexpr Word kPlatforms[] = {{fourcc("APPL"), "Apple"},
                               {fourcc("MSFT"), "Microsoft"},
                               {fourcc("SGI "), "Silicon Graphics"},
                               {fourcc("SUNW"), "Sun Microsystems"},
                               {fourcc("TGNT"), "Taligent"}};

void writeId(JsonObject& header, const ProfileFile& file) {
    const std::optional<Md5Digest> id = storedProfileId(file);
    if (!id || file.majorVersion() < 4) {  // version 2 has no such field
        header.add("profileId", nullptr);
        header.add("profileIdMatches", nullptr);
        return;
    }
    header.add("profileId", idText(*id));
    header.add("profileIdMatches", *id == computedProfileId(file));
}

void writeFields(JsonObject& out, const icHeader& header, const ProfileFile& file) {
    const bool link = header.deviceClass == fourcc("link");
    out.add("size", header.size);
    out.add("version", versionText(header.version));
    out.add("class", signatureText(header.deviceClass));
    writeWord(out, "className", deviceClassName(header.deviceClass));
    out.add("colourSpace", spaceText(header.colorSpace));
    out.add(link ? "outputSpace" : "connectionSpace", spaceText(header.pcs));
    out.add("created", dateText(header.date));
    out.add("renderingIntent", intentText(header.renderingIntent));
    writeNumbers(out, "illuminant",
                 std::array{file.bytes().fixed(header_at::kIlluminant),
                            file.bytes().fixed(header_at::kIlluminant + 4),
                            file.bytes().fixed(header_at::kIlluminant + 8)});
    out.add("flags", hexText(header.flags, 8));
    writeBits(out, "flagWords", kFlagWords, header.flags);
    out.add("attributes", hexText(header.attributes, 16));
    writeBits(out, "attributeWords", kAttributeWords, header.attributes);
    writeSignature(out, "platform", header.platform);
    writeWord(out, "platformName", wordFor(kPlatforms, header.platform));
    writeSignature(out, "colourEngine", header.cmmId);
    writeSignature(out, "manufacturer", header.manufacturer);
    writeSignature(out, "model", header.model);
    writeSignature(out, "creator", file.bytes().u32(header_at::kCreator));
    writeId(out, file);
}

}  // namespace

void writeHeader(JsonObject& report, const ProfileFile& file) {
    if (!file.hasHeader() || !file.isProfile()) {
        report.add("header", nullptr);
        return;
    }
    const icHeader header = headerOf(file.bytes().begin());
    report.object("header", [&](JsonObject& out) { writeFields(out, header, file); });
}

}  // namespace lumoxa::inspection
