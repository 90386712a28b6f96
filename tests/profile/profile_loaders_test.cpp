// SPDX-License-Identifier: Apache-2.0
#include <cstring>
#include <filesystem>

#include "tests/support/temp_file.h"
#include "tests/support/xforms.h"

namespace {

using namespace lumoxa_test;
enum Form { backed, whole, trusted, checked };
const char* const kFormNames[] = {"Backed", "Whole", "Trusted", "Checked"};
constexpr auto nameOfForm = [](const auto& info) { return std::string(kFormNames[info.param]); };

struct Loaded {
    int code;
    OwnedProfile profile;
};

Loaded load(Form form, const Bytes& bytes) {
    icProfile_t handle = reinterpret_cast<icProfile_t>(&handle);  // every form has to set it
    const TempFile file(bytes);
    // An exact copy, so that a sanitizer sees any read beyond it.
    const std::unique_ptr<uint8_t[]> exact(new uint8_t[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    const int code =
        form == backed    ? icLoadProfile(file.path().c_str(), &handle)
        : form == whole   ? icProfileLoadProfile(nullptr, file.path().c_str(), nullptr, &handle)
        : form == trusted ? icProfileLoadFromBuffer(nullptr, exact.get(), &handle)
                          : icProfileLoadFromBuffer(nullptr, exact.get(), bytes.size(), &handle);
    return {code, OwnedProfile(handle)};
}

class Loaders : public testing::TestWithParam<Form> {};
class CheckingLoaders : public Loaders {};  // those that know how many bytes there are

INSTANTIATE_TEST_SUITE_P(Forms, Loaders, testing::Values(backed, whole, trusted, checked),
                         nameOfForm);
INSTANTIATE_TEST_SUITE_P(Forms, CheckingLoaders, testing::Values(backed, whole, checked),
                         nameOfForm);

TEST_P(Loaders, KeepEveryTagAfterTheSourceIsGone) {
    const Bytes image = ProfileBytes()
                            .addTag("wtpt", xyzTag(1, 2, 3))
                            .addTag("none", {})
                            .addTag("bits", {1, 2, 3})
                            .image();
    const Loaded made = load(GetParam(), image);
    ASSERT_EQ(made.code, 0);
    icHeader header;
    ASSERT_EQ(icProfileGetHeader(made.profile.get(), &header), 0);
    EXPECT_EQ(header.size, image.size());
    EXPECT_EQ(made.profile->tagList->count, 3);
    lumoxa::TagCopy tag;
    ASSERT_EQ(lumoxa::readTag(*made.profile, fourcc("wtpt"), tag, 20), 0);
    EXPECT_EQ(tag.type(), fourcc("XYZ "));
    EXPECT_EQ(std::memcmp(tag.data() + 4, &image[132 + 36 + 4], 16), 0);
    EXPECT_EQ(lumoxa::readTag(*made.profile, fourcc("wtpt"), tag, 21), 512);
    EXPECT_EQ(tag.bytes, nullptr);
    EXPECT_EQ(lumoxa::readTag(*made.profile, fourcc("bits"), tag, 0), 512);
    EXPECT_EQ(lumoxa::readTag(*made.profile, fourcc("cprt"), tag), 519);
}

TEST_P(CheckingLoaders, SurviveTruncationAtEveryLength) {
    const Bytes image = smallRgbProfile();
    const size_t tableEnd = 132 + 6 * 12;
    const size_t needed = GetParam() == backed ? tableEnd : image.size() - 2;  // 2 of padding
    for (size_t length = 0; length <= image.size(); ++length) {
        const Bytes cut(image.begin(), image.begin() + static_cast<std::ptrdiff_t>(length));
        const Loaded made = load(GetParam(), cut);
        EXPECT_EQ(made.code, length < needed ? 512 : 0) << length;
        EXPECT_EQ(made.profile == nullptr, length < needed) << length;
        lumoxa::TagCopy tag;
        if (made.profile) {
            EXPECT_EQ(lumoxa::readTag(*made.profile, fourcc("bTRC"), tag),
                      length < image.size() - 2 ? 512 : 0);
        }
    }
}

// A declared size or count near 4 GiB must be refused before it is allocated. A file-backed profile
// meets a bad tag when it is read.
TEST_P(Loaders, RefuseImpossibleSizesAndCounts) {
    const struct {
        size_t at;
        uint32_t value;
        int code;
    } lies[] = {{36, fourcc("acsq"), 503}, {128, 0, 515},          {128, 0xFFFFFFFF, 512},
                {128, 1000, 512},          {136, 0xFFFFFFFF, 512}, {140, 0xFFFFFFFF, 512}};
    for (const auto& lie : lies) {
        if (GetParam() == trusted && lie.code == 512) continue;
        Bytes image = smallRgbProfile();
        put32(image, lie.at, lie.value);
        const Loaded made = load(GetParam(), image);
        lumoxa::TagCopy tag;
        EXPECT_EQ(made.profile ? lumoxa::readTag(*made.profile, fourcc("rXYZ"), tag) : made.code,
                  lie.code)
            << lie.at;
        EXPECT_TRUE(made.profile == nullptr || lie.at > 128);
    }
}

// Every entry is copied by itself, so a small file could ask for any amount of memory.
TEST_P(CheckingLoaders, RefuseThousandsOfTagsThatShareOneRange) {
    constexpr uint32_t kTags = 2000;
    Bytes image = smallRgbProfile();
    image.resize(132 + kTags * 12 + 4096);
    put32(image, 128, kTags);
    for (uint32_t i = 0; i < kTags; ++i) {
        put32(image, 132 + 12 * i, i);
        put32(image, 136 + 12 * i, 0);
        put32(image, 140 + 12 * i, static_cast<uint32_t>(image.size()));
    }
    EXPECT_EQ(load(GetParam(), image).code, GetParam() == backed ? 0 : 512);
}

TEST(ProfileLoaders, TellMissingFilesFromNullArguments) {
    const auto missing = (std::filesystem::temp_directory_path() / "lumoxa-none" / "x").string();
    const auto expect = [](int code, const auto& loader) {
        icProfile_t handle = reinterpret_cast<icProfile_t>(&loader);
        EXPECT_EQ(loader(&handle), code);
        EXPECT_EQ(handle, nullptr);
    };
    for (const char* path : {missing.c_str(), static_cast<const char*>(nullptr)}) {
        const int code = path ? icErrOpen : icErrInvalid;
        expect(code, [&](auto out) { return icLoadProfile(path, out); });
        expect(code, [&](auto out) { return icProfileLoadProfile(nullptr, path, nullptr, out); });
    }
    expect(520, [](auto out) { return icProfileLoadFromBuffer(nullptr, nullptr, out); });
    expect(520, [](auto out) { return icProfileLoadFromBuffer(nullptr, nullptr, 9, out); });
    EXPECT_EQ(icProfileLoadFromBuffer(nullptr, "", 1, nullptr), 503);
}

}  // namespace
