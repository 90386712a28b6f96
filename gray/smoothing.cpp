// SPDX-License-Identifier: Apache-2.0
#include "gray/smoothing.h"

#include <array>
#include <numeric>
#include <vector>

#include "base/pcs_encoding.h"

namespace lumoxa {
namespace {

constexpr size_t kWeights = 137;
constexpr size_t kReach = kWeights / 2;

std::array<double, kWeights> makeWeights() {
    constexpr double kShape[] = {0.0, 0.1, 0.2, 1.0, 0.2, 0.1, 0.0};
    constexpr double kSegments = 6.0;
    std::array<double, kWeights> weights{};
    for (size_t k = 0; k < kWeights; ++k) {
        const double position = static_cast<double>(k + 1) / (kWeights + 1) * kSegments;
        const auto i = static_cast<size_t>(position);
        weights[k] = kShape[i] + (kShape[i + 1] - kShape[i]) * (position - static_cast<double>(i));
    }
    return weights;
}

}  // namespace

void smoothTable(std::span<uint16_t> table) {
    if (table.size() <= kReach) return;
    const size_t last = table.size() - 1;
    const double first = table.front();
    const double rise = table.back() - first;
    const auto line = [&](size_t i) {
        return first + rise * static_cast<double>(i) / static_cast<double>(last);
    };
    std::vector<double> residual(table.size() + 2 * kReach);
    for (size_t i = 0; i <= last; ++i)
        residual[kReach + i] = table[i] - line(i);
    for (size_t d = 1; d <= kReach; ++d) {
        residual[kReach - d] = -residual[kReach + d];
        residual[kReach + last + d] = -residual[kReach + last - d];
    }
    const std::array<double, kWeights> weights = makeWeights();
    const double total = std::accumulate(weights.begin(), weights.end(), 0.0);
    for (size_t i = 0; i <= last; ++i) {
        double sum = 0.0;
        for (size_t k = 0; k < kWeights; ++k)
            sum += weights[k] * residual[i + k];
        table[i] = roundWrapped<uint16_t>(sum / total + line(i));
    }
}

}  // namespace lumoxa
