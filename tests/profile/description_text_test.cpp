// SPDX-License-Identifier: Apache-2.0
#include "profile/description_text.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/utf8.h"
#include "tests/support/profile_bytes.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

using namespace std::string_literals;
using lumoxa::descriptionUtf8;

// The reader gets a block that is exactly as long, so that a sanitizer sees what lies beyond it.
std::string read(const std::string& tag) {
    return descriptionUtf8(Bytes(tag.begin(), tag.end()));
}

std::string desc(const std::string& ascii, const std::string& utf16) {
    return "desc\0\0\0\0"s + bigEndian(uint32_t(ascii.size())) + ascii + bigEndian(0) +
           bigEndian(uint32_t(utf16.size() / 2)) + utf16 + std::string(70, '\0');
}

struct Record {
    std::string language, utf16;
};

std::string mluc(const std::vector<Record>& records, uint32_t recordSize = 12) {
    std::string all = "mluc\0\0\0\0"s + bigEndian(uint32_t(records.size())) + bigEndian(recordSize),
                texts;
    for (const Record& record : records) {
        const size_t offset = 16 + recordSize * records.size() + texts.size();
        all += record.language + bigEndian(uint32_t(record.utf16.size())) +
               bigEndian(uint32_t(offset)) + std::string(recordSize - 12, 'x');
        texts += record.utf16;
    }
    return all + texts;
}

const std::string kA = "\0A"s, kB = "\0B"s, kC = "\0C"s;

TEST(DescriptionText, ReadsEachTypeAsUtf8) {
    const struct {
        std::string tag, text;
    } cases[] = {
        {desc("Press\0"s, ""), "Press"},
        {desc("Press\0 and more\0"s, ""), "Press"},
        {desc("Pr\xE4gung\xA9\0"s, ""), "Pr\xC3\xA4gung\xC2\xA9"},  // Latin-1
        {desc("Pr\xC3\xA4gung\0"s, ""), "Pr\xC3\xA4gung"},          // UTF-8
        {desc("\0"s, "\0\xC4\x20\xAC\0\0\0A"s), "\xC3\x84\xE2\x82\xAC"},
        {desc("", kA), "A"},
        {desc("Both\0"s, kA), "Both"},
        {"text\0\0\0\0Press\0x"s, "Press"},
        {"text\0\0\0\0Press"s, "Press"},
        {mluc({{"deDE", kA}, {"enGB", kB}, {"enUS", kC}}), "C"},
        {mluc({{"deDE", kA}, {"enGB", kB}, {"en\0\0"s, kC}}), "B"},
        {mluc({{"deDE", kA}, {"frFR", kB}}), "A"},
        {mluc({{"deDE", kA}, {"enUS", kB}}, 20), "B"},
        {mluc({{"enUS", kA + "\0\0"s + kB}}), "A"},
        {mluc({{"enUS", kA + "\0"s}}), "A"},  // half a unit at the end
        {mluc({{"enUS", "\xD8\x3C\xDF\xA8"s}}), "\xF0\x9F\x8E\xA8"},
    };
    for (const auto& [tag, text] : cases)
        EXPECT_EQ(read(tag), text);
}

TEST(DescriptionText, ReplacesHalvesOfSurrogatePairs) {
    const std::string lost = "\xEF\xBF\xBD";
    EXPECT_EQ(read(mluc({{"enUS", "\xD8\x3C"s + kA}})), lost + "A");
    EXPECT_EQ(read(mluc({{"enUS", "\xDF\xA8"s + kA}})), lost + "A");
    EXPECT_EQ(read(mluc({{"enUS", kA + "\xD8\x3C"s}})), "A" + lost);
    EXPECT_EQ(read(mluc({{"enUS", "\xD8\x3C\xD8\x3C\xDF\xA8"s}})), lost + "\xF0\x9F\x8E\xA8");
}

TEST(DescriptionText, IsEmptyWhereTheTextIsNotInsideTheTag) {
    const std::string top = bigEndian(0xFFFFFFFF);
    const std::string head = "mluc\0\0\0\0"s;
    const std::string cases[] = {
        "",
        "desc",
        "mluc",
        "text",
        "text\0\0\0\0"s,
        "curv\0\0\0\0\0\0\0\0"s,
        "desc\0\0\0\0"s + top + "abc",
        "desc\0\0\0\0"s + bigEndian(4) + "abc",
        "desc\0\0\0\0"s + bigEndian(0) + bigEndian(0) + top + kA,
        head + bigEndian(0) + bigEndian(12),
        head + bigEndian(1) + bigEndian(12) + "enUS" + bigEndian(4) + bigEndian(28) +
            kA,  // too long
        head + bigEndian(1) + bigEndian(12) + "enUS" + bigEndian(2) + top + kA,
        head + bigEndian(1) + bigEndian(12) + "enUS" + top + top + kA,
        head + bigEndian(255) + bigEndian(12) + "enUS" + bigEndian(2) + bigEndian(28) + kA,
        head + top + top + "enUS" + bigEndian(2) + bigEndian(28) + kA,
        head + bigEndian(1) + bigEndian(0) + "enUS" + bigEndian(2) + bigEndian(28) +
            kA,  // record size
    };
    for (const std::string& tag : cases)
        EXPECT_EQ(read(tag), "") << testing::PrintToString(tag);
}

TEST(DescriptionText, StaysInsideTagsThatAreCutOrDamaged) {
    SeededRandom random(7);
    const std::string whole[] = {desc("Press\0"s, ""), desc("", kA + kB),
                                 mluc({{"deDE", kA}, {"enUS", "\xD8\x3C\xDF\xA8"s}})};
    for (const std::string& tag : whole) {
        const std::string text = read(tag);
        for (size_t size = 0; size <= tag.size(); ++size) {
            std::string cut = tag.substr(0, size);
            // What is left of a text begins as the whole one does.
            EXPECT_EQ(text.find(read(cut)), 0U);
            for (int i = 0; i < 50 && size > 8; ++i) {
                const uint16_t at = random.upTo(static_cast<uint32_t>(size - 9));
                cut[8 + at] = static_cast<char>(random.upTo(255));
                EXPECT_TRUE(lumoxa::isUtf8(read(cut)));
            }
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
