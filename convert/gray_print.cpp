// SPDX-License-Identifier: Apache-2.0
#include "convert/gray_print.h"

#include <algorithm>
#include <utility>

#include "convert/tag_stages.h"
#include "eval/gray_kernels.h"
#include "gray/gray_builders.h"
#include "lumoxa/profile.h"
#include "lumoxa/tags.h"
#include "lut/table_lookup.h"

namespace lumoxa::engine {
namespace {

constexpr float kMostTone = 127;   // of a* and b*, either way
constexpr float kMostShape = 100;  // of the contrast, either way

/// Three tables, all of them read at the first channel.
class FirstChannelStage : public Stage {
  public:
    FirstChannelStage(const GrayTableView& view) : Stage(3, 3) {
        for (size_t c = 0; c < tables_.size(); ++c)
            tables_[c].assign(view.tables[c], view.tables[c] + view.entries);
    }

    void run(Row* rows, int pixels) const override {
        const auto last = static_cast<float>(tables_[0].size() - 1);
        for (int i = 0; i < pixels; ++i)
            rows[0][i] = clipped(rows[0][i], 1.0f) * last;
        for (size_t c = tables_.size(); c-- > 0;) {
            std::copy_n(rows[0], pixels, rows[c]);
            lookUpRow(tables_[c].data(), static_cast<int32_t>(tables_[c].size()) - 2, rows[c],
                      pixels);
            for (int i = 0; i < pixels; ++i)
                rows[c][i] *= 1.0f / kSampleMax16;
        }
    }
    std::string describe() const override {
        return "gray tables of " + std::to_string(tables_[0].size());
    }

  private:
    std::array<std::vector<uint16_t>, 3> tables_;
};

void requireRange(float value, float low, float high, const char* what) {
    if (value >= low && value <= high) return;
    throw FaultError(icErrInvalid, std::string("the tone of the print has ") + what + " outside " +
                                       std::to_string(static_cast<int>(low)) + ".." +
                                       std::to_string(static_cast<int>(high)));
}

void requireSound(const GrayPrintTone& tone, uint32_t intent) {
    requireRange(tone.a, -kMostTone, kMostTone, "a*");
    requireRange(tone.b, -kMostTone, kMostTone, "b*");
    requireRange(tone.fade, 0, 1, "a fade");
    requireRange(tone.shape, -kMostShape, kMostShape, "a shape");
    if (tone.shape != 0 && (intent != icPerceptual || !tone.shaped))
        throw FaultError(icErrInvalid,
                         "only perceptual prints whose tones are shaped have a shape");
    if (tone.fade != 0 && !tone.points.empty())
        throw FaultError(icErrInvalid, "a split tone has no fade");
    float last = -1;
    for (size_t i = 0; i + 2 < tone.points.size(); i += 3) {
        requireRange(tone.points[i], 0, 100, "L*");
        requireRange(tone.points[i + 1], -kMostTone, kMostTone, "a*");
        requireRange(tone.points[i + 2], -kMostTone, kMostTone, "b*");
        if (!(tone.points[i] > last))
            throw FaultError(icErrInvalid, "the L* of a split tone must rise from point to point");
        last = tone.points[i];
    }
}

uint16_t coded(float chroma) {
    return roundClipped<uint16_t>(float{kLabNeutral} + kLabChromaScale * chroma);
}

GrayRequest requestOf(const GrayPrintTone& tone) {
    GrayRequest request;
    request.tone.pair = {coded(tone.a), coded(tone.b)};
    request.tone.fade = tone.fade;
    if (!tone.points.empty()) request.tone.controlPoints = {tone.points.data(), tone.points.size()};
    request.shaped = tone.shaped;
    request.shapingParameter = tone.shape;
    return request;
}

}  // namespace

bool isGrayPrint(const ProfileView& profile, Direction direction) {
    return profile.header().colorSpace == kSpaceGray && profile.has(kGrayTag) &&
           lutTagOf(profile, icPerceptual, direction) == 0;
}

Side grayPrintSide(const ProfileView& profile, uint32_t intent, Direction direction,
                   const GrayPrintTone& tone) {
    if (profile.header().pcs != kSpaceLab) {
        profile.require(kGrayTag).fail(icErrTagType, -1,
                                       "has gray tones, which lead to Lab, but the header says " +
                                           quoted(profile.header().pcs));
    }
    if (direction == Direction::kToDevice) requireSound(tone, intent);
    icProfile_t handle = nullptr;
    const auto& bytes = profile.bytes();
    int code = icProfileLoadFromBuffer(nullptr, bytes.data(), bytes.size(), &handle);
    const ProfilePtr owner(const_cast<icProfileInternal*>(handle));
    GrayStatePtr state;
    const bool toPcs = direction == Direction::kToPcs;
    if (code == icSuccess) {
        code = buildGrayState(*handle, toPcs ? icDeviceToPcs : icPcsToDevice,
                              static_cast<icRenderingIntent>(intent), requestOf(tone), state);
    }
    if (code == icErrNoMemory) throw std::bad_alloc();
    if (code != icSuccess || state->built == 0) {
        profile.require(kGrayTag).fail(code != icSuccess ? code : icErrTagType, -1,
                                       "has patches that no tone curve can be made from");
    }
    constexpr bool kLegacyLab = true;
    const Affine decode = decoding(kSpaceLab, kLegacyLab);
    Affine encode;
    decode.invert(encode);
    const std::string origin = quoted(kGrayTag) + " of " + profile.title();
    const auto tables =
        std::make_shared<FirstChannelStage>(toPcs ? inTablesOf(*state) : outTablesOf(*state));
    Side side;
    side.pcs = kSpaceLab;
    if (!toPcs)
        side.stages.append(std::make_shared<AffineStage>(encode, "encoding of Lab"), origin);
    side.stages.append(tables, origin);
    if (toPcs) side.stages.append(std::make_shared<AffineStage>(decode, "decoding of Lab"), origin);
    return side;
}

bool isGrayPrintStage(const Stage& stage) {
    return dynamic_cast<const FirstChannelStage*>(&stage) != nullptr;
}

}  // namespace lumoxa::engine
