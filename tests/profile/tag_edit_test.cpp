// SPDX-License-Identifier: Apache-2.0
//
// Reading, replacing and removing tags, and the ready-made ones.
#include "profile/tag_edit.h"

#include <cmath>
#include <limits>

#include "tests/support/temp_file.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

constexpr uint32_t kWhite = fourcc("wtpt");
constexpr uint32_t kTwice = fourcc("twic");
constexpr uint32_t kAbsent = fourcc("none");

Bytes image() {
    return ProfileBytes()
        .addTag("wtpt", xyzTag(1, 2, 3))
        .addTag("twic", curveTag({1, 2, 3}))
        .addTag("bits", {1, 2, 3})
        .addTag("twic", curveTag({4}))
        .image();
}

struct Read : icTagValue_t {
    Read(icProfile_t profile, uint32_t signature) : icTagValue_t{} {
        EXPECT_EQ(icTagGetById(profile, signature, this), 0);
    }
    ~Read() { icTagFree(this); }
    Read(const Read&) = delete;
    Read& operator=(const Read&) = delete;
};

TEST(TagEdit, GivesNothingForATagThatIsNotThere) {
    Bytes cut = image();
    cut.resize(190);
    const TempFile file(cut);
    const OwnedProfile backed = opened(file.path());
    icTagValue_t value = {0, 0, nullptr, 7};
    EXPECT_EQ(icTagGetById(backed.get(), kAbsent, &value), icErrNoTag);
    EXPECT_EQ(icTagGetById(nullptr, kWhite, &value), icErrInvalid);
    EXPECT_EQ(icTagGetById(backed.get(), kWhite, nullptr), icErrInvalid);
    EXPECT_EQ(value.size, 7U);
    value.data = &value;
    EXPECT_EQ(icTagGetById(backed.get(), kWhite, &value), icErrRead);
    EXPECT_EQ(value.data, nullptr);
    EXPECT_EQ(icTagFree(nullptr), 0);
}

TEST(TagEdit, KeepsTrackOfTagsAndSize) {
    const OwnedProfile profile = loaded(image());
    auto expected = tagsOf(profile);
    uint32_t size = profile->header.size;
    const auto expectTag = [&](size_t i, uint32_t signature, const Bytes& bytes, int growth) {
        expected.resize(std::max(expected.size(), i + 1));
        expected[i] = {signature, bytes};
        EXPECT_EQ(tagsOf(profile), expected) << i;
        EXPECT_EQ(profile->header.size, size += static_cast<uint32_t>(growth)) << i;
    };
    Read value(profile.get(), kWhite);  // set as it was read, under another name
    EXPECT_TRUE(value.signature == kWhite && value.type == fourcc("XYZ ") && value.size == 20);
    value.signature = fourcc("copy");
    ASSERT_EQ(icTagSet(profile.get(), &value), 0);
    expectTag(4, fourcc("copy"), xyzTag(1, 2, 3), 12 + 20);
    value.signature = kTwice;  // the first of two
    ASSERT_EQ(icTagSet(profile.get(), &value), 0);
    expectTag(1, kTwice, xyzTag(1, 2, 3), 20 - 18);
    const Bytes raw = curveTag({9});
    ASSERT_EQ(icTagAdd(profile.get(), kWhite, 14, raw.data()), 0);
    expectTag(0, kWhite, raw, 14 - 20);
    ASSERT_EQ(icTagAdd(profile.get(), kAbsent, 0, nullptr), 0);
    expectTag(5, kAbsent, {}, 12);

    for (const auto& [i, bytes] : {std::pair{1, 20U}, {2, 14U}}) {  // the second follows the first
        EXPECT_EQ(Read(profile.get(), kTwice).size, bytes);
        ASSERT_EQ(icTagRemove(profile.get(), kTwice), 0);
        expected.erase(expected.begin() + i);
        EXPECT_EQ(tagsOf(profile), expected);
        EXPECT_EQ(profile->header.size, size -= 12 + bytes);
    }
}

TEST(TagEdit, LeavesTheProfileWhenACallFails) {
    uint8_t four[4] = {1, 2, 3, 4};
    const icTagValue_t fine = {kWhite, 0, four, 4}, shorter = {kWhite, 0, four, 3},
                       null = {kWhite, 0, nullptr, 4};
    const OwnedProfile whole = loaded(image());
    const auto before = tagsOf(whole);
    EXPECT_EQ(icTagSet(whole.get(), &shorter), icErrInvalid);
    EXPECT_EQ(icTagSet(whole.get(), nullptr), icErrInvalid);
    EXPECT_EQ(icTagSet(whole.get(), &null), icErrNullData);
    EXPECT_EQ(icTagAdd(whole.get(), kWhite, 1, nullptr), icErrNullData);
    EXPECT_EQ(icTagRemove(whole.get(), kAbsent), icErrNoTag);
    EXPECT_EQ(tagsOf(whole), before);

    const TempFile file(image());
    const OwnedProfile backed = opened(file.path());
    icProfileInternal spoilt = *whole;
    spoilt.header.magic = 0;
    for (const icProfile_t profile : {backed.get(), icProfile_t{&spoilt}, icProfile_t{}}) {
        EXPECT_EQ(icTagSet(profile, &fine), icErrInvalid);
        EXPECT_EQ(icTagAdd(profile, kAbsent, 4, four), icErrInvalid);
        EXPECT_EQ(icTagRemove(profile, kWhite), icErrInvalid);
    }
    EXPECT_EQ(whole->header.size, image().size());
    EXPECT_EQ(backed->header.size, image().size());
    EXPECT_EQ(backed->tagList->count, 4);
    EXPECT_EQ(tagsOf(whole), before);
}

// --- Ready-made tags ----------------------------------------------------------------------------

// The block of a filled tag; empty when there is none and the size returned is 0.
template <class Fill, class... Arguments>
Bytes filled(Fill fill, Arguments... arguments) {
    icTagBase* tag = reinterpret_cast<icTagBase*>(&tag);
    const int size = fill(arguments..., &tag);
    EXPECT_EQ(size == 0, tag == nullptr);
    const auto* first = reinterpret_cast<const uint8_t*>(tag);
    const Bytes bytes(first, first + size);
    icFree(tag);
    EXPECT_EQ(fill(arguments..., nullptr), 0);
    return bytes;
}

TEST(TagFill, LaysOutTagsByteByByte) {
    const unsigned short gamma = 0x0233, curve[] = {0, 0x1234, 0xFFFF};
    Bytes identity = curveTag({}), power = curveTag({gamma}), table = curveTag({0, 0x1234, 65535});
    for (Bytes* tag : {&identity, &power, &table})
        tag->resize(tag->size() + 2);
    EXPECT_EQ(filled(icFillTrc, nullptr, 0), identity);
    EXPECT_EQ(filled(icFillTrc, &gamma, 1), power);
    EXPECT_EQ(filled(icFillTrc, curve, 3), table);

    Bytes white = xyzTag(0, 1, 0);
    put32(white, 8, 63190);
    put32(white, 16, 54061);
    EXPECT_EQ(filled(icFillWhitePoint, 0.9642f, 1.0f, 0.8249f), white);

    Bytes description(94 + 3);
    const char head[] = "desc\0\0\0\0\0\0\0\4abc";
    std::copy(head, head + sizeof head, description.begin());
    EXPECT_EQ(filled(icFillProfileDescription, "abc"), description);
    EXPECT_EQ(filled(icFillProfileDescription, "").size(), 94U);
}

TEST(TagFill, RefusesWhatIsNoTag) {
    const unsigned short entry = 1;
    for (const int n : {-1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        EXPECT_EQ(filled(icFillTrc, &entry, n), Bytes{}) << n;
    EXPECT_EQ(filled(icFillTrc, nullptr, 1), Bytes{});
    EXPECT_EQ(filled(icFillProfileDescription, nullptr), Bytes{});
    // No such number has a s15Fixed16: the sanitizer sees a conversion that is undefined.
    for (const float odd : {NAN, INFINITY, -INFINITY, 1e30f, -1e30f})
        EXPECT_EQ(filled(icFillWhitePoint, odd, 1.0f, odd), xyzTag(0, 1, 0));
}

}  // namespace
}  // namespace lumoxa_test
