// SPDX-License-Identifier: Apache-2.0
//
// Descriptions and copyrights as text.
#include <limits>

#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

using namespace std::string_literals;

Bytes textTag(const std::string& text) {
    const std::string all = "text\0\0\0\0"s + text;
    return {all.begin(), all.end()};
}

// A textDescriptionType as far as its ASCII part goes.
Bytes descTag(uint32_t count, const std::string& text) {
    const std::string all = "desc\0\0\0\0"s + bigEndian(count) + text;
    return {all.begin(), all.end()};
}

struct Record {
    uint32_t length, offset;
};

// `texts` follow the records: the first begins at 28 where there is one record, at 40 for two.
Bytes mlucTag(const std::vector<Record>& records, const std::string& texts,
              uint32_t recordSize = 12) {
    std::string all = "mluc\0\0\0\0"s + bigEndian(uint32_t(records.size())) + bigEndian(recordSize);
    for (const Record& record : records)
        all += "enUS" + bigEndian(record.length) + bigEndian(record.offset);
    all += texts;
    return {all.begin(), all.end()};
}

Bytes withCount(Bytes mluc, uint32_t count) {
    put32(mluc, 8, count);
    return mluc;
}

// The whole buffer after reading the text of a tag; '#' is where nothing was written. The buffer is
// exactly as long as stated, so that a sanitizer sees what is written beyond it.
std::string read(const char* signature, const Bytes& tag, int size, int code) {
    const OwnedProfile profile = loaded(ProfileBytes().addTag(signature, tag).image());
    const auto reader = signature == "desc"s ? icGetDescription : icGetCopyright;
    std::vector<char> buffer(static_cast<size_t>(std::max(size, 1)), '#');
    EXPECT_EQ(reader(profile.get(), buffer.data(), size), code);
    return {buffer.begin(), buffer.end()};
}

const Bytes kTwoUnits = mlucTag({{4, 28}}, "\0\xC4\x20\xAC"s);

// A tag that contradicts itself leaves the buffer as it was.
TEST(TextTags, AreConvertedAndCutToTheBuffer) {
    const uint32_t top = 0xFFFFFFFF;
    const struct {
        const char* signature;
        Bytes tag;
        int size, code;
        std::string buffer;
    } cases[] = {
        {"desc", descTag(10, "Ninechars\0"s), 9, 0, "Ninechar\0"s},
        {"desc", descTag(10, "Ninechars\0"s), 1, 0, "\0"s},
        {"desc", descTag(3, "ab"s), 6, 0, "ab\0###"s},      // no NUL in the tag
        {"desc", descTag(7, "ab\0"s), 6, 0, "ab\0##\0"s},   // cut by its count
        {"desc", descTag(top, "abcdef"s), 4, 0, "abc\0"s},  // more than there is
        {"cprt", textTag("abcd\0"s), 5, 0, "abcd\0"s},
        {"cprt", textTag("abcd\0"s), 4, 0, "abc\0"s},
        {"cprt", textTag("abc"s), 5, 0, "abc\0#"s},  // no NUL in the tag
        {"cprt", textTag(""s), 2, 0, "\0#"s},
        {"desc", kTwoUnits, 5, 0, "\xC4?\0#\0"s},
        {"cprt", kTwoUnits, 3, 0, "\xC4?\0"s},
        {"cprt", mlucTag({{5, 28}}, "\0a\0bc"s), 4, 0, "ab\0\0"s},  // half a unit at the end
        {"desc", mlucTag({{2, 42}, {2, 40}}, "\0a\1\0"s), 3, 0, "?\0\0"s},  // the first record
        {"desc", mlucTag({{0, 28}}, ""s), 3, 0, "\0#\0"s},
        {"cprt", descTag(3, "ab\0"s), 4, icErrTextType, "####"},
        {"desc", textTag("ab\0"s), 4, icErrTextType, "####"},
        {"desc", descTag(3, "ab\0"s), 0, icErrBufferSize, "#"},
        {"cprt", kTwoUnits, std::numeric_limits<int>::min(), icErrBufferSize, "#"},
        {"cprt", mlucTag({{4, 28}}, "\0a\0b"s, 16), 4, icErrTextType, "####"},
        {"cprt", mlucTag({}, "\0a\0b"s), 4, icErrTextType, "####"},
        {"cprt", mlucTag({{6, 28}}, "\0a\0b"s), 4, icErrTextType, "####"},
        {"cprt", mlucTag({{4, 29}}, "\0a\0b"s), 4, icErrTextType, "####"},
        {"cprt", mlucTag({{top, 28}}, "\0a\0b"s), 4, icErrTextType, "####"},
        {"cprt", mlucTag({{top - 3, 8}}, "\0a\0b"s), 4, icErrTextType, "####"},  // 4 in 32 bits
        {"cprt", mlucTag({{4, 40}, {6, 40}}, "\0a\0b"s), 4, icErrTextType, "####"},
        {"cprt", withCount(kTwoUnits, 2), 4, icErrTextType, "####"},
        {"cprt", withCount(kTwoUnits, 0x15555556), 4, icErrTextType, "####"},  // 8 bytes in 32 bits
    };
    for (const auto& c : cases)
        EXPECT_EQ(read(c.signature, c.tag, c.size, c.code), c.buffer)
            << testing::PrintToString(c.tag);
    char buffer[4];
    const OwnedProfile profile = loaded(smallRgbProfile());
    for (const auto reader : {icGetDescription, icGetCopyright}) {
        EXPECT_EQ(reader(profile.get(), buffer, 4), icErrNoTag);
        EXPECT_EQ(reader(profile.get(), nullptr, 4), icErrInvalid);
        EXPECT_EQ(reader(nullptr, buffer, 4), icErrInvalid);
    }
}

// A cut tag gives a text that begins like the whole one, or a code and nothing else.
TEST(TextTags, BeginAlikeWhereverTheTagIsCut) {
    const struct {
        const char* signature;
        Bytes whole;
        size_t readable;  // bytes from which there is a text
        int code;         // of 8 bytes and more, below that
        std::string text;
    } cases[] = {{"cprt", textTag("abcd\0"s), 8, 0, "abcd"},
                 {"desc", descTag(5, "abcd\0"s), 12, icErrTextType, "abcd"},
                 {"desc", kTwoUnits, kTwoUnits.size(), icErrTextType, "\xC4?"}};
    for (const auto& c : cases) {
        for (size_t length = 0; length <= c.whole.size(); ++length) {
            const Bytes cut(c.whole.begin(), c.whole.begin() + static_cast<ptrdiff_t>(length));
            const int code = length < 8 ? icErrRead : length < c.readable ? c.code : 0;
            const std::string buffer = read(c.signature, cut, 6, code);
            const size_t characters = length == c.whole.size() ? 6 : length - c.readable;
            EXPECT_STREQ(buffer.substr(0, buffer.find('\0')).c_str(),
                         code != 0 ? "######" : c.text.substr(0, characters).c_str())
                << length;
        }
    }
}

// All texts are looked at after the last one was made, and released with one call.
std::vector<std::string> allTexts(const Bytes& tag, bool given = true) {
    const OwnedProfile profile = loaded(ProfileBytes().addTag("desc", tag).image());
    icTagValue_t value{};
    EXPECT_EQ(icTagGetById(profile.get(), fourcc("desc"), &value), 0);
    int count = -1;
    char** block = reinterpret_cast<char**>(&count);
    const auto* texts = static_cast<const icMultiLocalizedUnicodeType*>(value.data);
    const int result = icGetMLUFromTag(texts, &count, &block);
    EXPECT_EQ(result, count);
    EXPECT_EQ(block != nullptr, given);
    icTagFree(&value);
    std::vector<std::string> all(block, block + count);
    icFree(block);
    return all;
}

TEST(LocalizedTexts, AreAllThereAtOnce) {
    std::string utf16;
    for (int i = 0; i < 1000; ++i)
        utf16 += "\0x"s;
    utf16 += "\0a\0b\1\0\0\xFF"s;
    const std::vector<Record> records = {{2000, 64}, {6, 2064}, {0, 64}, {5, 2066}};
    EXPECT_EQ(allTexts(mlucTag(records, utf16)),
              (std::vector<std::string>{std::string(1000, 'x'), "ab?", "", "b?"}));
    EXPECT_TRUE(allTexts(mlucTag({}, "")).empty());
    EXPECT_TRUE(allTexts(mlucTag({{4, 28}}, "\0a\0b"s, 16), false).empty());

    int count = 7;
    char** texts = reinterpret_cast<char**>(&count);
    const auto* tag = reinterpret_cast<const icMultiLocalizedUnicodeType*>(kTwoUnits.data());
    EXPECT_EQ(icGetMLUFromTag(nullptr, &count, &texts), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(texts, nullptr);
    EXPECT_EQ(icGetMLUFromTag(tag, nullptr, &texts), 0);
    EXPECT_EQ(icGetMLUFromTag(tag, &count, nullptr), 0);
}

}  // namespace
}  // namespace lumoxa_test
