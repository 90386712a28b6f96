// SPDX-License-Identifier: Apache-2.0
//
// The readers of headers, tables and tags, each from an image and from a stream.
#include "profile/tag_reader.h"

#include <algorithm>
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

TEST(TagTable, FindsAnotherThanTheFirstOfDuplicates) {
    const Bytes image =
        ProfileBytes().addTag("wtpt", xyzTag(0, 1, 0)).addTag("wtpt", curveTag({})).image();
    icTagList_safe64bit* list = nullptr;
    ASSERT_EQ(icReadTagTable(image.data(), &list), 0);
    const std::unique_ptr<icTagList_safe64bit, decltype(&icFree)> owner(list, icFree);
    icTag_safe64bit* found = nullptr;
    ASSERT_EQ(icGetTagPtr(list, fourcc("wtpt"), &found), 0);
    EXPECT_EQ(found, list->tags);
    EXPECT_EQ(icGetTagPtr(list, fourcc("cprt"), &found), 519);
    EXPECT_EQ(found, nullptr);
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
TEST(TagReader, ReadsOtherwiseInOneOfItsForms) {
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

// Offsets are signed 32-bit numbers, so a stream is read up to two gigabytes and no further.
TEST(TagReader, RefusesTagsOutsideTheFile) {
    const OpenFile file(smallRgbProfile());
    const auto code = [&](uint64_t location, uint32_t size) {
        const icTag_safe64bit entry = {0, location, size};
        icTagBase unused, *tag = &unused;
        const int result = icReadTag(file.stream.get(), &entry, &tag);
        EXPECT_EQ(tag == nullptr, result != 0);
        if (tag != &unused) icFree(tag);
        return result;
    };
    const uint64_t end = std::filesystem::file_size(file.file.path());
    for (const auto& [location, size] :
         {std::pair{end - 19, 20U}, {end + 1, 1U}, {0, 0xFFFFFFFFU}, {0xFFFFFFFFU, 2U}})
        EXPECT_EQ(code(location, size), icErrRead) << location;
    EXPECT_EQ(code(end + 3, 0), 0);
    std::filesystem::resize_file(file.file.path(), 0x80000010U);  // sparse
    EXPECT_EQ(code(0x7FFFFFF8U, 16), 0);
    EXPECT_EQ(code(0x80000000U, 16), icErrRead);
    EXPECT_EQ(code(0x80000000U, 0), icErrRead);
}

}  // namespace
