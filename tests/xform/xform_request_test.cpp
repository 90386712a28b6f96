// SPDX-License-Identifier: Apache-2.0
//
// Which conversion a request gets.
#include <algorithm>

#include <gtest/gtest.h>

#include "profile/profile_object.h"
#include "tests/support/temp_file.h"
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

const std::vector<Bytes> kStraight(3, curveTag({}));

// A tag that answers the same number whatever it is asked.
Bytes constantLut(uint32_t inputs, uint16_t answer) {
    return gridTag(inputs, 3, 2, Samples(power(2, inputs) * 3, answer));
}

TEST(XformRequest, PicksAnotherTag) {
    for (const bool toPcs : {true, false}) {
        for (unsigned present = 0; present < 8; ++present) {
            ProfileBytes profile = rgbProfile(kStraight, "mntr");
            for (int tag = 2; tag >= 0; --tag) {  // their order in the table does not count
                const std::string name = (toPcs ? "A2B" : "B2A") + std::to_string(tag);
                if (present >> tag & 1) profile.addTag(name, constantLut(3, uint16_t(1000 + tag)));
            }
            for (uint32_t intent = 0; intent <= 5; ++intent) {
                // Absolute uses the relative tag; unknown intents only have the fall-backs.
                unsigned expected = intent == 3 ? 1 : intent;
                if (expected > 2 || !(present >> expected & 1)) {
                    for (expected = 0; present != 0 && !(present >> expected & 1);)
                        ++expected;
                }
                const OwnedXform xform =
                    requested(profile, intent, toPcs ? icDeviceToPcs : icPcsToDevice);
                const icXformDesc_t d = described(xform.get());
                EXPECT_EQ(d.intent, intent);
                EXPECT_EQ(d.inSpace, fourcc(toPcs ? "RGB " : "XYZ "));
                EXPECT_EQ(d.outSpace, fourcc(toPcs ? "XYZ " : "RGB "));
                EXPECT_EQ(d.kind, fourcc(present ? "mft2" : toPcs ? "TrcM" : "MatT"));
                if (present) {
                    EXPECT_EQ(converted(xform.get(), {9, 9, 9})[0], 1000 + expected)
                        << present << " " << intent;
                }
            }
        }
    }
}

TEST(XformRequest, ConvertsWithoutGamutTagOrDirection) {
    ProfileBytes profile = rgbProfile(kStraight, "mntr");
    for (const uint32_t transType : {0U, 3U, 4U, 99U}) {
        EXPECT_EQ(described(requested(profile, 0, transType).get()).kind, 0U);
    }
    EXPECT_EQ(described(requested(profile, 0, icGamutTest).get()).outSpace, fourcc("GRAY"));
    profile.addTag("gamt", constantLut(3, 77));
    const OwnedXform gamut = requested(profile, 0, icGamutTest);
    EXPECT_EQ(described(gamut.get()).inSpace, fourcc("XYZ "));
    EXPECT_EQ(described(gamut.get()).outSpace, fourcc("GRAY"));
    EXPECT_EQ(converted(gamut.get(), {1, 2, 3})[0], 77);
}

TEST(XformRequest, FillsTheRecordWrongly) {
    LutABContent ab, withCurves;
    ab.grid = {2, 5, 3}, withCurves.grid = {2, 2, 4};
    withCurves.bCurves = kStraight;
    const struct {
        Bytes tag;
        uint32_t grid, in, out;
    } cases[] = {{constantLut(1, 1), 2, 2, 2}, {constantLut(3, 1), 2, 2, 2},
                 {constantLut(4, 1), 2, 2, 2}, {lut8Tag({}), 2, 256, 256},
                 {lutAToBTag(ab), 5, 0, 0},    {lutAToBTag(withCurves), 4, 0, 4096}};
    const uint16_t d50[3] = {31595, 32768, 27030}, paper[3] = {16384, 24576, 8192};
    for (const auto& c : cases) {
        ProfileBytes profile = lutProfile(c.tag, "RGB ", "XYZ ");
        if (c.in == 2) profile.addTag("wtpt", xyzTag(0.5, 0.75, 0.25));
        const OwnedXform x = requested(profile, 0, icDeviceToPcs);
        const uint32_t inputs = c.tag[8];
        EXPECT_EQ(x->inChannels, inputs);
        EXPECT_EQ(x->outChannels, 3U);
        EXPECT_EQ(x->tetraState != nullptr, inputs == 3);
        EXPECT_EQ(x->pentaState != nullptr, inputs == 4);
        EXPECT_EQ(x->state != nullptr, inputs == 1);
        EXPECT_EQ(x->gridPoints, c.grid);
        EXPECT_EQ(x->inTableEntries, c.in);
        EXPECT_EQ(x->outTableEntries, c.out);
        // The paper's where the profile has one, else the connection space's.
        EXPECT_TRUE(std::equal(d50, d50 + 3, x->pcsWhite));
        EXPECT_TRUE(std::equal(x->mediaWhite, x->mediaWhite + 3, c.in == 2 ? paper : d50));
    }
}

TEST(XformRequest, DependsOnToneParametersOrStorage) {
    const TempFile file(smallRgbProfile());
    icProfile_t opened = nullptr;
    ASSERT_EQ(icLoadProfile(file.path().c_str(), &opened), 0);
    const OwnedProfile memory = loaded(smallRgbProfile()), streamed(opened);
    const unsigned short pair[2] = {30000, 34000};
    const float curve[256] = {}, points[6] = {};
    for (const icTransType t : {icDeviceToPcs, icPcsToDevice}) {
        icXform_t forms[8] = {};
        const auto get = [&](int form, auto... extra) {
            EXPECT_EQ(icXformGet(form == 7 ? streamed.get() : memory.get(), icRelativeColorimetric,
                                 t, extra...),
                      0);
        };
        get(0, &forms[0]);
        get(1, pair, &forms[1]);
        get(2, pair, &curve[0], &forms[2]);
        get(3, pair, 0.5f, &curve[0], &forms[3]);
        get(4, pair, 0.5f, &forms[4], 1, 0.5f);
        get(5, pair, 2, &points[0], &curve[0], &forms[5]);
        get(6, pair, 2, &points[0], &forms[6], 1, 0.5f);
        get(7, &forms[7]);
        const Samples pixels = {0, 65535, 1234, 40000, 50000, 60000},
                      first = converted(forms[0], pixels);
        for (const icXform_t form : forms) {
            EXPECT_EQ(converted(form, pixels), first);
            icXformInc(form);
            icXformFree(form);
            EXPECT_EQ(converted(form, pixels), first);  // a holder is left
            icXformFree(form);
        }
    }
}

TEST(XformRequest, MissesItsResultCode) {
    const auto code = [](icProfile_t profile) {
        icXform_t xform = reinterpret_cast<icXform_t>(uintptr_t{64});
        const int result = icXformGet(profile, icPerceptual, icDeviceToPcs, &xform);
        EXPECT_EQ(xform, nullptr);
        return result;
    };
    const icProfileInternal noProfile{};
    EXPECT_EQ(code(nullptr), icErrInvalid);
    EXPECT_EQ(code(&noProfile), icErrInvalid);
    EXPECT_EQ(icXformGet(loaded(smallRgbProfile()).get(), icPerceptual, icDeviceToPcs,
                         static_cast<icXform_t*>(nullptr)),
              icErrInvalid);
    const std::pair<const char*, Bytes> tags[] = {
        {"rTRC", kStraight[0]},    {"gTRC", kStraight[0]},    {"bTRC", kStraight[0]},
        {"rXYZ", xyzTag(1, 0, 0)}, {"gXYZ", xyzTag(0, 1, 0)}, {"bXYZ", xyzTag(0, 0, 1)}};
    for (const uint32_t transType : {icDeviceToPcs, icPcsToDevice}) {
        OwnedXform x;
        ProfileBytes gray("prtr", "GRAY", "Lab ");
        EXPECT_EQ(request(gray.addTag("wtpt", xyzTag(1, 1, 1)).image(), 0, transType, x),
                  icErrNoTag);
        EXPECT_EQ(request(gray.addTag("wzgd", Bytes(64)).image(), 0, transType, x), icErrXformKind);
        for (const auto& missing : tags) {
            ProfileBytes profile;
            for (const auto& tag : tags) {
                if (&tag != &missing) profile.addTag(tag.first, tag.second);
            }
            EXPECT_EQ(request(profile.image(), 0, transType, x), icErrNoTag) << missing.first;
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
