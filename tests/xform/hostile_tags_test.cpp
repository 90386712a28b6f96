// SPDX-License-Identifier: Apache-2.0
//
// Tags that lie about themselves: a result code, and nothing read outside of them. The sanitizers
// see what the codes don't.
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

struct Victim {
    const char* name;
    Bytes tag;
    const char* signature = "A2B0";
    friend std::ostream& operator<<(std::ostream& out, const Victim& v) { return out << v.name; }
};

std::vector<Victim> victims() {
    LutContent small;
    small.inEntries = 3, small.outEntries = 4;
    LutABContent ab;
    const Bytes curve = curveTag({0, 40000, 65535}), para = parametricTag(4, {2, 1, 0, 1, 0, 0, 0});
    ab.aCurves = ab.mCurves =
        ab.bCurves = {curve, parametricTag(3, {2, 1, 0, 1, 0}), curveTag({300})};
    ab.matrix = {1, 0, 0, 0, 1, 0, 0, 0.5, 1, 0, 0, 0.1};
    ab.grid = {2, 3, 2};
    LutABContent ab8 = ab;
    ab8.precision = 1;
    return {{"lut8", lut8Tag(small)},           {"lut16", lut16Tag(small)},
            {"lut16of4", gridTag(4, 3, 2, {})}, {"lutAToB", lutAToBTag(ab)},
            {"lutBToA", lutBToATag(ab)},        {"lutAToB8", lutAToBTag(ab8)},
            {"curve", curve, "rTRC"},           {"parametric", para, "gTRC"},
            {"xyz", xyzTag(1, 1, 1), "bXYZ"},   {"gray", curve, "kTRC"}};
}

// In both directions, where the tag serves both.
int requestAndUse(const Victim& v, const Bytes& tag) {
    const std::string name = v.signature;
    const bool lut = name == "A2B0";
    ProfileBytes profile("scnr",
                         name == "kTRC" ? "GRAY"
                         : lut          ? "Lab "
                                        : "RGB ",
                         lut ? "Lab " : "XYZ ");
    profile.addTag(name, tag);  // the first of two with one name counts
    for (const char* other : {"rTRC", "gTRC", "bTRC"})
        profile.addTag(other, curveTag({0, 65535}));
    for (const char* other : {"rXYZ", "gXYZ", "bXYZ"})
        profile.addTag(other, xyzTag(0.5, other[0] / 100.0, 0.1));
    OwnedXform xform;
    int code = 0;
    for (const uint32_t transType : {icDeviceToPcs, icPcsToDevice}) {
        if (lut && transType == icPcsToDevice) continue;
        code = request(profile.image(), 0, transType, xform);
        if (code != 0) break;
        for (const uint16_t value : {300, 65535})
            converted(xform.get(), Samples(size_t{described(xform.get()).inChannels} * 40, value));
    }
    return code;
}

class HostileTag : public testing::TestWithParam<Victim> {};

TEST_P(HostileTag, IsRefusedOrConvertsSafely) {
    const Victim& v = GetParam();
    ASSERT_EQ(requestAndUse(v, v.tag), 0);
    for (size_t length = 0; length < v.tag.size(); ++length) {
        const int code = requestAndUse(v, Bytes(v.tag.begin(), v.tag.begin() + ptrdiff_t(length)));
        // Curves are padded to 4 bytes, so the last few may not matter.
        EXPECT_TRUE(code == icErrRead || (code == 0 && length + 4 > v.tag.size()))
            << code << " for " << length;
    }
    for (size_t at = 4; at < std::min<size_t>(v.tag.size(), 200); ++at) {
        for (const uint32_t word : {0x00000001U, 0x01010101U, 0x02020202U, 0x11111111U, 0x7FFFFFFFU,
                                    0x80000000U, 0xFFFFFFFCU}) {
            Bytes changed = v.tag;
            changed[at] = static_cast<uint8_t>(word >> 24);
            if (at % 4 == 0 && (word & 0x80000080U) != 0 && at + 4 <= changed.size())
                put32(changed, at, word);
            const int code = requestAndUse(v, changed);
            EXPECT_TRUE(code == 0 || code == icErrTagType || code == icErrRead)
                << code << " at " << at << " word " << word;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, HostileTag, testing::ValuesIn(victims()),
                         [](const auto& v) { return v.param.name; });

TEST(HostileTags, TellTheImpossibleFromTruncation) {
    const std::vector<Victim> all = victims();
    const struct {
        size_t victim, at;
        Bytes values;
    } cases[] = {{0, 8, {0, 17, 255}}, {0, 9, {0}},     {0, 10, {0, 1}},
                 {1, 49, {0, 1}},      {1, 51, {0, 1}}, {3, 8, {0, 17}},
                 {3, 32, {'x'}},       {6, 0, {'x'}},   {7, 9, {5, 255}}};
    for (const auto& c : cases) {
        for (const uint8_t byte : c.values) {
            Bytes tag = all[c.victim].tag;
            tag[c.at] = byte;
            EXPECT_EQ(requestAndUse(all[c.victim], tag), icErrTagType)
                << all[c.victim].name << " byte " << c.at << " = " << int{byte};
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
