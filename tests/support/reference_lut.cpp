// SPDX-License-Identifier: Apache-2.0
#include "tests/support/reference_lut.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lumoxa_test {

using Table = ReferenceLut::Table;

float lookup(const Table& t, float p) {
    const int k = std::min(static_cast<int>(p), static_cast<int>(t.size()) - 2);
    const float low = t[static_cast<size_t>(k)], high = t[static_cast<size_t>(k) + 1];
    return low + (high - low) * (p - static_cast<float>(k));
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
    const auto tables = [&](const std::vector<uint16_t>& values, size_t n) {
        std::vector<Table> split(n);
        for (size_t i = 0; i < values.size(); ++i) {
            split[i * n / values.size()].push_back(
                static_cast<float>(lut8 ? values[i] >> 8 : values[i]));
        }
        return split;
    };
    (lut8 ? r.first : r.middle) = tables(c.inTables, c.inputs);
    r.last = tables(c.outTables, c.outputs);
    r.clut = tables(c.clut, 1)[0];
    r.grid.assign(c.inputs, static_cast<int>(c.grid));
    r.clutMax = lut8 ? 255 : 65535;
    for (size_t i = 0; i < 9 && c.matrix != LutContent{}.matrix; ++i) {
        if (i % 3 == 0) r.matrix.push_back({});
        r.matrix.back()[i % 3] = static_cast<float>(std::lround(c.matrix[i] * 65536)) / 65536;
    }
    return r;
}

std::vector<uint16_t> ReferenceLut::convert(const std::vector<uint16_t>& pixels, int inBits,
                                            int outBits) const {
    std::vector<uint16_t> out;
    for (auto at = pixels.begin(); at != pixels.end(); at += static_cast<std::ptrdiff_t>(inputs)) {
        Table x(at, at + static_cast<std::ptrdiff_t>(inputs));
        inputStage(x, inBits);
        const Table y = clutStage(x);
        for (size_t o = 0; o < outputs; ++o)
            out.push_back(outputStage(y[o], o, outBits));
    }
    return out;
}

void ReferenceLut::inputStage(Table& x, int inBits) const {
    // 8-bit connection-space samples stand for sample x 256; a lut8 table ends at 0xFF00 for them.
    float top = inBits == 8 ? 255.0f : 65535.0f;
    if (inIsPcs && inBits == 8 && !lut8) top = 65535.0f / 256.0f;
    if (inIsPcs && inBits == 16 && lut8) top = 65280.0f;
    const auto curves = [&](const std::vector<Table>& tables, bool clip) {
        for (size_t i = 0; i < tables.size(); ++i) {
            const float end = static_cast<float>(tables[i].size() - 1);
            const float p = x[i] * (end / top);
            x[i] = lookup(tables[i], clip ? std::clamp(p, 0.0f, end) : p);
        }
        if (!tables.empty()) top = lut8 ? 255.0f : 65535.0f;
    };
    curves(first, false);
    const Table old = x;
    for (size_t r = 0; r < matrix.size(); ++r) {
        const auto& m = matrix[r];
        x[r] = std::clamp(m[0] * old[0] + m[1] * old[1] + m[2] * old[2] + m[3], 0.0f,
                          lut8 ? 255.0f : 65535.0f);
    }
    curves(middle, inputs == 3 || inputs == 4);
}

Table ReferenceLut::clutStage(const Table& x) const {
    Table y = x, f;
    y.resize(outputs, 0.0f);  // without a grid, channels pass through and missing ones are 0
    std::vector<int> cell;
    for (size_t i = 0; i < grid.size(); ++i) {
        const float p = x[i] * (static_cast<float>(grid[i] - 1) * (1.0f / (lut8 ? 255 : 65535)));
        cell.push_back(std::min(static_cast<int>(p), grid[i] - 2));
        f.push_back(p - static_cast<float>(cell[i]));
    }
    for (size_t o = 0; o < outputs && !grid.empty(); ++o) {
        y[o] = inputs == 3 || inputs == 4 ? simplex(cell, f, o) : multilinear(cell, f, o);
    }
    return y;
}

// The grid's value at a corner of a cell; bit i of `steps` means one step along dimension i.
float ReferenceLut::corner(const std::vector<int>& cell, unsigned steps, size_t channel) const {
    size_t index = 0;
    for (size_t i = 0; i < inputs; ++i) {
        index =
            index * static_cast<size_t>(grid[i]) + static_cast<size_t>(cell[i]) + (steps >> i & 1U);
    }
    return clut.at(index * outputs + channel);
}

// Interpolates along the last dimension first.
float ReferenceLut::multilinear(const std::vector<int>& cell, const Table& f,
                                size_t channel) const {
    const auto from = [&](const auto& self, size_t dimension, unsigned steps) -> float {
        if (dimension == inputs) return corner(cell, steps, channel);
        const float low = self(self, dimension + 1, steps);
        const float high = self(self, dimension + 1, steps | 1U << dimension);
        return low + (high - low) * f[dimension];
    };
    return from(from, 0, 0);
}

float ReferenceLut::simplex(const std::vector<int>& cell, const Table& f, size_t channel) const {
    // The path from the cell's low corner to its high one, by falling fraction. Of equal fractions
    // in four dimensions, the lower dimension comes first; in three the comparisons decide.
    std::vector<size_t> path{0, 1, 2};
    if (inputs == 4) {
        path.push_back(3);
        std::stable_sort(path.begin(), path.end(), [&](size_t a, size_t b) { return f[a] > f[b]; });
    } else if (f[0] > std::max(f[1], f[2])) {
        if (f[2] > f[1]) path = {0, 2, 1};
    } else if (f[1] > f[2]) {
        path = f[2] > f[0] ? std::vector<size_t>{1, 2, 0} : std::vector<size_t>{1, 0, 2};
    } else {
        path = f[1] > f[0] ? std::vector<size_t>{2, 1, 0} : std::vector<size_t>{2, 0, 1};
    }
    Table slope(inputs);
    unsigned steps = 0;
    const float low = corner(cell, 0, channel);
    float value = low;
    for (const size_t d : path) {
        steps |= 1U << d;
        const float next = corner(cell, steps, channel);
        slope[d] = next - value;
        value = next;
    }
    // Three dimensions are summed first to last, four last to first, the constant at the end.
    if (inputs == 3) return slope[0] * f[0] + slope[1] * f[1] + slope[2] * f[2] + low;
    return slope[3] * f[3] + slope[2] * f[2] + slope[1] * f[1] + slope[0] * f[0] + low;
}

uint16_t ReferenceLut::outputStage(float v, size_t channel, int outBits) const {
    if (!last.empty()) {
        const float end = static_cast<float>(last[channel].size() - 1);
        v = lookup(last[channel], v * (end * (1.0f / clutMax)));
    }
    const float step = outIsPcs ? 256.0f : 257.0f;
    if (lut8 && outBits == 16) v = std::min(v * step, 65535.0f);
    if (!lut8 && outBits == 8) v = v * (1.0f / step);
    // An 8-bit sample of a lut16 tag wraps where connection-space values exceed 0xFF7F.
    return static_cast<uint16_t>(static_cast<int>(v + 0.5f) % (1 << outBits));
}

}  // namespace lumoxa_test
