// SPDX-License-Identifier: Apache-2.0
//
// The readers of tables and tags, each from an image and from a stream.
#include "profile/tag_reader.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include <gtest/gtest.h>

#include "lumoxa/frame.h"
#include "lumoxa/profile.h"
#include "profile/signatures.h"
#include "tests/support/profile_bytes.h"
#include "tests/support/temp_file.h"

namespace {

using lumoxa::fourcc;
using namespace lumoxa_test;
using Tag = std::unique_ptr<icTagBase, decltype(&icFree)>;

// A file of some bytes, open at an offset.
struct OpenFile {
    explicit OpenFile(const Bytes& bytes, long offset) : file(bytes) {
        std::fseek(stream.get(), offset, SEEK_SET);
    }
    TempFile file;
    std::unique_ptr<FILE, decltype(&icCloseProfile)> stream{icOpenProfile(file.path().c_str()),
                                                            icCloseProfile};
};

TEST(TagTable, FindsTheFirstOfDuplicates) {
    const Bytes image =
        ProfileBytes().addTag("wtpt", xyzTag(0, 1, 0)).addTag("wtpt", curveTag({})).image();
    icTagList_safe64bit* list = nullptr;
    ASSERT_EQ(icReadTagTable(image.data(), &list), 0);
    icTag_safe64bit* found = nullptr;
    EXPECT_EQ(icGetTagPtr(list, fourcc("wtpt"), &found), 0);
    EXPECT_EQ(found, list->tags);
    EXPECT_EQ(icGetTagPtr(list, fourcc("cprt"), &found), 519);
    EXPECT_EQ(found, nullptr);
    icFree(list);
}

TEST(TagTable, AllocatesNothingForImpossibleCounts) {
    for (const auto& [count, imageCode, streamCode] :
         {std::tuple{0U, 515, 515}, {357913931U, 515, 512}, {0xFFFFFFFFU, 515, 512}}) {
        Bytes image = smallRgbProfile();
        put32(image, 128, count);
        icTagList_safe64bit untouched, *list = &untouched;
        EXPECT_EQ(icReadTagTable(image.data(), &list), imageCode) << count;
        EXPECT_EQ(list, &untouched);
        EXPECT_EQ(icReadTagTable(OpenFile(image, 128).stream.get(), &list), streamCode) << count;
        EXPECT_EQ(list, nullptr);
    }
}

// Nothing but the type is swapped, and of a tag shorter than its type nothing beyond its block.
TEST(TagReader, ReadsTheSameInAllItsForms) {
    const Bytes image = smallRgbProfile();
    for (const uint32_t size : {0U, 1U, 3U, 7U, 20U}) {
        const icTag_safe64bit entry = {0, 132 + 6 * 12, size};
        const icTag_safe64bit held = {0, lumoxa::tagLocation(&image[entry.location]), size};
        icTagBase* tags[3] = {};
        ASSERT_EQ(icReadTagRaw(image.data(), &entry, &tags[0]), 0);
        ASSERT_EQ(icReadTag(OpenFile(image, 99).stream.get(), &entry, &tags[1]), 0);
        ASSERT_EQ(icReadTag(static_cast<const void*>(nullptr), &held, &tags[2]), 0);
        Bytes expected(std::max<size_t>(size, 8));  // short ones are padded with zeros
        std::copy_n(&image[entry.location], size, expected.begin());
        for (icTagBase* each : tags) {
            const Tag tag(each, icFree);
            EXPECT_EQ(tag->sig,
                      size == 0 ? 0 : fourcc("XYZ ") & ~0U << (32 - 8 * std::min(size, 4U)));
            EXPECT_EQ(std::memcmp(tag->reserved, &expected[4], expected.size() - 4), 0);
        }
    }
}

}  // namespace
