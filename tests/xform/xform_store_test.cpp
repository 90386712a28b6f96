// SPDX-License-Identifier: Apache-2.0
//
// Transforms stored as tags, and read back.
#include <algorithm>

#include <gtest/gtest.h>

#include "profile/profile_object.h"
#include "profile/tag_reader.h"
#include "tests/support/seeded_random.h"
#include "tests/support/temp_file.h"
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

OwnedProfile blank(const char* in = "RGB ", const char* out = "Lab ") {
    return loaded(ProfileBytes("spac", in, out).addTag("wtpt", xyzTag(0.9, 1, 0.8)).image());
}

int set(const OwnedProfile& profile, icXform_t xform, uint32_t type = lumoxa::kTypeLut16,
        uint32_t intent = 0, uint32_t transType = 1) {
    return icXformSet(profile.get(), type, icRenderingIntent{intent}, icTransType{transType},
                      xform);
}

LutContent randomLut(uint32_t inputs, uint32_t outputs, uint32_t grid, uint32_t inEntries = 256,
                     uint32_t outEntries = 256) {
    SeededRandom random(inputs + grid);
    LutContent c{inputs, outputs, grid, inEntries, outEntries};
    c.matrix = {1, 0.25, -0.5, 0, 1, 0, 0.125, 0, 1};
    c.inTables = random.samples(size_t{inputs} * inEntries);
    c.clut = random.samples(power(grid, inputs) * outputs);
    c.outTables = random.samples(size_t{outputs} * outEntries);
    return c;
}

TEST(XformStore, ChangesTheTagATransformWasMadeFrom) {
    const struct {
        const char* space;
        LutContent content;
        size_t size16;  // two bytes more than the layout
    } cases[] = {{"RGB ", randomLut(3, 3, 33), 218748},
                 {"RGB ", randomLut(3, 3, 2, 2, 5), 52 + 2 * (6 + 24 + 15) + 2},
                 {"GRAY", randomLut(1, 3, 9, 4096, 2), 52 + 2 * (4096 + 27 + 6) + 2},
                 {"CMYK", randomLut(4, 3, 5), 52 + 2 * (1024 + 1875 + 768) + 2},
                 {"5CLR", randomLut(5, 3, 3), 52 + 2 * (1280 + 729 + 768) + 2}};
    for (const auto& c : cases) {
        for (const bool is16 : {true, false}) {
            LutContent content = c.content;
            if (!is16) content = randomLut(content.inputs, content.outputs, content.grid);
            Bytes tag = is16 ? lut16Tag(content) : lut8Tag(content);
            const OwnedXform x = requested(lutProfile(tag, c.space, "Lab "), 0, 1);
            const OwnedProfile profile = blank(c.space);
            const uint32_t type = is16 ? lumoxa::kTypeLut16 : lumoxa::kTypeLut8;
            ASSERT_EQ(set(profile, x.get(), type), 0);
            tag.resize(tag.size() + (is16 ? 2 : 3));
            const icTag_safe64bit& stored = profile->tagList->tags[1];
            ASSERT_EQ(stored.size, tag.size()) << c.space;
            EXPECT_TRUE(std::equal(tag.begin(), tag.end(), lumoxa::tagAddress(stored))) << c.space;
            EXPECT_TRUE(!is16 || tag.size() == c.size16) << c.space << tag.size();
        }
    }
}

TEST(XformStore, NamesTheTagOfAnotherIntent) {
    const OwnedXform x = requested(lutProfile(gridTag(3, 3, 2, {}), "RGB ", "Lab "), 0, 1);
    const OwnedXform larger = requested(lutProfile(gridTag(3, 3, 3, {}), "RGB ", "Lab "), 0, 1);
    const char* names[3][4] = {{"A2B0", "A2B1", "A2B2", "A2B1"},
                               {"B2A0", "B2A1", "B2A2", "B2A1"},
                               {"gamt", "gamt", "gamt", "gamt"}};
    const uint32_t bytes = 52 + 2 * (6 + 24 + 6) + 2;
    for (uint32_t transType = 1; transType <= 3; ++transType) {
        for (uint32_t intent = 0; intent <= 3; ++intent) {
            const OwnedProfile profile = blank();
            const uint32_t before = profile->header.size;
            for (const uint32_t type : {lumoxa::kTypeLut16, 0U}) {  // added, then replaced
                ASSERT_EQ(set(profile, x.get(), type, intent, transType), 0);
                ASSERT_EQ(profile->tagList->count, 2);
                EXPECT_EQ(profile->tagList->tags[1].signature,
                          signature(names[transType - 1][intent]));
                EXPECT_EQ(profile->header.size, before + 24 + bytes);
            }
            ASSERT_EQ(set(profile, larger.get(), 0, intent, transType), 0);
            EXPECT_EQ(profile->header.size, before + 24 + bytes + 2 * 3 * (27 - 8));
        }
    }
}

TEST(XformStore, TakesWhatCannotBeStored) {
    LutABContent ab;
    ab.bCurves = {curveTag({}), curveTag({}), curveTag({})};
    const OwnedXform lut16 = requested(lutProfile(gridTag(3, 3, 2, {}), "RGB ", "Lab "), 0, 1),
                     lut8 = requested(lutProfile(lut8Tag({}), "RGB ", "Lab "), 0, 1),
                     aToB = requested(lutProfile(lutAToBTag(ab), "RGB ", "Lab "), 0, 1),
                     matrix = requested(rgbProfile({curveTag({563})}, "scnr"), 0, 1);
    ASSERT_TRUE(described(aToB.get()).kind == fourcc("mAB ") &&
                described(matrix.get()).kind == fourcc("TrcM"));
    const struct {
        icXform_t xform;
        const char* type;
        uint32_t intent, transType;
        int code;
    } cases[] = {{lut16.get(), "mft1", 0, 1, icErrXformKind},
                 {lut8.get(), "mft2", 0, 1, icErrXformKind},
                 {aToB.get(), "mAB ", 0, 1, icErrXformKind},
                 {aToB.get(), "mft2", 0, 1, icErrXformKind},
                 {matrix.get(), "TrcM", 0, 1, icErrXformKind},
                 {nullptr, "mft2", 0, 1, icErrXformKind},
                 {lut16.get(), "mft2", 0, 4, icErrInvalid},
                 {lut16.get(), "mft2", 0, 0, icErrInvalid},
                 {lut16.get(), "mft2", 4, 1, icErrInvalid},
                 {lut16.get(), "mft2", 4, 3, icErrInvalid},
                 {lut16.get(), "mft2", 0xFFFFFFFF, 2, icErrInvalid}};
    const OwnedProfile profile = blank();
    const icHeader header = profile->header;
    const icTag_safe64bit entry = profile->tagList->tags[0];
    for (const auto& c : cases) {
        EXPECT_EQ(set(profile, c.xform, signature(c.type), c.intent, c.transType), c.code)
            << c.type;
        EXPECT_EQ(profile->header.size, header.size);
        EXPECT_EQ(profile->tagList->count, 1);
        EXPECT_EQ(profile->tagList->tags[0].location, entry.location);
    }
    const TempFile file(smallRgbProfile());
    icProfile_t backed = nullptr;
    ASSERT_EQ(icLoadProfile(file.path().c_str(), &backed), 0);
    EXPECT_EQ(set(OwnedProfile(backed), lut16.get()), icErrInvalid);
    EXPECT_EQ(set(nullptr, lut16.get()), icErrInvalid);
}

OwnedXform asked(icProfile_t profile, uint32_t transType) {
    icXform_t xform = nullptr;
    EXPECT_EQ(icXformGet(profile, icRelativeColorimetric, icTransType{transType}, &xform), 0);
    return OwnedXform(xform);
}

TEST(XformStore, ConvertsOtherwiseOnceReadBack) {
    const struct {
        const char *in, *out;
        uint32_t inputs, outputs, grid, transType;
        bool combine;
    } cases[] = {{"GRAY", "Lab ", 1, 3, 5, 1, true},  {"RGB ", "Lab ", 3, 3, 3, 1, true},
                 {"RGB ", "XYZ ", 3, 3, 3, 1, true},  {"CMYK", "Lab ", 4, 3, 3, 1, true},
                 {"5CLR", "Lab ", 5, 3, 2, 1, true},  {"Lab ", "CMYK", 3, 4, 3, 2, true},
                 {"RGB ", "Lab ", 3, 3, 3, 1, false}, {"XYZ ", "RGB ", 3, 3, 3, 2, false}};
    for (const auto& c : cases) {
        const OwnedXform link = requested(
            lutProfile(lut16Tag(randomLut(c.inputs, c.outputs, c.grid)), c.in, c.out), 0, 1);
        const OwnedXform made = combined({link.get()});
        const icXform_t x = c.combine ? made.get() : link.get();
        // The connection space of a profile is its second space in either direction.
        const OwnedProfile profile = c.transType == 1 ? blank(c.in, c.out) : blank(c.out, c.in);
        ASSERT_EQ(set(profile, x, lumoxa::kTypeLut16, 1, c.transType), 0) << c.in;
        const TempFile file({});
        icProfile_t again = nullptr;
        const OwnedXform fromMemory = asked(profile.get(), c.transType);
        ASSERT_EQ(icProfileSaveProfile(profile.get(), file.path().c_str()), 0);
        ASSERT_EQ(icLoadProfile(file.path().c_str(), &again), 0);
        const OwnedXform fromFile = asked(OwnedProfile(again).get(), c.transType);
        for (const int inBits : {8, 16}) {
            const Samples pixels =
                SeededRandom(7).samples(size_t{c.inputs} * 500, inBits == 8 ? 255 : 65535);
            for (const int outBits : {8, 16}) {
                const Samples expected = converted(x, pixels, inBits, outBits);
                EXPECT_EQ(converted(fromMemory.get(), pixels, inBits, outBits), expected) << c.in;
                EXPECT_EQ(converted(fromFile.get(), pixels, inBits, outBits), expected) << c.in;
            }
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
