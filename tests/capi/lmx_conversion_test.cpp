// SPDX-License-Identifier: Apache-2.0
//
// Wrong arguments of the accurate engine: each is a code and a sentence, and nothing is written.
#include <cmath>
#include <functional>
#include <limits>
#include <thread>

#include <gtest/gtest.h>

#include "lumoxa/lumoxa.hpp"
#include "tests/support/gray_profiles.h"
#include "tests/support/profile_zoo.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

using lumoxa::Conversion;
using lumoxa::ImageView;
using lumoxa::Profile;

Profile fromZoo(const char* name) {
    const Bytes& bytes = profileZoo().at(name);
    return Profile::fromBytes(bytes.data(), bytes.size());
}

lmx_fault emptyFault() {
    lmx_fault fault = {};
    fault.size = sizeof fault;
    fault.code = -1;
    return fault;
}

/// A call's code is that of its fault, and the fault has a sentence with those words.
void expectRefused(int32_t code, int32_t wanted, const lmx_fault& fault, const char* says) {
    EXPECT_EQ(code, wanted) << fault.sentence;
    EXPECT_EQ(fault.code, wanted);
    EXPECT_NE(std::string(fault.sentence).find(says), std::string::npos) << fault.sentence;
}

constexpr int64_t kMost64 = std::numeric_limits<int64_t>::max();
constexpr int64_t kLeast64 = std::numeric_limits<int64_t>::min();
constexpr int64_t kSide = 4;  // of the pictures

struct Views {
    lmx_conversion* conversion;
    lmx_image source, destination;
    lmx_run_options run;
};

struct WrongRun {
    const char* name;
    std::function<void(Views&)> spoil;
    int code;
    const char* says;
};
void PrintTo(const WrongRun& wrong, std::ostream* out) {
    *out << wrong.name;
}

const WrongRun kWrongRuns[] = {
    {"NoConversion", [](Views& v) { v.conversion = nullptr; }, LMX_ERR_INVALID, "conversion"},
    {"ImageSize", [](Views& v) { v.source.size = 8; }, LMX_ERR_INVALID, "lmx_image has size 8"},
    {"OptionsSize", [](Views& v) { v.run.size += 4; }, LMX_ERR_INVALID, "lmx_run_options"},
    {"SampleLarge", [](Views& v) { v.source.sample = 0x10001; }, LMX_ERR_INVALID, "sample type"},
    {"NoData", [](Views& v) { v.source.data = nullptr; }, LMX_ERR_NULL_DATA, "null"},
    {"ImageSizeZero", [](Views& v) { v.destination.size = 0; }, LMX_ERR_INVALID, "size 0"},
    {"NegativeChannels", [](Views& v) { v.source.channels = -3; }, LMX_ERR_INVALID, "channels"},
    {"LeastHeight", [](Views& v) { v.source.height = v.destination.height = kLeast64; },
     LMX_ERR_INVALID, "side"},
    {"FewChannels", [](Views& v) { v.source.channels = 2; }, LMX_ERR_INVALID, "channels"},
    {"BillionsOfChannels", [](Views& v) { v.source.channels = 0x7FFFFFFF; }, LMX_ERR_INVALID,
     "channels"},
    {"HugeWidth", [](Views& v) { v.source.width = v.destination.width = kMost64; }, LMX_ERR_INVALID,
     "side"},
    {"WholeMemory", [](Views& v) { v.source.row_stride = v.destination.row_stride = kMost64 / 2; },
     LMX_ERR_INVALID, "memory"},
    {"LeastStride", [](Views& v) { v.source.channel_stride = kLeast64; }, LMX_ERR_INVALID,
     "memory"},
    {"SharedMemory",
     [](Views& v) { v.destination.data = static_cast<uint8_t*>(v.source.data) + 1; },
     LMX_ERR_INVALID, "share memory"},
    {"Threads", [](Views& v) { v.run.threads = -1; }, LMX_ERR_INVALID, "threads"},
};

class WrongRunArgument : public testing::TestWithParam<WrongRun> {};

TEST_P(WrongRunArgument, IsRefusedBeforeAnythingIsTouched) {
    static const Conversion conversion(fromZoo("gamma"), Profile::named("sRGB"));
    // One block, the source first: bytes before, between and after tell what was written.
    Bytes memory(200, 7);
    const auto viewAt = [&](size_t at) {
        lmx_image view = {};
        view.size = sizeof view;
        view.sample = LMX_SAMPLES_8;
        view.data = memory.data() + at;
        view.width = view.height = kSide;
        view.channels = 3;
        view.channel_stride = 1;
        view.pixel_stride = 3;
        view.row_stride = 3 * kSide;
        return view;
    };
    Views views = {conversion.handle(), viewAt(20), viewAt(120), {}};
    views.run.size = sizeof views.run;
    int calls = 0;
    views.run.user = &calls;
    views.run.progress = [](double, void* user) { return ++*static_cast<int*>(user) * 0; };
    GetParam().spoil(views);
    lmx_fault fault = emptyFault();
    const int32_t code =
        lmx_conversion_run(views.conversion, &views.source, &views.destination, &views.run, &fault);
    expectRefused(code, GetParam().code, fault, GetParam().says);
    EXPECT_EQ(memory, Bytes(200, 7));
    EXPECT_EQ(calls, 0);
}

INSTANTIATE_TEST_SUITE_P(Run, WrongRunArgument, testing::ValuesIn(kWrongRuns),
                         [](const auto& entry) { return entry.param.name; });

struct Asked {
    std::vector<lmx_profile*> chain;
    int32_t count;
    lmx_options options;
    lmx_gray_tone tone;
    std::vector<uint32_t> intents;
    std::vector<float> points;
};

struct WrongChain {
    const char* name;
    std::function<void(Asked&)> spoil;
    const char* says;
};
void PrintTo(const WrongChain& wrong, std::ostream* out) {
    *out << wrong.name;
}

/// Of which the caller changes one field.
lmx_gray_tone& tone(Asked& a) {
    a.options.tone = &a.tone;
    return a.tone;
}

void split(Asked& a, std::vector<float> points) {
    a.points = std::move(points);
    a.tone.points = a.points.data();
    a.tone.point_count = static_cast<int32_t>(a.points.size() / 3);
    a.options.tone = &a.tone;
}

void intents(Asked& a, std::vector<uint32_t> list) {
    a.intents = std::move(list);
    a.options.intents = a.intents.data();
    a.options.intent_count = static_cast<uint32_t>(a.intents.size());
}

const float kNan = std::numeric_limits<float>::quiet_NaN();

const WrongChain kWrongChains[] = {
    {"NoProfiles", [](Asked& a) { a.count = 0; }, "not 0"},
    {"NegativeCount", [](Asked& a) { a.count = -2; }, "not -2"},
    {"BillionsOfProfiles", [](Asked& a) { a.count = 0x7FFFFFFF; }, "1 to 255"},
    {"NullProfile", [](Asked& a) { a.chain[1] = nullptr; }, "profile 2: the profile is null"},
    {"OptionsSize", [](Asked& a) { a.options.size -= 1; }, "lmx_options has size"},
    {"Intent", [](Asked& a) { a.options.intent = 4; }, "intent 4"},
    {"IntentOfStep", [](Asked& a) { intents(a, {99}); }, "intent 99"},
    {"TooManyIntents",
     [](Asked& a) {
         intents(a, {0, 1});
     },
     "2 intents for a chain of 1"},
    {"ProofIntent",
     [](Asked& a) {
         a.options.proof = a.chain[0];
         a.options.proof_intent = 7;
     },
     "intent 7"},
    {"ToneOfDisplay",
     [](Asked& a) {
         a.options.tone = &a.tone;
         a.chain[1] = a.chain[0];
     },
     "no gray print device"},
    {"MarkOfNoColour",
     [](Asked& a) {
         a.options.mark_out_of_gamut = 1;
         a.options.gamut_mark[1] = kNan;
     },
     "three numbers of 0 to 1"},
    {"ToneSize", [](Asked& a) { tone(a).size = 0; }, "lmx_gray_tone"},
    {"ToneCount",
     [](Asked& a) {
         split(a, {1, 0, 0});
         a.tone.point_count = -1;
     },
     "no points"},
    {"ToneWithoutPoints", [](Asked& a) { tone(a).point_count = 3; }, "no points"},
    {"ToneFalls",
     [](Asked& a) {
         split(a, {60, 0, 0, 40, 0, 0});
     },
     "must rise"},
    {"ToneTooLight",
     [](Asked& a) {
         split(a, {101, 0, 0});
     },
     "L*"},
    {"ToneNotANumber",
     [](Asked& a) {
         split(a, {50, kNan, 0});
     },
     "a*"},
    {"ToneOfColour", [](Asked& a) { tone(a).b = -200; }, "b*"},
    {"ToneFade",
     [](Asked& a) {
         split(a, {50, 0, 0});
         a.tone.fade = 0.5f;
     },
     "fade"},
    {"ToneShape", [](Asked& a) { tone(a).shape = kNan; }, "shape"},
};

class WrongChainArgument : public testing::TestWithParam<WrongChain> {};

TEST_P(WrongChainArgument, IsRefusedWithASentence) {
    const Profile source = Profile::named("sRGB");
    static const Bytes gray = grayProfile().image();
    const Profile print = Profile::fromBytes(gray.data(), gray.size());
    Asked asked = {{source.handle(), print.handle()}, 2, {}, {}, {}, {}};
    lmx_options_init(&asked.options);
    asked.tone.size = sizeof asked.tone;
    GetParam().spoil(asked);
    lmx_fault fault = emptyFault();
    int some = 0;
    auto* conversion = reinterpret_cast<lmx_conversion*>(&some);
    expectRefused(
        lmx_conversion_create(asked.chain.data(), asked.count, &asked.options, &conversion, &fault),
        LMX_ERR_INVALID, fault, GetParam().says);
    EXPECT_EQ(conversion, nullptr);
    auto* link = reinterpret_cast<lmx_profile*>(&some);
    expectRefused(lmx_make_link(asked.chain.data(), asked.count, &asked.options, LMX_SAMPLES_16,
                                &link, &fault),
                  LMX_ERR_INVALID, fault, GetParam().says);
    EXPECT_EQ(link, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Create, WrongChainArgument, testing::ValuesIn(kWrongChains),
                         [](const auto& entry) { return entry.param.name; });

TEST(NullArguments, AreRefusedWithASentence) {
    const Profile srgb = Profile::named("sRGB");
    const Conversion conversion(srgb, srgb);
    lmx_profile* const chain[] = {srgb.handle(), srgb.handle()};
    lmx_profile* profile = nullptr;
    lmx_conversion* made = nullptr;
    uint8_t* block = nullptr;
    char* text = nullptr;
    uint64_t size = 0;
    const float pixel[3] = {};
    float result[3] = {};
    const lmx_image image = {};
    lmx_conversion* const c = conversion.handle();
    const std::pair<const char*, std::function<int32_t(lmx_fault*)>> calls[] = {
        {"profile", [&](auto* f) { return lmx_profile_bytes(nullptr, &block, &size, f); }},
        {"block", [&](auto* f) { return lmx_profile_bytes(chain[0], nullptr, &size, f); }},
        {"size", [&](auto* f) { return lmx_profile_bytes(chain[0], &block, nullptr, f); }},
        {"profile", [&](auto* f) { return lmx_profile_text(nullptr, &text, f); }},
        {"text", [&](auto* f) { return lmx_profile_text(chain[0], nullptr, f); }},
        {"name", [&](auto* f) { return lmx_profile_named(nullptr, &profile, f); }},
        {"handle", [&](auto* f) { return lmx_profile_named("sRGB", nullptr, f); }},
        {"handle", [&](auto* f) { return lmx_profile_from_bytes("", 0, nullptr, f); }},
        {"chain", [&](auto* f) { return lmx_conversion_create(nullptr, 2, nullptr, &made, f); }},
        {"handle", [&](auto* f) { return lmx_conversion_create(chain, 2, nullptr, nullptr, f); }},
        {"chain", [&](auto* f) { return lmx_make_link(nullptr, 2, nullptr, 5, &profile, f); }},
        {"bits", [&](auto* f) { return lmx_make_link(chain, 2, nullptr, 9, &profile, f); }},
        {"handle", [&](auto* f) { return lmx_make_link(chain, 2, nullptr, 5, nullptr, f); }},
        {"source", [&](auto* f) { return lmx_conversion_pixel(c, nullptr, result, f); }},
        {"destination", [&](auto* f) { return lmx_conversion_pixel(c, pixel, nullptr, f); }},
        {"conversion", [&](auto* f) { return lmx_conversion_pixel(nullptr, pixel, result, f); }},
        {"source", [&](auto* f) { return lmx_conversion_run(c, nullptr, &image, nullptr, f); }},
        {"destination",
         [&](auto* f) { return lmx_conversion_run(c, &image, nullptr, nullptr, f); }},
        {"conversion", [&](auto* f) { return lmx_conversion_explain(nullptr, &text, f); }},
        {"", [&](auto* f) { return lmx_conversion_explain(c, nullptr, f); }},
    };
    for (const auto& [says, call] : calls) {
        lmx_fault fault = emptyFault();
        expectRefused(call(&fault), LMX_ERR_INVALID, fault, says);
        EXPECT_EQ(call(nullptr), LMX_ERR_INVALID);
    }
    EXPECT_EQ(lmx_conversion_channels(nullptr, nullptr, nullptr), LMX_ERR_INVALID);
    EXPECT_EQ(lmx_profile_channels(nullptr), 0);
    lmx_conversion_free(nullptr);
    lmx_profile_free(nullptr);
    lmx_free(nullptr);
    lmx_options_init(nullptr);
}

TEST(ProfileFromBytes, ReadsNothingWhereNoProfileCanBe) {
    lmx_profile* profile = nullptr;
    lmx_fault fault = emptyFault();
    expectRefused(lmx_profile_from_bytes(nullptr, 10, &profile, &fault), LMX_ERR_NULL_DATA, fault,
                  "no bytes");
    for (const uint64_t size : {uint64_t{1} << 32, uint64_t{1} << 63, ~uint64_t{0}})
        expectRefused(lmx_profile_from_bytes("a", size, &profile, &fault), LMX_ERR_READ, fault,
                      "4 GiB");
    EXPECT_EQ(profile, nullptr);
}

TEST(FaultRecord, OfAnotherSizeIsLeftAlone) {
    lmx_fault fault = emptyFault();
    fault.size = 4;
    EXPECT_EQ(lmx_profile_named("nothing", nullptr, &fault), LMX_ERR_INVALID);
    EXPECT_EQ(fault.code, -1);
}

TEST(FaultRecord, CutsLongSentencesBetweenCharacters) {
    // A description of 'ä' in UTF-16 (multiLocalizedUnicodeType) becomes part of the sentence.
    Bytes text = {'m', 'l', 'u', 'c', 0,   0,   0, 0, 0, 0, 0, 1, 0, 0,
                  0,   12,  'e', 'n', 'U', 'S', 0, 0, 8, 0, 0, 0, 0, 28};
    for (int i = 0; i < 1024; ++i)
        text.insert(text.end(), {0, 0xE4});
    const Bytes bytes = ProfileBytes("prtr", "CMYK", "Lab ").addTag("desc", text).image();
    try {
        const Profile profile = Profile::fromBytes(bytes.data(), bytes.size());
        const Conversion impossible(profile, Profile::named("Lab"));
        FAIL() << "there is no fault";
    } catch (const lumoxa::Error& error) {
        const std::string sentence = error.what();
        EXPECT_GE(sentence.size(), sizeof lmx_fault::sentence - 3);
        EXPECT_EQ(sentence.substr(sentence.size() - 2), "\xC3\xA4");
    }
}

// Gray floats and four inks of a byte have one size, so that a pixel can give way to the other.
TEST(CppInterface, ConvertsInPlaceWherePixelsKeepTheirPlaces) {
    const Bytes press = profileZoo().at("press");
    const Conversion toInks(Profile::named("gray"), Profile::fromBytes(press.data(), press.size()));
    constexpr int kWidth = 300, kHeight = 200;
    std::vector<float> gray(size_t{kWidth} * kHeight);
    for (size_t i = 0; i < gray.size(); ++i)
        gray[i] = static_cast<float>(i % 997) / 996.0f;
    std::vector<uint8_t> apart(gray.size() * 4);
    const ImageView source = ImageView::packed(gray.data(), kWidth, kHeight, 1);
    auto* const inks = reinterpret_cast<uint8_t*>(gray.data());
    EXPECT_TRUE(toInks.run(source, ImageView::packed(apart.data(), kWidth, kHeight, 4)));
    EXPECT_TRUE(toInks.run(source, ImageView::packed(inks, kWidth, kHeight, 4)));
    EXPECT_EQ(std::vector<uint8_t>(inks, inks + apart.size()), apart);
}

TEST(CppInterface, ThrowsForWhatDoesNotFit) {
    const Profile srgb = Profile::named("sRGB");
    const Conversion conversion(srgb, srgb);
    uint8_t pixels[12] = {};
    const ImageView good = ImageView::packed(pixels, 2, 2, 3);
    EXPECT_THROW(conversion({0, 0}), lumoxa::Error);
    EXPECT_THROW(conversion({}), lumoxa::Error);
    EXPECT_THROW(conversion.run(good, ImageView()), lumoxa::Error);
    const ImageView huge = ImageView::packed(pixels, kMost64, kMost64, 0x7FFFFFFF);
    EXPECT_THROW(conversion.run(huge, huge), lumoxa::Error);
    EXPECT_THROW(Conversion(std::vector<Profile>()), lumoxa::Error);
    EXPECT_THROW(Conversion({srgb}), lumoxa::Error);
    EXPECT_THROW(lumoxa::makeLink({srgb, Profile::named("Lab")}), lumoxa::Error);
    EXPECT_THROW(lumoxa::makeLink({srgb, srgb}, {}, lumoxa::Sample::F32), lumoxa::Error);
    EXPECT_THROW(Profile::named(""), lumoxa::Error);
    EXPECT_THROW(Profile::fromBytes(nullptr, 0), lumoxa::Error);
    EXPECT_THROW(Profile::fromFile("/no such file"), lumoxa::Error);
    EXPECT_THROW(Profile::fromFile("."), lumoxa::Error);  // a folder opens, but can't be read
    EXPECT_THROW(srgb.withText(LMX_SIGNATURE('d', 'e', 's', 'c'), std::string("a\0b", 3)),
                 lumoxa::Error);
}

TEST(Conversion, GivesTheSameBytesOnThreadsAtOnce) {
    constexpr int kThreads = 8;
    constexpr int64_t kPixels = 20000;
    SeededRandom random(3);
    const std::vector<uint16_t> rgb = random.samples(3 * kPixels);
    for (const char* plan : {"gamma", "proofer", "ab"}) {
        const Conversion conversion(fromZoo(plan), fromZoo("press"));
        const auto converted = [&](int threads) {
            std::vector<uint16_t> inks(4 * kPixels);
            Conversion::Run run;
            run.threads = threads;
            conversion.run(ImageView::packed(rgb.data(), kPixels, 1, 3),
                           ImageView::packed(inks.data(), kPixels, 1, 4), run);
            return inks;
        };
        const std::vector<uint16_t> alone = converted(1);
        const std::string explained = conversion.explain();
        std::vector<std::thread> threads;
        std::vector<int> same(kThreads);
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([&, t] {
                same[static_cast<size_t>(t)] =
                    converted(1 + t % 3) == alone && conversion.explain() == explained;
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(same, std::vector<int>(kThreads, 1)) << plan;
    }
}

}  // namespace
}  // namespace lumoxa_test
