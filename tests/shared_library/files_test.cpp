// SPDX-License-Identifier: Apache-2.0
//
// Files that are hard to reach: odd names, no rights, over two gigabytes. Streams and blocks cross
// from the library into the program here, which only works with one C runtime for both.
#include <cstring>
#include <filesystem>
#include <fstream>

#include "tests/support/native_path.h"
#include "tests/support/real_profiles.h"
#include "tests/support/temp_file.h"
#include "tests/support/xforms.h"

#if defined(_WIN32)
#include <share.h>
#endif

namespace lumoxa_test {
namespace {

namespace fs = std::filesystem;

OwnedProfile loadedFrom(const std::string& path, int code, bool whole = true) {
    icProfile_t profile = nullptr;
    EXPECT_EQ(whole ? icProfileLoadProfile(nullptr, path.c_str(), nullptr, &profile)
                    : icLoadProfile(path.c_str(), &profile),
              code);
    EXPECT_EQ(profile == nullptr, code != 0);
    return OwnedProfile(profile);
}

const Bytes kOtherImage = ProfileBytes().addTag("wtpt", xyzTag(0.25, 0.5, 0.75)).image();

void expectSaving(const std::string& path, int code) {
    const OwnedProfile profile = loaded(kOtherImage);
    EXPECT_EQ(icProfileSaveProfile(profile.get(), path.c_str()), code);
}

/// The code of reading a tag, whose data has to be these bytes.
int tagCode(const OwnedProfile& profile, uint32_t signature, const Bytes& data) {
    icTagValue_t tag = {};
    const int code = icTagGetById(profile.get(), signature, &tag);
    if (code != 0) return code;
    EXPECT_EQ(tag.size, data.size());
    EXPECT_EQ(std::memcmp(static_cast<uint8_t*>(tag.data) + 4, &data[4], data.size() - 4), 0);
    return icTagFree(&tag);
}

struct NameCase {
    const char* name;
    const char8_t* ending;
    friend std::ostream& operator<<(std::ostream& out, const NameCase& c) { return out << c.name; }
};

class FileNames : public testing::TestWithParam<NameCase> {
  protected:
    const Bytes image_ = smallRgbProfile();
    const TempFile file_ = TempFile(image_, std::filesystem::path(GetParam().ending));
};

INSTANTIATE_TEST_SUITE_P(
    Characters, FileNames,
    testing::Values(NameCase{"ascii", u8" a b.icc"},
                    NameCase{"westernEurope", u8"-gr\u00F6\u00DFe-\u00E9t\u00E9.icc"},
                    NameCase{"ofNoCodePage", u8"-\u989C\u8272-\u0446\u0432\u0435\u0442.icc"}),
    [](const auto& info) { return info.param.name; });

TEST_P(FileNames, AreFoundByPath) {
    const auto path = pathForFopen(file_.nativePath());
    if (!path) GTEST_SKIP() << "the code page of this process does not have these characters";
    for (const bool whole : {true, false})
        loadedFrom(*path, 0, whole);
    EXPECT_EQ(icCompareProfiles(path->c_str(), image_.data()), 0);
    expectSaving(*path, 0);
    EXPECT_EQ(fs::file_size(file_.nativePath()), kOtherImage.size());  // not beside it
}

TEST_P(FileNames, AreReadFromTheProgramsOwnStream) {
    FILE* stream = openForReading(file_.nativePath());
    ASSERT_NE(stream, nullptr);
    icHeader header = {};
    ASSERT_EQ(icReadHeader(stream, &header), 0);
    EXPECT_EQ(header.size, image_.size());
    icTagList_safe64bit* list = nullptr;
    ASSERT_EQ(icReadTagTable(stream, &list), 0);
    icTagBase* tag = nullptr;
    ASSERT_EQ(icReadTag(stream, &list->tags[0], &tag), 0);
    EXPECT_EQ(std::memcmp(tag->reserved, &image_[list->tags[0].location + 4], 16), 0);
    icFree(tag);
    icFree(list);
    icCloseProfile(stream);
}

TEST(Files, StayAsTheyAreWhenReadOnly) {
    const Bytes image = smallRgbProfile();
    const TempFile file(image);
    fs::permissions(file.path(), fs::perms::owner_read);
    loadedFrom(file.path(), 0);
    if (std::ofstream(file.path(), std::ios::app)) GTEST_SKIP() << "this user may write all files";
    expectSaving(file.path(), icErrWrite);
    EXPECT_EQ(fileBytes(file.path()), image);
}

TEST(Files, AreRefusedWhileAnotherProgramHasLockedThem) {
#if defined(_WIN32)
    const TempFile file(smallRgbProfile());
    FILE* lock = _fsopen(file.path().c_str(), "rb", _SH_DENYRW);
    ASSERT_NE(lock, nullptr);
    for (const bool whole : {true, false})
        loadedFrom(file.path(), icErrOpen, whole);
    expectSaving(file.path(), icErrWrite);
    std::fclose(lock);
    loadedFrom(file.path(), 0);
#else
    GTEST_SKIP() << "files are not locked against other programs here";
#endif
}

// A profile read whole may have tags up to four gigabytes; a file-backed one reads them up to two.
TEST(Files, HaveTagsBeyondTwoGigabytesWhenReadWhole) {
    const Bytes white = xyzTag(0.25, 0.5, 0.75);
    for (const uint32_t location : {0x7FFFFFF8U, 0x80000000U, 0x80000008U}) {
        Bytes image = ProfileBytes().addTag("wtpt", white).image();
        put32(image, 136, location);
        const TempFile file(image);
        std::fstream(file.path(), std::ios::in | std::ios::out | std::ios::binary)
            .seekp(location)
            .write(reinterpret_cast<const char*>(white.data()),
                   static_cast<std::streamsize>(white.size()));
        ASSERT_EQ(fs::file_size(file.path()), location + uint64_t{white.size()});
        EXPECT_EQ(tagCode(loadedFrom(file.path(), 0), fourcc("wtpt"), white), 0);
        const OwnedProfile backed = loadedFrom(file.path(), 0, false);
        EXPECT_EQ(tagCode(backed, fourcc("wtpt"), white), location < 0x80000000U ? 0 : icErrRead);
        icProfile_t copy = nullptr;
        ASSERT_EQ(icProfileCopy(backed.get(), &copy), 0);
        EXPECT_EQ(tagCode(OwnedProfile(copy), fourcc("wtpt"), white), 0);
    }
}

}  // namespace
}  // namespace lumoxa_test
