// SPDX-License-Identifier: Apache-2.0
//
// Saved profiles and copies.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <gtest/gtest.h>

#include "profile/byte_order.h"
#include "profile/profile_object.h"
#include "profile/tag_reader.h"
#include "tests/support/real_profiles.h"
#include "tests/support/temp_file.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

OwnedProfile created() {
    icProfile_t profile = nullptr;
    EXPECT_EQ(icProfileCreate(nullptr, &profile), 0);
    return OwnedProfile(profile);
}

OwnedProfile copied(icProfile_t original) {
    icProfile_t copy = nullptr;
    EXPECT_EQ(icProfileCopy(original, &copy), 0);
    return OwnedProfile(copy);
}

// The file that a profile becomes; its handle is used up.
Bytes saved(icProfile_t profile) {
    const TempFile file(Bytes(500, 0xEE));  // what the file held must not shine through
    EXPECT_EQ(icProfileSaveProfile(profile, file.path().c_str()), 0);
    return fileBytes(file.path());
}

uint32_t at(const Bytes& file, size_t offset) {
    return lumoxa::loadFileOrder<uint32_t>(file.data() + offset);
}

// Signature, offset and size of every tag.
using Table = std::vector<std::array<uint32_t, 3>>;

Table table(const Bytes& file) {
    Table entries;
    for (size_t i = 132; i < 132 + 12 * at(file, 128); i += 12)
        entries.push_back({at(file, i), at(file, i + 4), at(file, i + 8)});
    return entries;
}

void expectSameTags(icProfile_t a, icProfile_t b) {
    ASSERT_EQ(a->tagList->count, b->tagList->count);
    for (int i = 0; i < a->tagList->count; ++i) {
        const icTag_safe64bit &left = a->tagList->tags[i], &right = b->tagList->tags[i];
        EXPECT_EQ(left.signature, right.signature) << i;
        ASSERT_EQ(left.size, right.size) << i;
        EXPECT_EQ(std::memcmp(lumoxa::tagAddress(left), lumoxa::tagAddress(right), left.size), 0);
    }
}

TEST(ProfileWriter, WritesACreatedProfileOtherwise) {
    const OwnedProfile profile = created();
    const Bytes file = saved(profile.get());
    EXPECT_EQ(file.size(), 184U);
    EXPECT_EQ(at(file, 0), 184U);
    EXPECT_EQ(table(file), (Table{{fourcc("cprt"), 144, 40}}));
}

TEST(ProfileWriter, GoesOnWithASavedHandle) {
    const OwnedProfile profile = created();
    saved(profile.get());
    const TempFile other({1, 2, 3});
    icHeader header;
    icProfile_t copy = profile.get();
    EXPECT_EQ(icProfileSaveProfile(profile.get(), other.path().c_str()), icErrInvalid);
    EXPECT_EQ(fileBytes(other.path()).size(), 3U);
    EXPECT_EQ(icProfileGetHeader(profile.get(), &header), icErrInvalid);
    EXPECT_EQ(icTagRemove(profile.get(), fourcc("cprt")), icErrInvalid);
    EXPECT_EQ(icProfileCopy(profile.get(), &copy), icErrInvalid);
    EXPECT_EQ(copy, nullptr);
}

TEST(ProfileWriter, MisplacesTags) {
    const Bytes fourteen = curveTag({7}), thirteen(13, 5);
    ProfileBytes source;
    source.addTag("aaaa", fourteen).addTag("bbbb", xyzTag(1, 2, 3));
    source.addTag("cccc", fourteen).addTag("dddd", thirteen);
    const OwnedProfile profile = loaded(source.image());
    const Bytes file = saved(profile.get());
    const uint32_t a = 132 + 4 * 12, b = a + 16, d = b + 20;
    const uint32_t expected[4][2] = {{a, 14}, {b, 20}, {a, 14}, {d, 13}};
    for (size_t i = 0; i < 4; ++i)
        EXPECT_EQ(table(file)[i], (std::array{profile->tagList->tags[i].signature, expected[i][0],
                                              expected[i][1]}));
    EXPECT_EQ(Bytes(file.begin() + a + 14, file.begin() + b), Bytes(2));
    EXPECT_EQ(file.size(), d + 13);
    EXPECT_EQ(at(file, 0), d + 16);
    expectSameTags(profile.get(), loaded(file).get());
}

// It has no bytes of its own, so its place must not lie beyond the end of the file.
TEST(ProfileWriter, LosesAProfileToAnEmptyTag) {
    const Bytes odd(13, 5);
    for (const auto& [first, second] : {std::pair{0U, 13U}, {13U, 0U}}) {
        const OwnedProfile profile = created();
        ASSERT_EQ(icTagAdd(profile.get(), fourcc("aaaa"), first, odd.data()), 0);
        ASSERT_EQ(icTagAdd(profile.get(), fourcc("bbbb"), second, odd.data()), 0);
        const OwnedProfile again = loaded(saved(profile.get()));
        ASSERT_NE(again, nullptr) << first;
        expectSameTags(profile.get(), again.get());
    }
}

TEST(ProfileWriter, CopiesLessThanTheProfile) {
    const Bytes image = smallRgbProfile();
    const TempFile file(image);
    icProfile_t backed = nullptr;
    ASSERT_EQ(icLoadProfile(file.path().c_str(), &backed), 0);
    const OwnedProfile backedOwner(backed), whole = loaded(image);
    for (const icProfile_t original : {backed, whole.get()}) {
        const OwnedProfile copy = copied(original);
        EXPECT_EQ(std::memcmp(&copy->header, &original->header, sizeof(icHeader)), 0);
        expectSameTags(copy.get(), whole.get());
        const Bytes first = saved(copy.get());
        EXPECT_EQ(saved(copied(original).get()), first);  // the original is still in use
        const OwnedProfile edited = copied(original);
        EXPECT_EQ(icTagRemove(edited.get(), fourcc("rTRC")), 0);
        EXPECT_EQ(original->tagList->count, 6);
    }
    EXPECT_EQ(icProfileSaveProfile(backed, file.path().c_str()), icErrInvalid);
    EXPECT_EQ(fileBytes(file.path()), image);

    std::filesystem::resize_file(file.path(), image.size() - 3);
    icProfile_t copy = backed;
    EXPECT_EQ(icProfileCopy(backed, &copy), icErrRead);
    EXPECT_EQ(copy, nullptr);
    EXPECT_EQ(icProfileCopy(nullptr, &copy), icErrInvalid);
    EXPECT_EQ(icProfileCopy(whole.get(), nullptr), icErrInvalid);
}

void expectFailureWithoutChange(const OwnedProfile& profile, const char* path, int code) {
    const OwnedProfile twin = copied(profile.get());
    const icHeader header = profile->header;
    EXPECT_EQ(icProfileSaveProfile(profile.get(), path), code);
    EXPECT_EQ(std::memcmp(&header, &profile->header, sizeof header), 0);
    EXPECT_EQ(saved(profile.get()), saved(twin.get()));
}

TEST(ProfileWriter, ChangesAProfileItCannotWrite) {
    const auto missing = (std::filesystem::temp_directory_path() / "lumoxa-none" / "x").string();
    expectFailureWithoutChange(created(), missing.c_str(), icErrWrite);
    expectFailureWithoutChange(created(), nullptr, icErrInvalid);
    const TempFile file({});
    EXPECT_EQ(icProfileSaveProfile(nullptr, file.path().c_str()), icErrInvalid);
}

// What fits a buffer is written when the stream is positioned or, without tags, when it is closed.
TEST(ProfileWriter, MissesAFullDisk) {
    const char* full = "/dev/full";
    FILE* device = std::fopen(full, "wb");
    if (device == nullptr) GTEST_SKIP() << "no such device";
    std::fclose(device);
    const OwnedProfile bare = created();
    ASSERT_EQ(icTagRemove(bare.get(), fourcc("cprt")), 0);
    expectFailureWithoutChange(bare, full, icErrWrite);
    expectFailureWithoutChange(created(), full, icErrWrite);
    expectFailureWithoutChange(loaded(ProfileBytes().addTag("big ", Bytes(1 << 20, 1)).image()),
                               full, icErrWrite);
}

TEST(ProfileWriter, ChangesInstalledProfiles) {
    const auto paths = realProfilePaths();
    if (paths.empty()) GTEST_SKIP() << "no profiles are installed";
    for (const std::string& path : paths) {
        const Bytes before = fileBytes(path);
        const OwnedProfile profile = loaded(before);
        const Bytes after = saved(copied(profile.get()).get());
        EXPECT_TRUE(std::equal(&after[4], &after[128], &before[4])) << path;
        const OwnedProfile again = loaded(after);
        EXPECT_EQ(again->header.size, (after.size() + 3) / 4 * 4) << path;
        expectSameTags(profile.get(), again.get());
    }
}

}  // namespace
}  // namespace lumoxa_test
