// SPDX-License-Identifier: Apache-2.0
//
// The accurate engine for C: profiles with faults in words, conversions, device links.
#include <algorithm>
#include <iterator>
#include <memory>

#include "capi/fault_guard.h"
#include "capi/handles.h"
#include "convert/builtin_spaces.h"
#include "convert/conversion.h"
#include "convert/conversion_cache.h"
#include "convert/run.h"
#include "lumoxa/lumoxa.h"
#include "make/device_link.h"

struct lmx_conversion_record {
    std::shared_ptr<const lumoxa::engine::ReadyConversion> conversion;
};

struct lmx_conversion_cache_record {
    lumoxa::engine::ConversionCache cache;
};

namespace lumoxa {
namespace {

using engine::ConversionRequest;
using engine::ProfileView;

icRenderingIntent intentOf(uint32_t number) {
    if (number <= icAbsoluteColorimetric) return static_cast<icRenderingIntent>(number);
    throw FaultError(LMX_ERR_INVALID,
                     "there is no rendering intent " + std::to_string(number) + ", only 0 to 3");
}

engine::GrayPrintTone toneOf(const lmx_gray_tone* record) {
    engine::GrayPrintTone tone;
    if (record == nullptr) return tone;
    const lmx_gray_tone given = copiedRecord(*record, "lmx_gray_tone");
    if (given.point_count < 0 || (given.point_count > 0 && given.points == nullptr))
        throw FaultError(LMX_ERR_INVALID, "the split tone has no points where it says so");
    tone.given = true;
    tone.a = given.a;
    tone.b = given.b;
    tone.fade = given.fade;
    tone.points.assign(given.points, given.points + 3 * static_cast<ptrdiff_t>(given.point_count));
    tone.shaped = given.shaped != 0;
    tone.shape = given.shape;
    return tone;
}

engine::ChainOptions chainOptionsOf(const lmx_options& given) {
    engine::ChainOptions options;
    options.blackPointCompensation = given.black_point_compensation != 0;
    options.tone = toneOf(given.tone);
    options.markOutOfGamut = given.mark_out_of_gamut != 0;
    std::copy_n(given.gamut_mark, options.gamutMark.size(), options.gamutMark.begin());
    options.preserveBlack = given.preserve_black != 0;
    options.inkLimit = given.ink_limit;
    return options;
}

std::vector<icRenderingIntent> intentsOf(const lmx_options& options, int32_t profiles) {
    const auto steps = static_cast<uint32_t>(profiles) - 1;
    if (options.intents == nullptr) return {intentOf(options.intent)};
    if (options.intent_count != steps) {
        throw FaultError(LMX_ERR_INVALID, "there are " + std::to_string(options.intent_count) +
                                              " intents for a chain of " + std::to_string(steps) +
                                              " steps");
    }
    if (steps == 0) return {icRelativeColorimetric};
    std::vector<icRenderingIntent> intents;
    std::transform(options.intents, options.intents + steps, std::back_inserter(intents), intentOf);
    return intents;
}

ConversionRequest requestOf(lmx_profile* const* chain, int32_t count, const lmx_options* record) {
    if (count < 1 || count > engine::kMaxProfiles) {
        throw FaultError(LMX_ERR_INVALID, "a chain has 1 to " +
                                              std::to_string(engine::kMaxProfiles) +
                                              " profiles, not " + std::to_string(count));
    }
    requireArgument(chain, "the chain");
    lmx_options options = {};
    lmx_options_init(&options);
    if (record != nullptr) options = copiedRecord(*record, "lmx_options");
    ConversionRequest request;
    for (int32_t i = 0; i < count; ++i) {
        try {
            request.profiles.push_back(imageOf(requireProfile(chain[i])));
        } catch (const FaultError& error) {
            Fault fault = error.fault();
            fault.profileIndex = i;
            fault.sentence = "profile " + std::to_string(i + 1) + ": " + fault.sentence;
            throw FaultError(fault);
        }
    }
    request.intents = intentsOf(options, count);
    request.options = chainOptionsOf(options);
    request.exact = options.exact != 0;
    if (options.proof != nullptr) {
        request.proof = imageOf(requireProfile(options.proof));
        request.proofIntent = intentOf(options.proof_intent);
    }
    return request;
}

engine::PixelView viewOf(const lmx_image& record) {
    const lmx_image image = copiedRecord(record, "lmx_image");
    engine::PixelView view;
    view.data = image.data;
    view.sample = static_cast<engine::SampleType>(image.sample);
    view.width = image.width;
    view.height = image.height;
    view.channels = image.channels;
    view.channelStride = image.channel_stride;
    view.pixelStride = image.pixel_stride;
    view.rowStride = image.row_stride;
    return view;
}

/// The C callback behind the engine's.
struct RunListener {
    lmx_run_progress progress;
    void* user;

    static bool hear(double done, void* listener) {
        const auto& self = *static_cast<const RunListener*>(listener);
        return self.progress(done, self.user) == 0;
    }
};

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

void lmx_free(void* block) {
    icFree(block);
}

// --- Profiles ------------------------------------------------------------------------------------

int32_t lmx_profile_from_bytes(const void* bytes, uint64_t size, lmx_profile** out,
                               lmx_fault* fault) {
    if (out != nullptr) *out = nullptr;
    return faultGuarded(fault, [&] {
        requireArgument(out, "the address of the handle");
        if (bytes == nullptr)
            throw FaultError(LMX_ERR_NULL_DATA, "there are no bytes of a profile");
        constexpr uint64_t kMostBytes = 0xFFFFFFFF;  // the header holds a size of 32 bits
        if (size > kMostBytes) {
            throw FaultError(
                LMX_ERR_READ,
                std::to_string(size) + " bytes are no ICC profile: one has less than 4 GiB");
        }
        const auto* first = static_cast<const uint8_t*>(bytes);
        *out = profileOf(std::vector<uint8_t>(first, first + size));
        return LMX_SUCCESS;
    });
}

int32_t lmx_profile_named(const char* name, lmx_profile** out, lmx_fault* fault) {
    if (out != nullptr) *out = nullptr;
    return faultGuarded(fault, [&] {
        requireArgument(out, "the address of the handle");
        requireArgument(name, "the name");
        *out = profileOf(engine::builtInSpace(name));
        return LMX_SUCCESS;
    });
}

int32_t lmx_profile_bytes(lmx_profile* profile, uint8_t** bytes, uint64_t* size, lmx_fault* fault) {
    if (bytes != nullptr) *bytes = nullptr;
    return faultGuarded(fault, [&] {
        requireArgument(bytes, "the address of the block");
        requireArgument(size, "the address of the size");
        const ProfileImage image = imageOf(requireProfile(profile));
        *bytes = handedOut<uint8_t>(image->data(), image->size());
        *size = image->size();
        return LMX_SUCCESS;
    });
}

int32_t lmx_profile_text(lmx_profile* profile, char** text, lmx_fault* fault) {
    if (text != nullptr) *text = nullptr;
    return faultGuarded(fault, [&] {
        requireArgument(text, "the address of the text");
        *text = handedOut(ProfileView(imageOf(requireProfile(profile)), 0).description());
        return LMX_SUCCESS;
    });
}

int32_t lmx_profile_channels(lmx_profile* profile) {
    int32_t channels = 0;
    faultGuarded(nullptr, [&] {
        const ProfileView view(imageOf(requireProfile(profile)), 0);
        const bool grayPrint = isGrayPrint(view, engine::Direction::kToPcs) ||
                               isGrayPrint(view, engine::Direction::kToDevice);
        channels =
            grayPrint ? engine::kGrayPrintChannels : engine::channelsOf(view.header().colorSpace);
        return LMX_SUCCESS;
    });
    return channels;
}

// --- Conversions ---------------------------------------------------------------------------------

void lmx_options_init(lmx_options* options) {
    if (options == nullptr) return;
    *options = {};
    options->size = sizeof *options;
    options->intent = LMX_RELATIVE_COLORIMETRIC;
    options->black_point_compensation = 1;
    options->proof_intent = LMX_RELATIVE_COLORIMETRIC;
    for (float& channel : options->gamut_mark)
        channel = 0.5f;
}

int32_t lmx_conversion_create(lmx_profile* const* chain, int32_t count, const lmx_options* options,
                              lmx_conversion** out, lmx_fault* fault) {
    if (out != nullptr) *out = nullptr;
    return faultGuarded(fault, [&] {
        requireArgument(out, "the address of the handle");
        *out = new lmx_conversion_record{
            std::make_shared<const engine::ReadyConversion>(requestOf(chain, count, options))};
        return LMX_SUCCESS;
    });
}

int32_t lmx_conversion_cache_create(int32_t capacity, lmx_conversion_cache** out,
                                    lmx_fault* fault) {
    if (out != nullptr) *out = nullptr;
    return faultGuarded(fault, [&] {
        requireArgument(out, "the address of the handle");
        if (capacity < 1) {
            throw FaultError(LMX_ERR_INVALID, "a cache keeps 1 or more conversions, not " +
                                                  std::to_string(capacity));
        }
        *out =
            new lmx_conversion_cache_record{engine::ConversionCache(static_cast<size_t>(capacity))};
        return LMX_SUCCESS;
    });
}

int32_t lmx_conversion_cache_get(lmx_conversion_cache* cache, lmx_profile* const* chain,
                                 int32_t count, const lmx_options* options, lmx_conversion** out,
                                 lmx_fault* fault) {
    if (out != nullptr) *out = nullptr;
    return faultGuarded(fault, [&] {
        requireArgument(cache, "the cache");
        requireArgument(out, "the address of the handle");
        *out = new lmx_conversion_record{cache->cache.get(requestOf(chain, count, options))};
        return LMX_SUCCESS;
    });
}

void lmx_conversion_cache_free(lmx_conversion_cache* cache) {
    delete cache;
}

void lmx_conversion_free(lmx_conversion* conversion) {
    delete conversion;
}

int32_t lmx_conversion_channels(lmx_conversion* conversion, int32_t* in, int32_t* out) {
    if (conversion == nullptr) return LMX_ERR_INVALID;
    if (in != nullptr) *in = conversion->conversion->inputs();
    if (out != nullptr) *out = conversion->conversion->outputs();
    return LMX_SUCCESS;
}

int32_t lmx_conversion_run(lmx_conversion* conversion, const lmx_image* source,
                           const lmx_image* destination, const lmx_run_options* options,
                           lmx_fault* fault) {
    return faultGuarded(fault, [&] {
        requireArgument(conversion, "the conversion");
        requireArgument(source, "the source");
        requireArgument(destination, "the destination");
        lmx_run_options record = {};
        record.size = sizeof record;
        if (options != nullptr) record = copiedRecord(*options, "lmx_run_options");
        RunListener listener = {record.progress, record.user};
        engine::RunOptions run;
        run.threads = record.threads;
        run.premultiplied = record.premultiplied != 0;
        run.progress = record.progress != nullptr ? RunListener::hear : nullptr;
        run.user = &listener;
        const engine::RunResult result = engine::runConversion(
            conversion->conversion->plan(), viewOf(*source), viewOf(*destination), run);
        return result == engine::RunResult::kDone ? LMX_SUCCESS : LMX_CANCELLED;
    });
}

int32_t lmx_conversion_pixel(lmx_conversion* conversion, const float* source, float* destination,
                             lmx_fault* fault) {
    return faultGuarded(fault, [&] {
        requireArgument(conversion, "the conversion");
        requireArgument(source, "the source");
        requireArgument(destination, "the destination");
        using engine::SampleType;
        conversion->conversion->exactPlan().convert(SampleType::kF32, source, SampleType::kF32,
                                                    destination, 1);
        return LMX_SUCCESS;
    });
}

int32_t lmx_conversion_explain(lmx_conversion* conversion, char** json, lmx_fault* fault) {
    if (json != nullptr) *json = nullptr;
    return faultGuarded(fault, [&] {
        requireArgument(conversion, "the conversion");
        requireArgument(json, "the address of the text");
        *json = handedOut(conversion->conversion->explain());
        return LMX_SUCCESS;
    });
}

int32_t lmx_make_link(lmx_profile* const* chain, int32_t count, const lmx_options* options,
                      int32_t precision, lmx_profile** out, lmx_fault* fault) {
    if (out != nullptr) *out = nullptr;
    return faultGuarded(fault, [&] {
        requireArgument(out, "the address of the handle");
        if (precision != LMX_SAMPLES_8 && precision != LMX_SAMPLES_16) {
            throw FaultError(LMX_ERR_INVALID, "a link has tables of 8 or 16 bits");
        }
        const auto bits =
            precision == LMX_SAMPLES_8 ? engine::LinkPrecision::k8 : engine::LinkPrecision::k16;
        *out = profileOf(engine::makeLink(requestOf(chain, count, options), bits));
        return LMX_SUCCESS;
    });
}
