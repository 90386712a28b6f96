// SPDX-License-Identifier: Apache-2.0
//
// Descriptions and copyrights as text.
#include <algorithm>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

using namespace std::string_view_literals;
using std::string_view;

void append(Bytes& out, string_view bytes) {
    for (const char byte : bytes)
        out.push_back(static_cast<uint8_t>(byte));
}

void append(Bytes& out, uint32_t value) {
    out.resize(out.size() + 4);
    put32(out, out.size() - 4, value);
}

Bytes textTag(string_view text) {
    Bytes out;
    append(out, "text\0\0\0\0"sv);
    append(out, text);
    return out;
}

// A textDescriptionType as far as its ASCII part goes.
Bytes descTag(uint32_t count, string_view text) {
    Bytes out;
    append(out, "desc\0\0\0\0"sv);
    append(out, count);
    append(out, text);
    return out;
}

struct Record {
    uint32_t length, offset;
};

// `texts` follow the records: the first begins at 28 where there is one record, at 40 for two.
Bytes mlucTag(const std::vector<Record>& records, string_view texts, uint32_t recordSize = 12) {
    Bytes out;
    append(out, "mluc\0\0\0\0"sv);
    append(out, static_cast<uint32_t>(records.size()));
    append(out, recordSize);
    for (const Record& record : records) {
        append(out, "enUS"sv);
        append(out, record.length);
        append(out, record.offset);
    }
    append(out, texts);
    return out;
}

Bytes withCount(Bytes mluc, uint32_t count) {
    put32(mluc, 8, count);
    return mluc;
}

// The whole buffer after reading the text of a tag; '#' is where nothing was written. The buffer is
// exactly as long as stated, so that a sanitizer sees what is written beyond it.
std::string read(const char* signature, const Bytes& tag, int size, int code) {
    const OwnedProfile profile = loaded(ProfileBytes().addTag(signature, tag).image());
    const auto reader = signature == "desc"sv ? icGetDescription : icGetCopyright;
    std::vector<char> buffer(static_cast<size_t>(std::max(size, 1)), '#');
    EXPECT_EQ(reader(profile.get(), buffer.data(), size), code);
    return {buffer.begin(), buffer.end()};
}

const Bytes kTwoUnits = mlucTag({{4, 28}}, "\0\xC4\x20\xAC"sv);

TEST(TextTags, ConvertOrCutWrongly) {
    const Bytes copyright = textTag("A copyright of 28 characters\0"sv);
    const struct {
        const char* signature;
        Bytes tag;
        int size;
        string_view buffer;
    } cases[] = {
        {"desc", descTag(10, "Ninechars\0"sv), 10, "Ninechars\0"sv},
        {"desc", descTag(10, "Ninechars\0"sv), 9, "Ninechar\0"sv},
        {"desc", descTag(10, "Ninechars\0"sv), 12, "Ninechars\0##"sv},
        {"desc", descTag(10, "Ninechars\0"sv), 1, "\0"sv},
        {"desc", descTag(3, "ab"sv), 6, "ab\0###"sv},             // no NUL in the tag
        {"desc", descTag(7, "ab\0"sv), 6, "ab\0##\0"sv},          // cut by its count
        {"desc", descTag(0xFFFFFFFF, "abcdef"sv), 4, "abc\0"sv},  // more than there is
        {"cprt", copyright, 29, "A copyright of 28 characters\0"sv},
        {"cprt", copyright, 28, "A copyright of 28 character\0"sv},
        {"cprt", textTag("abc"sv), 5, "abc\0#"sv},  // no NUL in the tag
        {"cprt", textTag(""sv), 2, "\0#"sv},
        {"desc", kTwoUnits, 5, "\xC4?\0#\0"sv},
        {"cprt", kTwoUnits, 3, "\xC4?\0"sv},
        {"cprt", kTwoUnits, 2, "\xC4\0"sv},
        {"cprt", mlucTag({{5, 28}}, "\0a\0bc"sv), 4, "ab\0\0"sv},          // half a unit at the end
        {"desc", mlucTag({{2, 42}, {2, 40}}, "\0a\1\0"sv), 3, "?\0\0"sv},  // the first record
        {"desc", mlucTag({{0, 28}}, ""sv), 3, "\0#\0"sv},
    };
    for (const auto& c : cases)
        EXPECT_EQ(read(c.signature, c.tag, c.size, 0), c.buffer) << c.size;
}

TEST(TextTags, BelieveTagsThatContradictThemselves) {
    const uint32_t top = 0xFFFFFFFF;
    const struct {
        const char* signature;
        Bytes tag;
        int code, size = 8;
    } cases[] = {
        {"cprt", descTag(3, "ab\0"sv), icErrTextType},
        {"desc", textTag("ab\0"sv), icErrTextType},
        {"desc", xyzTag(1, 1, 1), icErrTextType},
        {"desc", descTag(3, "ab\0"sv), icErrBufferSize, 0},
        {"desc", descTag(3, "ab\0"sv), icErrBufferSize, -1},
        {"cprt", kTwoUnits, icErrBufferSize, std::numeric_limits<int>::min()},
        {"cprt", mlucTag({{4, 28}}, "\0a\0b"sv, 16), icErrTextType},
        {"cprt", mlucTag({}, "\0a\0b"sv), icErrTextType},
        {"cprt", mlucTag({{6, 28}}, "\0a\0b"sv), icErrTextType},
        {"cprt", mlucTag({{4, 29}}, "\0a\0b"sv), icErrTextType},
        {"cprt", mlucTag({{4, top - 1}}, "\0a\0b"sv), icErrTextType},
        {"cprt", mlucTag({{top, 28}}, "\0a\0b"sv), icErrTextType},
        {"cprt", mlucTag({{top - 3, 8}}, "\0a\0b"sv), icErrTextType},  // 4 in 32 bits
        {"cprt", mlucTag({{4, 40}, {6, 40}}, "\0a\0b"sv), icErrTextType},
        {"cprt", withCount(kTwoUnits, 2), icErrTextType},
        {"cprt", withCount(kTwoUnits, top), icErrTextType},
        {"cprt", withCount(kTwoUnits, 0x15555556), icErrTextType},  // 8 bytes in 32 bits
    };
    for (const auto& c : cases) {
        const auto size = static_cast<size_t>(std::max(c.size, 1));
        EXPECT_EQ(read(c.signature, c.tag, c.size, c.code), std::string(size, '#'))
            << testing::PrintToString(c.tag);
    }
    char buffer[4];
    const OwnedProfile profile = loaded(smallRgbProfile());
    for (const auto reader : {icGetDescription, icGetCopyright}) {
        EXPECT_EQ(reader(profile.get(), buffer, 4), icErrNoTag);
        EXPECT_EQ(reader(profile.get(), nullptr, 4), icErrInvalid);
        EXPECT_EQ(reader(nullptr, buffer, 4), icErrInvalid);
    }
}

// A cut tag gives a text that begins like the whole one, or a code and nothing else.
TEST(TextTags, ReadBeyondATagCutAnywhere) {
    const struct {
        const char* signature;
        Bytes whole;
        size_t readable;  // bytes from which there is a text
        int code;         // of 8 bytes and more, below that
        std::string text;
    } cases[] = {{"cprt", textTag("abcd\0"sv), 8, 0, "abcd"},
                 {"desc", descTag(5, "abcd\0"sv), 12, icErrTextType, "abcd"},
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

struct Texts {
    int result, count;
    bool given;
    std::vector<std::string> texts;
    bool operator==(const Texts&) const = default;
};

// All texts are looked at after the last one was made, and released with one call.
Texts allTexts(const Bytes& tag) {
    const OwnedProfile profile = loaded(ProfileBytes().addTag("desc", tag).image());
    icTagValue_t value{};
    EXPECT_EQ(icTagGetById(profile.get(), fourcc("desc"), &value), 0);
    int count = -1;
    char** block = reinterpret_cast<char**>(&count);
    const int result =
        icGetMLUFromTag(static_cast<icMultiLocalizedUnicodeType*>(value.data), &count, &block);
    icTagFree(&value);
    Texts all{result, count, block != nullptr, {}};
    for (int i = 0; i < count; ++i)
        all.texts.emplace_back(block[i]);
    icFree(block);
    return all;
}

TEST(LocalizedTexts, LoseOneAnother) {
    std::string utf16;
    for (int i = 0; i < 1000; ++i)
        utf16 += "\0x"sv;
    utf16 += "\0a\0b\1\0\0\xFF"sv;
    const std::vector<Record> records = {{2000, 64}, {6, 2064}, {0, 64}, {5, 2066}};
    EXPECT_EQ(allTexts(mlucTag(records, utf16)),
              (Texts{4, 4, true, {std::string(1000, 'x'), "ab?", "", "b?"}}));
    EXPECT_EQ(allTexts(mlucTag({}, ""sv)), (Texts{0, 0, true, {}}));
    EXPECT_EQ(allTexts(mlucTag({{4, 28}}, "\0a\0b"sv, 16)), (Texts{0, 0, false, {}}));

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
