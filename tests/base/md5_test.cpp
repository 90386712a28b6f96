// SPDX-License-Identifier: Apache-2.0
#include "base/md5.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace lumoxa_test {
namespace {

using namespace lumoxa;

std::string hexOf(const Md5Digest& digest) {
    std::string text;
    for (const uint8_t byte : digest)
        text.append({"0123456789abcdef"[byte >> 4], "0123456789abcdef"[byte & 15]});
    return text;
}

std::span<const uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

struct Md5Case {
    std::string_view text;
    const char* digest;
};

// The test suite of RFC 1321, A.5.
constexpr Md5Case kCases[] = {
    {"", "d41d8cd98f00b204e9800998ecf8427e"},
    {"abc", "900150983cd24fb0d6963f7d28e17f72"},
    {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
    {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
     "d174ab98d277d9f5a5611c2c9f419d9f"},
    {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
     "57edf4a22be3c955ac49da2e2107b67a"},
};

TEST(Md5, GivesTheDigestsOfItsStandardWhateverThePartsAre) {
    for (const Md5Case& c : kCases) {
        for (size_t cut = 0; cut <= c.text.size(); ++cut) {
            Md5 md5;
            md5.add(bytesOf(c.text.substr(0, cut)));
            md5.add(bytesOf(c.text.substr(cut)));
            EXPECT_EQ(hexOf(md5.finish()), c.digest) << c.text << cut;
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
