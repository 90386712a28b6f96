// SPDX-License-Identifier: Apache-2.0
#include "convert/ink_limit.h"

#include <algorithm>

namespace lumoxa::engine {
namespace {

constexpr float kPercent = 100.0f;
constexpr float kHalfStep = 0.5f / 255.0f;  // what rounding to 8 bits can add to an ink

class InkLimit : public Stage {
  public:
    InkLimit(int channels, int black, float percent)
        : Stage(channels, channels),
          black_(black),
          percent_(percent),
          limit_(std::max(percent / kPercent - static_cast<float>(channels) * kHalfStep, 0.0f)) {}

    void run(Row* rows, int pixels) const override {
        Row colour = {}, factor;
        for (int c = 0; c < inputs(); ++c) {
            for (int i = 0; i < pixels; ++i) {
                rows[c][i] = clipped(rows[c][i], 1.0f);
                colour[i] += c == black_ ? 0.0f : rows[c][i];
            }
        }
        for (int i = 0; i < pixels; ++i) {
            const float black = black_ >= 0 ? std::min(rows[black_][i], limit_) : 0.0f;
            if (black_ >= 0) rows[black_][i] = black;
            const float room = limit_ - black;
            factor[i] = colour[i] > room ? room / colour[i] : 1.0f;
        }
        for (int c = 0; c < inputs(); ++c) {
            for (int i = 0; c != black_ && i < pixels; ++i)
                rows[c][i] *= factor[i];
        }
    }

    std::string describe() const override {
        return "ink limit " + std::to_string(static_cast<int>(percent_ + 0.5f)) + " %";
    }

  private:
    int black_;
    float percent_;
    float limit_;
};

}  // namespace

std::shared_ptr<const Stage> makeInkLimit(int channels, int black, float percent) {
    return std::make_shared<InkLimit>(channels, black, percent);
}

}  // namespace lumoxa::engine
