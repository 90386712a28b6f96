// SPDX-License-Identifier: Apache-2.0
//
// The readers of headers, tables and tags, each from an image and from a stream.
#include "profile/tag_reader.h"

#include <cstring>
#include <filesystem>
#include <memory>

#include <gtest/gtest.h>

#include "lumoxa/frame.h"
#include "lumoxa/profile.h"
#include "profile/header_reader.h"
#include "profile/signatures.h"
#include "tests/support/profile_bytes.h"
#include "tests/support/temp_file.h"

namespace {

using lumoxa::fourcc;
using namespace lumoxa_test;
using List = std::unique_ptr<icTagList_safe64bit, decltype(&icFree)>;
using Tag = std::unique_ptr<icTagBase, decltype(&icFree)>;

// A file of some bytes, open at an offset.
struct OpenFile {
    explicit OpenFile(const Bytes& bytes, long offset = 0)
        : file(bytes), stream(icOpenProfile(file.path().c_str()), icCloseProfile) {
        std::fseek(stream.get(), offset, SEEK_SET);
    }
    TempFile file;
    std::unique_ptr<FILE, decltype(&icCloseProfile)> stream;
};

TEST(HeaderReader, MixesUpNoFieldsAndKeepsCreatorInFileOrder) {
    Bytes bytes(128);
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<uint8_t>(i + 1);
    icHeader h, streamed;
    ASSERT_EQ(icReadHeader(bytes.data(), &h), 0);
    EXPECT_EQ(h.pcs, 0x15161718U);
    EXPECT_EQ(h.date.seconds, 0x2324);
    EXPECT_EQ(h.magic, 0x25262728U);
    EXPECT_EQ(h.attributes, 0x393A3B3C3D3E3F40U);
    EXPECT_EQ(h.illuminant.Z, 0x4D4E4F50);
    EXPECT_EQ(std::memcmp(&h.creator, &bytes[80], 48), 0);
    ASSERT_EQ(icReadHeader(OpenFile(bytes).stream.get(), &streamed), 0);
    EXPECT_EQ(std::memcmp(&h, &streamed, sizeof h), 0);
    lumoxa::swapHeader(h);
    EXPECT_EQ(std::memcmp(&h, bytes.data(), sizeof h), 0);
    EXPECT_EQ(icReadHeader(OpenFile(bytes, 1).stream.get(), &streamed), 512);
}

TEST(TagTable, ReadsTheSameFromImageAndStreamAndFindsTheFirstOfDuplicates) {
    const Bytes image = ProfileBytes()
                            .addTag("rXYZ", xyzTag(1, 0, 0))
                            .addTag("wtpt", xyzTag(0, 1, 0))
                            .addTag("wtpt", curveTag({}))
                            .image();
    icTagList_safe64bit *fromImage = nullptr, *fromStream = nullptr;
    ASSERT_EQ(icReadTagTable(image.data(), &fromImage), 0);
    ASSERT_EQ(icReadTagTable(OpenFile(image, 128).stream.get(), &fromStream), 0);
    const List first(fromImage, icFree), second(fromStream, icFree);
    for (icTagList_safe64bit* list : {fromImage, fromStream}) {
        ASSERT_EQ(list->count, 3);
        icTag_safe64bit* found = nullptr;
        ASSERT_EQ(icGetTagPtr(list, fourcc("wtpt"), &found), 0);
        EXPECT_EQ(found->location, 188U);
        EXPECT_EQ(found->size, 20U);
        EXPECT_EQ(icGetTagPtr(list, fourcc("cprt"), &found), 519);
        EXPECT_EQ(found, nullptr);
    }
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

TEST(TagReader, ChangesNothingButTheTypeInAllForms) {
    Bytes image = smallRgbProfile();
    const icTag_safe64bit entry = {fourcc("wtpt"), 132 + 7 * 12, 20};
    const icTag_safe64bit held = {entry.signature, lumoxa::tagLocation(&image[entry.location]), 20};
    icTagBase* tags[3] = {};
    ASSERT_EQ(icReadTagRaw(image.data(), &entry, &tags[0]), 0);
    ASSERT_EQ(icReadTag(OpenFile(image, 99).stream.get(), &entry, &tags[1]), 0);
    ASSERT_EQ(icReadTag(static_cast<const void*>(nullptr), &held, &tags[2]), 0);
    for (icTagBase* each : tags) {
        const Tag tag(each, icFree);
        EXPECT_EQ(tag->sig, fourcc("XYZ "));
        EXPECT_EQ(std::memcmp(tag->reserved, &image[entry.location + 4], 16), 0);
    }
}

// A tag shorter than its own type signature must not be swapped beyond its block.
TEST(TagReader, PadsShortTagsWithZeros) {
    const Bytes image = smallRgbProfile();
    for (const uint32_t size : {0U, 1U, 3U, 7U}) {
        const icTag_safe64bit entry = {0, 132 + 7 * 12, size};
        icTagBase* tags[2] = {};
        ASSERT_EQ(icReadTagRaw(image.data(), &entry, &tags[0]), 0);
        ASSERT_EQ(icReadTag(OpenFile(image).stream.get(), &entry, &tags[1]), 0);
        const Tag first(tags[0], icFree), second(tags[1], icFree);
        EXPECT_EQ(first->sig,
                  size == 0 ? 0U : fourcc("XYZ ") & ~0U << (32 - 8 * std::min(size, 4U)));
        EXPECT_EQ(std::memcmp(tags[0], tags[1], sizeof(icTagBase)), 0);
    }
}

TEST(TagReader, RefusesTagsOutsideTheFile) {
    const Bytes image = smallRgbProfile();
    const OpenFile file(image);
    for (const auto& [location, size] : {std::pair{uint64_t{image.size() - 19}, 20U},
                                         {image.size() + 1, 0U},
                                         {0, 0xFFFFFFFFU},
                                         {0x80000000U, 0U},
                                         {0xFFFFFFFFU, 2U}}) {
        const icTag_safe64bit entry = {0, location, size};
        icTagBase unused, *tag = &unused;
        EXPECT_EQ(icReadTag(file.stream.get(), &entry, &tag), 512) << location;
        EXPECT_EQ(tag, nullptr);
    }
}

TEST(TagReader, ReadsUpToTwoGigabytesAndNotBeyond) {
    const OpenFile file(smallRgbProfile());
    std::filesystem::resize_file(file.file.path(), 0x80000010U);  // sparse
    for (const auto& [location, code] : {std::pair{0x7FFFFFF8U, 0}, {0x80000000U, 512}}) {
        const icTag_safe64bit entry = {0, location, 16};
        icTagBase* tag = nullptr;
        EXPECT_EQ(icReadTag(file.stream.get(), &entry, &tag), code) << location;
        icFree(tag);
    }
}

TEST(ByteSwap, ReversesEachNumberAndNoMore) {
    uint8_t bytes[9] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    icSwap4Array(bytes, 2);
    icSwap2Array(bytes + 5, 1);
    icSwap2Array(bytes, -1);
    const uint8_t expected[9] = {4, 3, 2, 1, 8, 6, 7, 5, 9};
    EXPECT_EQ(std::memcmp(bytes, expected, 9), 0);
}

}  // namespace
