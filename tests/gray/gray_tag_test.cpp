// SPDX-License-Identifier: Apache-2.0
//
// Gray tags that lie about themselves.
#include "tests/support/gray_profiles.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

int codeOf(const Bytes& tag, bool convertToo = false) {
    int code = 0;
    for (const uint32_t direction : {icDeviceToPcs, icPcsToDevice}) {
        OwnedXform xform;
        code = request(grayProfile(tag).image(), 0, direction, xform);
        if (code != 0) break;
        if (convertToo) converted(xform.get(), {0, 0, 0, 30000, 9, 9, 65535, 1, 1});
    }
    return code;
}

Bytes tagOf(int layout) {
    return grayTag(layout == 2 ? 6 : 2, 1, layout, InkPrinter().patches(2, 1));
}

class HostileGrayTag : public testing::TestWithParam<int> {};

TEST_P(HostileGrayTag, IsRefusedOrConvertsSafely) {
    const Bytes tag = tagOf(GetParam());
    ASSERT_EQ(codeOf(tag), 0);
    for (size_t length = 0; length < tag.size(); ++length)
        EXPECT_EQ(codeOf(Bytes(tag.begin(), tag.begin() + ptrdiff_t(length))), icErrRead) << length;
    const struct {
        size_t at;
        Bytes bytes;
        int code;
    } lies[] = {{8, {0, 0}, icErrTagType},  {8, {0, 1}, icErrTagType},
                {8, {255, 255}, icErrRead}, {8, {0, 7}, icErrRead},
                {10, {0}, icErrTagType},    {10, {255}, GetParam() == 2 ? 0 : icErrRead},
                {11, {3}, icErrTagType},    {11, {255}, icErrTagType}};
    for (const auto& lie : lies) {
        Bytes changed = tag;
        std::copy(lie.bytes.begin(), lie.bytes.end(), changed.begin() + ptrdiff_t(lie.at));
        EXPECT_EQ(codeOf(changed), lie.code) << lie.at << " " << int{lie.bytes[0]};
    }
    const size_t paper = GetParam() == 2 ? 12 : tag.size() - 24;
    for (size_t at = 12; at < tag.size(); at += 4) {
        for (const uint32_t word : {0U, 1U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            Bytes changed = tag;
            put32(changed, at, word);
            const bool dark = word == 0 && at >= paper && at < paper + 12;
            EXPECT_EQ(codeOf(changed, true), dark ? icErrTagType : 0) << at << " " << word;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Layouts, HostileGrayTag, testing::Values(0, 1, 2));

}  // namespace
}  // namespace lumoxa_test
