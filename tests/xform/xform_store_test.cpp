// SPDX-License-Identifier: Apache-2.0
//
// Transforms stored as tags, and read back.
#include "tests/support/gray_asks.h"
#include "tests/support/seeded_random.h"
#include "tests/support/temp_file.h"
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

LutContent randomLut(uint32_t inputs, uint32_t outputs, uint32_t grid) {
    SeededRandom random(inputs + grid);
    LutContent c{inputs, outputs, grid};
    c.inTables = random.samples(size_t{inputs} * 256);
    c.clut = random.samples(power(grid, inputs) * outputs);
    c.outTables = random.samples(size_t{outputs} * 256);
    return c;
}

TEST(XformStore, NamesTheTagByIntentAndDirection) {
    const OwnedXform x = requested(lutProfile(gridTag(3, 3, 2, {}), "RGB ", "Lab "), 0, 1);
    const char* names[3][4] = {{"A2B0", "A2B1", "A2B2", "A2B1"},
                               {"B2A0", "B2A1", "B2A2", "B2A1"},
                               {"gamt", "gamt", "gamt", "gamt"}};
    for (uint32_t transType = 1; transType <= 3; ++transType) {
        for (uint32_t intent = 0; intent <= 3; ++intent) {
            const OwnedProfile profile = blank();
            for (const uint32_t type : {lumoxa::kTypeLut16, 0U}) {  // added, then replaced
                ASSERT_EQ(set(profile, x.get(), type, intent, transType), 0);
                ASSERT_EQ(profile->tagList->count, 2);
                EXPECT_EQ(profile->tagList->tags[1].signature,
                          signature(names[transType - 1][intent]));
            }
        }
    }
}

TEST(XformStore, RefusesWhatCannotBeStored) {
    LutABContent ab;
    ab.bCurves = {curveTag({}), curveTag({}), curveTag({})};
    const OwnedXform lut16 = requested(lutProfile(gridTag(3, 3, 2, {}), "RGB ", "Lab "), 0, 1),
                     lut8 = requested(lutProfile(lut8Tag({}), "RGB ", "Lab "), 0, 1),
                     aToB = requested(lutProfile(lutAToBTag(ab), "RGB ", "Lab "), 0, 1),
                     matrix = requested(rgbProfile({curveTag({563})}, "scnr"), 0, 1);
    const struct {
        icXform_t xform;
        const char* type;
        uint32_t intent, transType;
        int code;
    } cases[] = {{lut16.get(), "mft1", 0, 1, icErrXformKind},
                 {lut8.get(), "mft2", 0, 1, icErrXformKind},
                 {aToB.get(), "mAB ", 0, 1, icErrXformKind},
                 {matrix.get(), "TrcM", 0, 1, icErrXformKind},
                 {nullptr, "mft2", 0, 1, icErrXformKind},
                 {lut16.get(), "mft2", 0, 0, icErrInvalid},
                 {lut16.get(), "mft2", 4, 1, icErrInvalid},
                 {lut16.get(), "mft2", 0xFFFFFFFF, 2, icErrInvalid}};
    const OwnedProfile profile = blank();
    const icHeader header = profile->header;
    for (const auto& c : cases) {
        EXPECT_EQ(set(profile, c.xform, signature(c.type), c.intent, c.transType), c.code)
            << c.type;
        EXPECT_EQ(profile->header.size, header.size);
        EXPECT_EQ(profile->tagList->count, 1);
    }
    const TempFile file(smallRgbProfile());
    EXPECT_EQ(set(opened(file.path()), lut16.get()), icErrInvalid);
    EXPECT_EQ(set(nullptr, lut16.get()), icErrInvalid);
}

TEST(XformStore, ConvertsTheSameOnceReadBack) {
    const struct {
        const char *in, *out;
        uint32_t inputs, outputs, transType;
        bool lut8 = false;
    } cases[] = {{"GRAY", "Lab ", 1, 3, 1},
                 {"CMYK", "Lab ", 4, 3, 1},
                 {"Lab ", "CMYK", 3, 4, 2},
                 {"RGB ", "Lab ", 3, 3, 1, true}};
    for (const auto& c : cases) {
        const LutContent content = randomLut(c.inputs, c.outputs, 3);
        const Bytes tag = c.lut8 ? lut8Tag(content) : lut16Tag(content);
        const OwnedXform link = requested(lutProfile(tag, c.in, c.out), 0, 1);
        const OwnedXform made = c.lut8 ? nullptr : combined({link.get()});
        const icXform_t x = c.lut8 ? link.get() : made.get();
        // The connection space of a profile is its second space in either direction.
        const OwnedProfile profile = c.transType == 1 ? blank(c.in, c.out) : blank(c.out, c.in);
        ASSERT_EQ(set(profile, x, c.lut8 ? lumoxa::kTypeLut8 : lumoxa::kTypeLut16, 1, c.transType),
                  0)
            << c.in;
        const TempFile file({});
        ASSERT_EQ(icProfileSaveProfile(profile.get(), file.path().c_str()), 0);
        const OwnedXform read = Ask{}.from(opened(file.path()), 1, c.transType);
        for (const int bits : {8, 16}) {
            const uint32_t top = bits == 8 ? 255 : 65535;
            const Samples pixels = SeededRandom(7).samples(size_t{c.inputs} * 500, top);
            EXPECT_EQ(converted(read.get(), pixels, bits, bits), converted(x, pixels, bits, bits))
                << c.in;
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
