// SPDX-License-Identifier: Apache-2.0
#include "convert/gamut.h"

#include <algorithm>
#include <cmath>

#include "convert/error_measure.h"
#include "convert/stages.h"
#include "convert/tag_stages.h"
#include "xform/tag_choice.h"

namespace lumoxa::engine {
namespace {

/// Delta E*ab that nobody sees.
constexpr double kInvisible = 1.0;

std::shared_ptr<const Stage> changeBetween(uint32_t from, uint32_t to) {
    if (from == to) return nullptr;
    if (to == kSpaceLab) return std::make_shared<XyzToLabStage>();
    return std::make_shared<LabToXyzStage>();
}

void appendChange(StageList& list, uint32_t from, uint32_t to) {
    if (auto stage = changeBetween(from, to)) list.append(std::move(stage), "CIE 15");
}

}  // namespace

GamutTest::GamutTest(const ProfileView& device) {
    byTag_ = readTag(device);
    if (byTag_) return;
    const Side out = sideOf(device, icRelativeColorimetric, Direction::kToDevice);
    const Side back = sideOf(device, icRelativeColorimetric, Direction::kToPcs);
    appendChange(thereAndBack_, kSpaceLab, out.pcs);
    thereAndBack_.append(out.stages);
    thereAndBack_.append(back.stages);
    appendChange(thereAndBack_, back.pcs, kSpaceLab);
    thereAndBack_ = simplified(thereAndBack_);
    measureInside();
}

/// A tag that a stage list can't be made of is as good as none.
bool GamutTest::readTag(const ProfileView& device) {
    const std::optional<TagReader> tag = device.find(kGamutTag);
    if (!tag) return false;
    try {
        const uint32_t pcs = device.header().pcs;
        appendChange(toAnswer_, kSpaceLab, pcs);
        toAnswer_.append(lutStages(*tag, pcs, kSpaceGray, "'gamt'"));
        toAnswer_ = simplified(toAnswer_);
        return true;
    } catch (const FaultError&) {
        toAnswer_ = {};
        return false;
    }
}

void GamutTest::run(Row* lab, int pixels, float* excess) const {
    if (byTag_) {
        constexpr float kPercent = 100.0f;
        toAnswer_.run(lab, pixels);
        const float* const answer = lab[0];
        for (int i = 0; i < pixels; ++i)
            excess[i] = clipped(answer[i], 1.0f) * kPercent;
        return;
    }
    Row asked[3] = {};
    for (int c = 0; c < 3; ++c)
        std::copy_n(lab[c], pixels, asked[c]);
    thereAndBack_.run(lab, pixels);
    for (int i = 0; i < pixels; ++i) {
        const float dL = lab[0][i] - asked[0][i], da = lab[1][i] - asked[1][i],
                    db = lab[2][i] - asked[2][i];
        const float moved = std::sqrt(dL * dL + da * da + db * db);
        // 0 also for what is not a number.
        excess[i] = std::max(0.0f, moved - static_cast<float>(limit_));
    }
}

/// Colours that have been to the device and back lie inside; what the way moves those by is the
/// profile's own error.
void GamutTest::measureInside() {
    constexpr int kColours = 512;
    constexpr uint32_t kSeed = 7;
    constexpr float kChroma = 200.0f;  // a* and b* of -100..100
    const std::vector<uint16_t> samples = randomSamples(3, kColours, kSeed);
    std::vector<float> moved(kColours);
    Row rows[kMaxChannels] = {};
    for (int done = 0; done < kColours; done += kBlockPixels) {
        for (int i = 0; i < kBlockPixels; ++i) {
            const uint16_t* const at = &samples[3 * static_cast<size_t>(done + i)];
            const auto unit = [&](int c) { return static_cast<float>(at[c]) / kSampleMax16; };
            rows[0][i] = unit(0) * 100.0f;
            rows[1][i] = (unit(1) - 0.5f) * kChroma;
            rows[2][i] = (unit(2) - 0.5f) * kChroma;
        }
        thereAndBack_.run(rows, kBlockPixels);
        run(rows, kBlockPixels, moved.data() + done);
    }
    const auto percentile = moved.begin() + kColours * 99 / 100;
    std::nth_element(moved.begin(), percentile, moved.end());
    limit_ = kInvisible + (std::isfinite(*percentile) ? static_cast<double>(*percentile) : 0.0);
}

// --- marking -------------------------------------------------------------------------------------

namespace {

class GamutMark : public Stage {
  public:
    GamutMark(StageList whole, StageList toLab, int inputs, std::shared_ptr<const GamutTest> test,
              std::vector<float> mark)
        : Stage(inputs, static_cast<int>(mark.size())),
          whole_(std::move(whole)),
          toLab_(std::move(toLab)),
          test_(std::move(test)),
          mark_(std::move(mark)) {}

    void run(Row* rows, int pixels) const override {
        Row asked[kMaxChannels] = {};
        Row excess;
        for (int c = 0; c < inputs(); ++c)
            std::copy_n(rows[c], pixels, asked[c]);
        toLab_.run(asked, pixels);
        test_->run(asked, pixels, excess);
        whole_.run(rows, pixels);
        for (size_t c = 0; c < mark_.size(); ++c) {
            for (int i = 0; i < pixels; ++i)
                rows[c][i] = excess[i] > 0.0f ? mark_[c] : rows[c][i];
        }
    }
    std::string describe() const override {
        return test_->byTag() ? "gamut mark by tag 'gamt'" : "gamut mark by the way to and fro";
    }

  private:
    StageList whole_, toLab_;
    std::shared_ptr<const GamutTest> test_;
    std::vector<float> mark_;
};

}  // namespace

std::shared_ptr<const Stage> makeGamutMark(StageList whole, StageList toLab, int inputs,
                                           std::shared_ptr<const GamutTest> test,
                                           std::vector<float> mark) {
    return std::make_shared<GamutMark>(std::move(whole), std::move(toLab), inputs, std::move(test),
                                       std::move(mark));
}

}  // namespace lumoxa::engine
