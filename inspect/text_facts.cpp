// SPDX-License-Identifier: Apache-2.0
//
// Texts of a profile in all their languages, and its dictionary of names and values.
#include <algorithm>

#include "inspect/facts.h"
#include "inspect/words.h"
#include "profile/description_text.h"

namespace lumoxa::inspection {
namespace {

// No text of a profile is longer, and hostile ones would fill the memory: languages may share
// their bytes.
constexpr size_t kMostTextBytes = size_t{1} << 16;
constexpr uint64_t kMostNames = 1000;  // of a dictionary

constexpr uint32_t kDescription = fourcc("desc"), kCopyright = fourcc("cprt");
constexpr uint32_t kOtherTexts[] = {fourcc("dmnd"), fourcc("dmdd"), fourcc("vued"), fourcc("scrd"),
                                    fourcc("targ")};

std::span<const uint8_t> spanOf(ByteView bytes) {
    return {bytes.begin(), static_cast<size_t>(bytes.size())};
}

std::string printable(std::string letters) {
    for (char& letter : letters)
        letter = letter >= ' ' && letter <= '~' ? letter : '?';
    return letters;
}

// "en-US", or "en" where there is no country.
std::string languageText(const std::string& code) {
    if (code.size() < 4) return {};
    const std::string language = printable(code.substr(0, 2)), country = code.substr(2);
    return country == std::string(2, '\0') ? language : language + "-" + printable(country);
}

uint64_t writeLanguages(JsonObject& object, const char* name, ByteView tag) {
    uint64_t more = 0;
    const std::vector<LocalizedText> texts = localizedTexts(spanOf(tag), kMostTextBytes, more);
    object.array(name, [&](JsonArray& list) {
        for (const LocalizedText& text : texts) {
            list.object([&](JsonObject& out) {
                const std::string language = languageText(text.language);
                if (!language.empty()) out.add("language", language);
                out.add("text", cleanText(text.text));
            });
        }
    });
    return more;
}

ByteView dataOf(const ProfileFile& file, uint32_t signature) {
    const TagEntry* entry = file.find(signature);
    return entry == nullptr ? ByteView() : file.data(*entry);
}

void writeOtherTexts(JsonObject& report, const ProfileFile& file) {
    report.array("texts", [&](JsonArray& list) {
        for (const uint32_t signature : kOtherTexts) {
            const ByteView data = dataOf(file, signature);
            if (data.size() == 0) continue;
            list.object([&](JsonObject& out) {
                out.add("tag", signatureText(signature));
                writeLanguages(out, "texts", data);
            });
        }
    });
}

// A string of a dictionary: offset and size in a record; offset 0 is none (ICC.1:2022, 10.9).
std::string dictionaryText(ByteView tag, uint64_t recordAt) {
    const uint32_t offset = tag.u32(recordAt), size = tag.u32(recordAt + 4);
    if (offset == 0) return {};
    return cleanText(
        utf8FromUtf16(spanOf(tag.part(offset, std::min<uint64_t>(size, kMostTextBytes)))));
}

}  // namespace

std::string cleanText(std::string text) {
    size_t length = std::min(text.size(), kMostTextBytes);
    while (length < text.size() && length > 0 &&
           (static_cast<uint8_t>(text[length]) & 0xC0) == 0x80)
        --length;  // not within a character
    text.resize(length);
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<uint8_t>(text[i]);
        if (byte < 0x20 || byte == 0x7F) text[i] = ' ';
        // U+0080 to U+009F are controls too.
        if (byte == 0xC2 && i + 1 < text.size() && static_cast<uint8_t>(text[i + 1]) < 0xA0)
            text[i] = text[i + 1] = ' ';
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

void writeTitle(JsonObject& report, const ProfileFile& file) {
    writeText(report, "title", cleanText(descriptionUtf8(spanOf(dataOf(file, kDescription)))));
}

void writeTexts(JsonObject& report, const ProfileFile& file) {
    const uint64_t more = writeLanguages(report, "description", dataOf(file, kDescription));
    report.add("descriptionsNotListed", more);
    writeLanguages(report, "copyright", dataOf(file, kCopyright));
    writeOtherTexts(report, file);
}

// dictType: count at 8, record size at 12, then records of two or more strings.
void writeMetadata(JsonObject& report, const ProfileFile& file) {
    constexpr uint64_t kFirstRecord = 16, kLeastRecord = 16, kMostRecord = 32;
    const ByteView tag = dataOf(file, fourcc("meta"));
    const uint64_t step = tag.u32(12);
    const bool known = tag.u32(0) == fourcc("dict") && step >= kLeastRecord && step <= kMostRecord;
    const uint64_t room =
        known && tag.size() > kFirstRecord ? (tag.size() - kFirstRecord) / step : 0;
    const uint64_t count = std::min<uint64_t>(tag.u32(8), room);
    uint64_t listed = 0;
    report.array("metadata", [&](JsonArray& list) {
        size_t written = 0;
        for (; listed < std::min(count, kMostNames) && written < kMostTextBytes; ++listed) {
            const uint64_t at = kFirstRecord + listed * step;
            const std::string name = dictionaryText(tag, at), value = dictionaryText(tag, at + 8);
            written += name.size() + value.size();
            list.object([&](JsonObject& out) {
                out.add("name", name);
                out.add("value", value);
            });
        }
    });
    report.add("metadataNotListed", count - listed);
}

}  // namespace lumoxa::inspection
