// SPDX-License-Identifier: Apache-2.0
#include "convert/table_nodes.h"

#include <algorithm>

#include "base/fan_out.h"

namespace lumoxa::engine {
namespace {

/// Runs stages over many colours, on all cores, and rounds the results.
///
/// @param fill  fill(first, n, rows) writes the colours from number `first` on
template <class Fill>
std::vector<uint16_t> evaluated(const StageList& list, int64_t count, int outputs,
                                const Fill& fill) {
    constexpr int64_t kWorthAThread = 2048;  // colours; some 100 ns each, a thread costs 30 us
    std::vector<uint16_t> values(static_cast<size_t>(count * outputs));
    const int64_t blocks = (count + kBlockPixels - 1) / kBlockPixels;
    const int64_t threads = std::min(hardwareThreads(), count / kWorthAThread + 1);
    fanOutWithCaller(blocks, threads, [&](int64_t, int64_t firstBlock, int64_t blockCount) {
        Row rows[kMaxChannels];
        for (int64_t b = firstBlock; b < firstBlock + blockCount; ++b) {
            const int64_t first = b * kBlockPixels;
            const int n = static_cast<int>(std::min<int64_t>(kBlockPixels, count - first));
            fill(first, n, rows);
            list.run(rows, n);
            uint16_t* const out = values.data() + first * outputs;
            for (int c = 0; c < outputs; ++c) {
                for (int i = 0; i < n; ++i)
                    out[i * outputs + c] = roundClipped<uint16_t>(rows[c][i] * kSampleMax16);
            }
        }
    });
    return values;
}

/// The nodes of a grid with equally many points a channel, in order.
class Nodes {
  public:
    /// @param first  curves that the nodes' coordinates pass through, or null
    Nodes(int inputs, int points, const CurveStage* first) : points_(points) {
        for (int c = 0; c < inputs; ++c) {
            std::vector<float>& axis = axes_.emplace_back();
            axis.reserve(static_cast<size_t>(points));
            for (int i = 0; i < points; ++i)
                axis.push_back(static_cast<float>(i) / static_cast<float>(points - 1));
            if (first != nullptr) first->curves()[static_cast<size_t>(c)]->run(axis.data(), points);
        }
    }
    int64_t count() const {
        int64_t nodes = 1;
        for (size_t c = 0; c < axes_.size(); ++c)
            nodes *= points_;
        return nodes;
    }
    void fill(int64_t first, int n, Row* rows) const {
        int at[kMaxChannels];
        for (size_t c = axes_.size(); c-- > 0; first /= points_)
            at[c] = static_cast<int>(first % points_);
        for (int i = 0; i < n; ++i) {
            for (size_t c = 0; c < axes_.size(); ++c)
                rows[c][i] = axes_[c][static_cast<size_t>(at[c])];
            for (size_t c = axes_.size(); c-- > 0 && ++at[c] == points_;)
                at[c] = 0;
        }
    }

  private:
    int points_;
    std::vector<std::vector<float>> axes_;
};

/// What a table would answer for a set of colours, from the nodes around each of them alone.
class Preview {
  public:
    Preview(const Shape& shape, int inputs, int outputs)
        : shape_(shape), inputs_(inputs), outputs_(outputs) {}

    std::vector<uint16_t> answers(const std::vector<uint16_t>& samples, int points) const {
        const size_t n = static_cast<size_t>(inputs_);
        const size_t count = samples.size() / n;
        std::vector<float> place(count * (n + 1) * n), weight(count * (n + 1));
        for (size_t i = 0; i < count; ++i)
            findPath(&samples[i * n], points, &place[i * (n + 1) * n], &weight[i * (n + 1)]);
        const auto fill = [&](int64_t first, int number, Row* rows) {
            const float* at = place.data() + static_cast<size_t>(first) * n;
            for (int i = 0; i < number; ++i) {
                for (int c = 0; c < inputs_; ++c)
                    rows[c][i] = *at++;
            }
        };
        const std::vector<uint16_t> nodes =
            evaluated(shape_.tail, static_cast<int64_t>(count * (n + 1)), outputs_, fill);
        return mixed(nodes, weight, count);
    }

  private:
    // The corners of the simplex that holds a colour, as coordinates 0..1, and their weights.
    void findPath(const uint16_t* sample, int points, float* place, float* weight) const {
        const auto last = static_cast<float>(points - 1);
        float cell[kMaxChannels], fraction[kMaxChannels];
        int order[kMaxChannels];
        for (int c = 0; c < inputs_; ++c) {
            const float position =
                throughTable(shape_.inTables, c, sample[c]) / kSampleMax16 * last;
            cell[c] = std::min(static_cast<float>(static_cast<int>(position)), last - 1.0f);
            fraction[c] = position - cell[c];
            // By falling fractions, of equal ones the first.
            int at = c;
            for (; at > 0 && fraction[order[at - 1]] < fraction[c]; --at)
                order[at] = order[at - 1];
            order[at] = c;
        }
        float before = 1.0f;
        for (int step = 0; step <= inputs_; ++step) {
            if (step > 0) cell[order[step - 1]] += 1.0f;
            const float here = step < inputs_ ? fraction[order[step]] : 0.0f;
            weight[step] = before - here;
            before = here;
            for (int c = 0; c < inputs_; ++c)
                *place++ = cell[c] / last;
        }
    }

    std::vector<uint16_t> mixed(const std::vector<uint16_t>& nodes,
                                const std::vector<float>& weight, size_t count) const {
        const size_t m = static_cast<size_t>(outputs_), corners = static_cast<size_t>(inputs_) + 1;
        std::vector<uint16_t> results(count * m);
        for (size_t i = 0; i < count; ++i) {
            for (size_t o = 0; o < m; ++o) {
                float sum = 0.0f;
                for (size_t k = 0; k < corners; ++k)
                    sum += weight[i * corners + k] *
                           static_cast<float>(nodes[(i * corners + k) * m + o]);
                results[i * m + o] = roundClipped<uint16_t>(
                    throughTable(shape_.outTables, static_cast<int>(o), sum));
            }
        }
        return results;
    }

    static float throughTable(const Tables& tables, int channel, float value) {
        if (tables.empty()) return value;
        const std::vector<uint16_t>& table = tables[static_cast<size_t>(channel)];
        const auto last = static_cast<float>(table.size() - 1);
        return lookUp(table.data(), static_cast<int32_t>(table.size()) - 2,
                      value * (last / kSampleMax16));
    }

    const Shape& shape_;
    int inputs_, outputs_;
};

}  // namespace

std::vector<uint16_t> sampleNodes(const StageList& tail, int inputs, int outputs, int points) {
    const auto* first = stageAt<CurveStage>(tail, 0);
    const Nodes nodes(inputs, points, first);
    const StageList rest = slice(tail, first != nullptr ? 1 : 0, tail.stages().size());
    return evaluated(rest, nodes.count(), outputs,
                     [&](int64_t from, int n, Row* rows) { nodes.fill(from, n, rows); });
}

std::vector<uint16_t> previewTable(const Shape& shape, int inputs, int outputs,
                                   const std::vector<uint16_t>& samples, int points) {
    return Preview(shape, inputs, outputs).answers(samples, points);
}

}  // namespace lumoxa::engine
