// SPDX-License-Identifier: Apache-2.0
#include "tests/support/reference_lut.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace lumoxa_test {

using Table = ReferenceLut::Table;

Table unitTable(const std::vector<uint16_t>& values, bool bytes) {
    Table table;
    for (const uint16_t v : values)
        table.push_back(bytes ? (v >> 8) / 255.0 : v / 65535.0);
    return table;
}

double lookup(const Table& t, double at) {
    const double p = at * static_cast<double>(t.size() - 1);
    const size_t k = std::min(static_cast<size_t>(p), t.size() - 2);
    return t[k] + (t[k + 1] - t[k]) * (p - static_cast<double>(k));
}

double parametric(uint32_t function, const std::vector<double>& parameters, double x, double power,
                  double rest) {
    std::vector<double> p = parameters;  // g, a, b, c, d, e, f
    p.resize(7);
    if (function == 0) return power * std::pow(x, p[0]);
    if (x >= (function < 3 ? -p[2] / p[1] : p[4])) {
        const double constant = function == 2 ? p[3] : function == 4 ? p[5] : 0;
        return power * std::pow(p[1] * x + p[2], p[0]) + rest * constant;
    }
    return rest * (function < 3 ? p[3] : p[3] * x + p[6]);
}

ReferenceLut ReferenceLut::of(const LutContent& c, bool lut8, const std::string& inSpace,
                              const std::string& outSpace) {
    const auto isPcs = [](const std::string& s) { return s == "XYZ " || s == "Lab "; };
    ReferenceLut r;
    r.lut8 = lut8;
    r.inIsPcs = isPcs(inSpace), r.outIsPcs = isPcs(outSpace);
    r.inputs = c.inputs, r.outputs = c.outputs;
    const auto tables = [lut8](const std::vector<uint16_t>& values, size_t n) {
        const Table all = unitTable(values, lut8);
        std::vector<Table> split;
        for (auto at = all.begin(); at != all.end(); at += std::ptrdiff_t(all.size() / n))
            split.emplace_back(at, at + std::ptrdiff_t(all.size() / n));
        return split;
    };
    (lut8 ? r.first : r.middle) = tables(c.inTables, c.inputs);
    r.last = tables(c.outTables, c.outputs);
    r.clut = unitTable(c.clut, lut8);
    r.grid.assign(c.inputs, static_cast<uint8_t>(c.grid));
    for (size_t i = 0; i < 9 && c.matrix != LutContent{}.matrix; ++i) {
        if (i % 3 == 0) r.matrix.push_back({});
        r.matrix.back()[i % 3] = std::round(c.matrix[i] * 65536) / 65536;  // s15Fixed16
    }
    return r;
}

std::vector<uint16_t> ReferenceLut::convert(const std::vector<uint16_t>& pixels, int inBits,
                                            int outBits) const {
    std::vector<uint16_t> out;
    for (auto at = pixels.begin(); at != pixels.end(); at += std::ptrdiff_t(inputs)) {
        Table x(at, at + std::ptrdiff_t(inputs)), y(outputs);
        inputStage(x, inBits);
        // Without a grid, channels pass through and missing ones are 0.
        std::copy_n(x.begin(), grid.empty() ? std::min(inputs, outputs) : 0, y.begin());
        for (const auto& [index, weight] : corners(x)) {
            for (size_t o = 0; o < outputs; ++o)
                y[o] += weight * clut.at(index * outputs + o);
        }
        for (size_t o = 0; o < outputs; ++o)
            out.push_back(outputStage(y[o], o, outBits));
    }
    return out;
}

void ReferenceLut::inputStage(Table& x, int inBits) const {
    // 8-bit connection-space samples stand for sample x 256; a lut8 table ends at 0xFF00 for them.
    double top = inBits == 8 ? 255 : 65535;
    if (inIsPcs && inBits == 8 && !lut8) top = 65535 / 256.0;
    if (inIsPcs && inBits == 16 && lut8) top = 65280;
    for (size_t i = 0; i < x.size(); ++i)
        x[i] = first.empty() ? x[i] / top : lookup(first[i], x[i] / top);
    const Table old = x;
    for (size_t r = 0; r < matrix.size(); ++r) {
        const auto& m = matrix[r];
        x[r] = std::clamp(m[0] * old[0] + m[1] * old[1] + m[2] * old[2] + m[3], 0.0, 1.0);
    }
    for (size_t i = 0; i < middle.size(); ++i)
        x[i] = lookup(middle[i], x[i]);
}

// The corners of the cell around a point, with their weights: those of the simplex that the order
// of the fractions chooses with 3 or 4 inputs, else all.
std::vector<std::pair<size_t, double>> ReferenceLut::corners(const Table& x) const {
    std::vector<std::pair<size_t, double>> result;
    std::vector<size_t> steps(grid.size(), 1), path(grid.size());
    Table f;
    size_t low = 0;
    for (size_t i = grid.size(); i-- > 0;) {
        steps[i] = i + 1 == grid.size() ? 1 : steps[i + 1] * grid[i + 1];
        const double p = x[i] * (grid[i] - 1);
        const size_t cell = std::min(static_cast<size_t>(p), grid[i] - size_t{2});
        f.insert(f.begin(), p - static_cast<double>(cell));
        low += cell * steps[i];
    }
    if (grid.size() == 3 || grid.size() == 4) {
        std::iota(path.begin(), path.end(), size_t{0});
        std::sort(path.begin(), path.end(), [&](size_t a, size_t b) { return f[a] > f[b]; });
        double before = 1;
        for (const size_t d : path) {
            result.emplace_back(low, before - f[d]);
            before = f[d];
            low += steps[d];
        }
        result.emplace_back(low, before);
        return result;
    }
    if (!grid.empty()) result.emplace_back(low, 1.0);
    for (size_t i = 0; i < grid.size(); ++i) {
        for (size_t k = result.size(); k-- > 0;) {
            const auto [index, weight] = result[k];
            result[k].second = weight * (1 - f[i]);
            result.emplace_back(index + steps[i], weight * f[i]);
        }
    }
    return result;
}

uint16_t ReferenceLut::outputStage(double v, size_t channel, int outBits) const {
    if (!last.empty()) v = lookup(last[channel], v);
    const double step = outIsPcs ? 256 : 257;
    v *= lut8 ? 255 : 65535;
    if (lut8 && outBits == 16) v = std::min(v * step, 65535.0);
    if (!lut8 && outBits == 8) v /= step;
    // An 8-bit sample of a lut16 tag wraps where connection-space values exceed 0xFF7F.
    return static_cast<uint16_t>(static_cast<int>(v + 0.5) % (1 << outBits));
}

}  // namespace lumoxa_test
