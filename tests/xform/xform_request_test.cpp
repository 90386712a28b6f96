// SPDX-License-Identifier: Apache-2.0
//
// Which conversion a request gets.
#include "tests/support/gray_asks.h"
#include "tests/support/temp_file.h"

namespace lumoxa_test {
namespace {

const std::vector<Bytes> kStraight = {curveTag({})};

// A tag that answers the same number whatever it is asked.
Bytes constantLut(uint32_t inputs, uint16_t answer) {
    return gridTag(inputs, 3, 2, Samples(power(2, inputs) * 3, answer));
}

TEST(XformRequest, PicksTheTagOfTheIntent) {
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
                EXPECT_EQ(d.kind, fourcc(present ? "mft2" : toPcs ? "TrcM" : "MatT"));
                if (present) {
                    EXPECT_EQ(converted(xform.get(), {9, 9, 9})[0], 1000 + expected)
                        << present << " " << intent;
                }
            }
        }
    }
}

TEST(XformRequest, ConvertsToGamutByItsTagAlone) {
    ProfileBytes profile = rgbProfile(kStraight, "mntr");
    for (const uint32_t transType : {0U, 3U, 4U, 99U}) {
        EXPECT_EQ(described(requested(profile, 0, transType).get()).kind, 0U);
    }
    EXPECT_EQ(described(requested(profile, 0, icGamutTest).get()).outSpace, fourcc("GRAY"));
    profile.addTag("gamt", constantLut(3, 77));
    const OwnedXform gamut = requested(profile, 0, icGamutTest);
    EXPECT_EQ(described(gamut.get()).outSpace, fourcc("GRAY"));
    EXPECT_EQ(converted(gamut.get(), {1, 2, 3})[0], 77);
}

TEST(XformRequest, GivesTheSameByAnyFormFromAnyStorage) {
    const Bytes image = rgbProfile({curveTag({563})}, "mntr").image();
    const TempFile file(image);
    const OwnedProfile memory = loaded(image), streamed = opened(file.path());
    const Samples pixels = {0, 65535, 1234, 40000, 50000, 60000};
    Ask ask{1, Tone{-2, 4}, 0.5f, {10, 1, 1, 90, 2, 2}, toneCurve(0, 1), 1, 0.5f};
    for (const uint32_t direction : {icDeviceToPcs, icPcsToDevice}) {
        ask.form = 1;
        const Samples expected = converted(ask.from(streamed, 1, direction).get(), pixels);
        for (; ask.form <= 7; ++ask.form) {
            const OwnedXform xform = ask.from(memory, 1, direction);
            icXformInc(xform.get());
            icXformFree(xform.get());  // a holder is left
            EXPECT_EQ(converted(xform.get(), pixels), expected) << ask.form;
        }
    }
}

TEST(XformRequest, RefusesProfilesThatLackWhatItNeeds) {
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
    for (const uint32_t transType : {icDeviceToPcs, icPcsToDevice}) {
        OwnedXform x;
        ProfileBytes gray("prtr", "GRAY", "Lab ");
        EXPECT_EQ(request(gray.addTag("wtpt", xyzTag(1, 1, 1)).image(), 0, transType, x),
                  icErrNoTag);
        EXPECT_EQ(request(gray.addTag("wzgd", Bytes(64)).image(), 0, transType, x), icErrTagType);
        for (uint32_t missing = 0; missing < 6; ++missing) {
            Bytes image = smallRgbProfile();
            put32(image, 132 + 12 * missing, 0);  // another signature
            EXPECT_EQ(request(image, 0, transType, x), icErrNoTag) << missing;
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
