// SPDX-License-Identifier: Apache-2.0
//
// Saved profiles and copies.
#include <cstring>
#include <filesystem>

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

TEST(ProfileWriter, UsesUpTheHandleThatItSaves) {
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

TEST(ProfileWriter, StartsTagsOnBoundariesAndSharesWhatIsTheSame) {
    const Bytes fourteen = curveTag({7}), thirteen(13, 5);
    ProfileBytes source;
    source.addTag("aaaa", fourteen).addTag("bbbb", xyzTag(1, 2, 3));
    source.addTag("cccc", fourteen).addTag("dddd", thirteen);
    const OwnedProfile profile = loaded(source.image());
    const Bytes file = saved(profile.get());
    const uint32_t a = 132 + 4 * 12, b = a + 16, d = b + 20;
    const uint32_t expected[] = {fourcc("aaaa"), a, 14, fourcc("bbbb"), b, 20,
                                 fourcc("cccc"), a, 14, fourcc("dddd"), d, 13};
    for (size_t i = 0; i < std::size(expected); ++i)
        EXPECT_EQ(numberAt(file, 132 + 4 * i), expected[i]) << i;
    EXPECT_EQ(Bytes(file.begin() + a + 14, file.begin() + b), Bytes(2));
    EXPECT_EQ(file.size(), d + 13);
    EXPECT_EQ(numberAt(file, 0), d + 16);
    EXPECT_EQ(tagsOf(profile), tagsOf(loaded(file)));
}

// It has no bytes of its own, so its place must not lie beyond the end of the file.
TEST(ProfileWriter, KeepsAnEmptyTag) {
    const Bytes odd(13, 5);
    for (const auto& [first, second] : {std::pair{0U, 13U}, {13U, 0U}}) {
        const OwnedProfile profile = created();
        ASSERT_EQ(icTagAdd(profile.get(), fourcc("aaaa"), first, odd.data()), 0);
        ASSERT_EQ(icTagAdd(profile.get(), fourcc("bbbb"), second, odd.data()), 0);
        EXPECT_EQ(tagsOf(profile), tagsOf(loaded(saved(profile.get())))) << first;
    }
}

TEST(ProfileWriter, CopiesTheWholeProfileAndLeavesTheOriginal) {
    const Bytes image = smallRgbProfile();
    const TempFile file(image);
    const OwnedProfile backed = opened(file.path()), whole = loaded(image);
    for (const icProfile_t original : {backed.get(), whole.get()}) {
        const OwnedProfile copy = copied(original);
        EXPECT_EQ(std::memcmp(&copy->header, &original->header, sizeof(icHeader)), 0);
        EXPECT_EQ(tagsOf(copy), tagsOf(whole));
        const Bytes first = saved(copy.get());
        EXPECT_EQ(saved(copied(original).get()), first);  // the original is still in use
        const OwnedProfile edited = copied(original);
        EXPECT_EQ(icTagRemove(edited.get(), fourcc("rTRC")), 0);
        EXPECT_EQ(original->tagList->count, 6);
    }
    EXPECT_EQ(icProfileSaveProfile(backed.get(), file.path().c_str()), icErrInvalid);
    EXPECT_EQ(fileBytes(file.path()), image);

    std::filesystem::resize_file(file.path(), image.size() - 3);
    icProfile_t copy = backed.get();
    EXPECT_EQ(icProfileCopy(backed.get(), &copy), icErrRead);
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

// What fits a buffer is written when the stream is positioned or, without tags, when it is closed.
TEST(ProfileWriter, LeavesAProfileThatItCannotWrite) {
    EXPECT_EQ(icProfileSaveProfile(nullptr, TempFile({}).path().c_str()), icErrInvalid);
    expectFailureWithoutChange(created(), nullptr, icErrInvalid);
    const auto folder = std::filesystem::temp_directory_path();
    for (const std::string& path : {folder.string(), (folder / "lumoxa-none" / "x").string()})
        expectFailureWithoutChange(created(), path.c_str(), icErrWrite);
    const char* full = "/dev/full";
    if (!std::ofstream(full)) GTEST_SKIP() << "no device here is a full disk";
    const OwnedProfile bare = created(), large = created();
    ASSERT_EQ(icTagRemove(bare.get(), fourcc("cprt")), 0);
    ASSERT_EQ(icTagAdd(large.get(), fourcc("big "), 1 << 20, Bytes(1 << 20, 1).data()), 0);
    expectFailureWithoutChange(bare, full, icErrWrite);
    expectFailureWithoutChange(created(), full, icErrWrite);
    expectFailureWithoutChange(large, full, icErrWrite);
}

}  // namespace
}  // namespace lumoxa_test
