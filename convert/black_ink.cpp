// SPDX-License-Identifier: Apache-2.0
#include "convert/black_ink.h"

#include <algorithm>
#include <cmath>

namespace lumoxa::engine {
namespace {

constexpr int kBlack = 3;  // of C, M, Y, K

class BlackInk : public Stage {
  public:
    BlackInk(StageList whole, BlackInkCurve curve)
        : Stage(4, 4), whole_(std::move(whole)), curve_(std::move(curve)) {}

    void run(Row* rows, int pixels) const override {
        Row black;
        bool alone[kBlockPixels];
        for (int i = 0; i < pixels; ++i) {
            alone[i] = !(rows[0][i] > 0.0f) && !(rows[1][i] > 0.0f) && !(rows[2][i] > 0.0f);
            black[i] = clipped(rows[kBlack][i], 1.0f) * static_cast<float>(curve_.ink.size() - 1);
        }
        lookUpRow(curve_.ink.data(), static_cast<int32_t>(curve_.ink.size()) - 2, black, pixels);
        whole_.run(rows, pixels);
        for (int c = 0; c < outputs(); ++c) {
            for (int i = 0; i < pixels; ++i) {
                const float own = c == kBlack ? black[i] : 0.0f;
                rows[c][i] = alone[i] ? own : rows[c][i];
            }
        }
    }
    std::string describe() const override { return "black ink kept"; }

  private:
    StageList whole_;
    BlackInkCurve curve_;
};

}  // namespace

BlackInkCurve matchBlackInk(const std::vector<float>& wanted, const std::vector<float>& possible) {
    // L* falls with ink; the running minimum makes it do so where a profile is noisy.
    std::vector<float> falling = possible;
    for (size_t i = 1; i < falling.size(); ++i)
        falling[i] = std::min(falling[i], falling[i - 1]);
    const auto last = static_cast<float>(falling.size() - 1);
    BlackInkCurve curve;
    size_t at = 0;
    float least = 0.0f;
    for (const float lightness : wanted) {
        while (at + 1 < falling.size() && falling[at + 1] >= lightness)
            ++at;
        float place = static_cast<float>(at);
        float reached = falling[at];
        if (at + 1 < falling.size() && falling[at] > lightness) {
            place += (falling[at] - lightness) / (falling[at] - falling[at + 1]);
            reached = lightness;
        }
        least = std::max(least, place / last);
        curve.ink.push_back(std::min(least, 1.0f));
        curve.largestError =
            std::max(curve.largestError, static_cast<double>(std::fabs(reached - lightness)));
        at = static_cast<size_t>(least * last);
    }
    curve.ink.front() = 0.0f;  // paper stays paper
    return curve;
}

std::shared_ptr<const Stage> makeBlackInk(StageList whole, BlackInkCurve curve) {
    return std::make_shared<BlackInk>(std::move(whole), std::move(curve));
}

}  // namespace lumoxa::engine
