// SPDX-License-Identifier: Apache-2.0
#include "convert/inverse_table.h"

#include <algorithm>

#include "base/pcs_encoding.h"

namespace lumoxa::engine {
namespace {

/// Steps of y for which a search begins close by. More than curves have entries in their steep
/// part, few enough to stay in the first-level cache.
constexpr uint32_t kGuideSteps = 1024;
/// Entries equal to the first or the last are what rounding leaves of a flat end, where black stays
/// 0 and white 1; more of them than this share of the curve are a clipped range (film codes, spaces
/// with headroom), which begins where the curve begins to change. Gamma 3 rounds 1/50 to zero.
constexpr float kClippedRange = 1.0f / 32;

}  // namespace

InverseTable::InverseTable(const std::vector<float>& values)
    : falling_(values.back() < values.front()), rising_(values) {
    if (falling_) std::reverse(rising_.begin(), rising_.end());
    for (size_t i = 1; i < rising_.size(); ++i)
        rising_[i] = std::max(rising_[i], rising_[i - 1]);
    perEntry_ = 1.0f / static_cast<float>(rising_.size() - 1);
    findEnds();
    const float range = rising_.back() - rising_.front();
    perStep_ = range > 0 ? static_cast<float>(kGuideSteps) / range : 0.0f;
    guide_.resize(kGuideSteps + 2);
    uint32_t entry = 0;
    for (uint32_t step = 0; step < guide_.size(); ++step) {
        const float y = rising_.front() + static_cast<float>(step) / kGuideSteps * range;
        while (entry + 1 < rising_.size() && rising_[entry + 1] <= y)
            ++entry;
        guide_[step] = entry;
    }
}

void InverseTable::findEnds() {
    if (!(rising_.front() < rising_.back())) return;
    const auto at = [&](auto entry) {
        return static_cast<float>(entry - rising_.begin()) * perEntry_;
    };
    const float low = at(std::upper_bound(rising_.begin(), rising_.end(), rising_.front()) - 1);
    const float high = at(std::lower_bound(rising_.begin(), rising_.end(), rising_.back()));
    if (low > kClippedRange) atLowest_ = low;
    if (high < 1.0f - kClippedRange) atHighest_ = high;
}

float InverseTable::lookUp(float y) const {
    if (!(y > rising_.front())) return atLowest_;
    if (y >= rising_.back()) return atHighest_;
    const auto step = static_cast<size_t>(
        std::min((y - rising_.front()) * perStep_, static_cast<float>(kGuideSteps)));
    // One entry of tolerance on either side, as the step was rounded.
    const float* const entries = rising_.data();
    const float* const first = entries + (step > 0 ? guide_[step - 1] : 0);
    const float* const last = entries + std::min<size_t>(guide_[step + 1] + 2, rising_.size());
    const auto i = static_cast<size_t>(std::upper_bound(first, last, y) - entries) - 1;
    const float low = rising_[i];
    return (static_cast<float>(i) + (y - low) / (rising_[i + 1] - low)) * perEntry_;
}

void InverseTable::run(float* row, int count) const {
    for (int i = 0; i < count; ++i) {
        const float x = lookUp(row[i]);
        row[i] = falling_ ? 1.0f - x : x;
    }
}

std::string InverseTable::describe() const {
    return "inverse table of " + std::to_string(rising_.size());
}

CurvePtr InverseTable::inverse() const {
    std::vector<uint16_t> entries(rising_.size());
    std::transform(rising_.begin(), rising_.end(), entries.begin(),
                   [](float value) { return roundClipped<uint16_t>(value * kSampleMax16); });
    if (falling_) std::reverse(entries.begin(), entries.end());
    return tableCurve(std::move(entries));
}

bool InverseTable::operator==(const Curve& other) const {
    const auto* same = dynamic_cast<const InverseTable*>(&other);
    return same != nullptr && same->falling_ == falling_ && same->rising_ == rising_;
}

}  // namespace lumoxa::engine
