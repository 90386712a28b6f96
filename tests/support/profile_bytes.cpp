// SPDX-License-Identifier: Apache-2.0
#include "tests/support/profile_bytes.h"

#include <algorithm>
#include <cmath>

namespace lumoxa_test {
namespace {

void appendText(Bytes& out, const std::string& text) {
    out.insert(out.end(), text.begin(), text.end());
}

void align4(Bytes& out) {
    out.resize((out.size() + 3) / 4 * 4);
}

Bytes typed(const std::string& type) {
    Bytes out;
    appendText(out, type);
    append32(out, 0);
    return out;
}

std::vector<uint16_t> ramps(const std::vector<uint16_t>& given, uint32_t channels,
                            uint32_t entries) {
    if (!given.empty()) return given;
    std::vector<uint16_t> tables;
    for (uint32_t i = 0; i < channels * entries; ++i) {
        tables.push_back(static_cast<uint16_t>(i % entries * 65535 / (entries - 1)));
    }
    return tables;
}

// The last input channel varies fastest.
std::vector<uint16_t> repeatingClut(const std::vector<uint8_t>& grid, uint32_t outputs) {
    std::vector<uint16_t> clut;
    std::vector<uint32_t> node(grid.size());
    for (size_t dimension = 0; dimension != static_cast<size_t>(-1);) {
        for (uint32_t o = 0; o < outputs; ++o) {
            const size_t i = o % grid.size();
            clut.push_back(static_cast<uint16_t>(node[i] * 65535 / (grid[i] - 1U)));
        }
        dimension = grid.size() - 1;
        while (dimension != static_cast<size_t>(-1) && ++node[dimension] == grid[dimension]) {
            node[dimension--] = 0;
        }
    }
    return clut;
}

void appendSamples(Bytes& out, const std::vector<uint16_t>& samples, uint32_t bytes) {
    for (const uint32_t sample : samples) {
        bytes == 1 ? append8(out, sample >> 8) : append16(out, sample);
    }
}

Bytes lutTag(const std::string& type, const LutContent& c, uint32_t inEntries,
             uint32_t outEntries) {
    const bool is16 = type == "mft2";
    Bytes out = typed(type);
    for (const uint32_t v : {c.inputs, c.outputs, c.grid, 0U})
        append8(out, v);
    for (const double e : c.matrix)
        appendFixed(out, e);
    if (is16) {
        append16(out, inEntries);
        append16(out, outEntries);
    }
    const uint32_t bytes = is16 ? 2 : 1;
    appendSamples(out, ramps(c.inTables, c.inputs, inEntries), bytes);
    const std::vector<uint8_t> grid(c.inputs, static_cast<uint8_t>(c.grid));
    appendSamples(out, c.clut.empty() ? repeatingClut(grid, c.outputs) : c.clut, bytes);
    appendSamples(out, ramps(c.outTables, c.outputs, outEntries), bytes);
    return out;
}

void appendCurves(Bytes& out, size_t offsetAt, const std::vector<Bytes>& curves) {
    if (curves.empty()) return;
    put32(out, offsetAt, static_cast<uint32_t>(out.size()));
    for (const Bytes& curve : curves) {
        out.insert(out.end(), curve.begin(), curve.end());
        align4(out);
    }
}

Bytes lutABTag(const std::string& type, const LutABContent& c) {
    Bytes out = typed(type);
    for (const uint32_t v : {c.inputs, c.outputs, 0U, 0U})
        append8(out, v);
    out.resize(32);  // offsets of B, matrix, M, CLUT, A
    appendCurves(out, 12, c.bCurves);
    if (!c.matrix.empty()) {
        put32(out, 16, static_cast<uint32_t>(out.size()));
        for (const double e : c.matrix)
            appendFixed(out, e);
    }
    appendCurves(out, 20, c.mCurves);
    if (!c.grid.empty()) {
        put32(out, 24, static_cast<uint32_t>(out.size()));
        for (size_t i = 0; i < 16; ++i)
            append8(out, i < c.grid.size() ? c.grid[i] : 0);
        append32(out, c.precision << 24);
        appendSamples(out, c.clut.empty() ? repeatingClut(c.grid, c.outputs) : c.clut, c.precision);
        align4(out);
    }
    appendCurves(out, 28, c.aCurves);
    return out;
}

}  // namespace

void append8(Bytes& out, uint32_t value) {
    out.push_back(static_cast<uint8_t>(value));
}

void append16(Bytes& out, uint32_t value) {
    append8(out, value >> 8);
    append8(out, value);
}

void append32(Bytes& out, uint32_t value) {
    append16(out, value >> 16);
    append16(out, value);
}

void appendFixed(Bytes& out, double value) {
    append32(out, static_cast<uint32_t>(std::lround(value * 65536.0)));
}

void put32(Bytes& out, size_t at, uint32_t value) {
    Bytes field;
    append32(field, value);
    std::copy(field.begin(), field.end(), out.begin() + static_cast<std::ptrdiff_t>(at));
}

Bytes curveTag(const std::vector<uint16_t>& entries) {
    Bytes out = typed("curv");
    append32(out, static_cast<uint32_t>(entries.size()));
    appendSamples(out, entries, 2);
    return out;
}

Bytes parametricTag(uint32_t function, const std::vector<double>& parameters) {
    Bytes out = typed("para");
    append32(out, function << 16);
    for (const double p : parameters)
        appendFixed(out, p);
    return out;
}

Bytes xyzTag(double X, double Y, double Z) {
    Bytes out = typed("XYZ ");
    for (const double v : {X, Y, Z})
        appendFixed(out, v);
    return out;
}

Bytes lut8Tag(const LutContent& content) {
    return lutTag("mft1", content, 256, 256);
}

Bytes lut16Tag(const LutContent& content) {
    return lutTag("mft2", content, content.inEntries, content.outEntries);
}

Bytes lutAToBTag(const LutABContent& content) {
    return lutABTag("mAB ", content);
}

Bytes lutBToATag(const LutABContent& content) {
    return lutABTag("mBA ", content);
}

ProfileBytes::ProfileBytes(const std::string& deviceClass, const std::string& colorSpace,
                           const std::string& pcs) {
    append32(header_, 0);  // size
    append32(header_, 0);  // preferred CMM
    append32(header_, 0x02100000);
    appendText(header_, deviceClass + colorSpace + pcs);
    for (const uint32_t part : {2020U, 5U, 9U, 12U, 34U, 56U})
        append16(header_, part);
    appendText(header_, "acsp");
    header_.resize(68);
    for (const double v : {0.9642, 1.0, 0.8249})
        appendFixed(header_, v);
    header_.resize(128);
}

ProfileBytes& ProfileBytes::addTag(const std::string& signature, Bytes data) {
    tags_.emplace_back(signature, std::move(data));
    return *this;
}

Bytes ProfileBytes::image() const {
    Bytes out = header_;
    append32(out, static_cast<uint32_t>(tags_.size()));
    size_t offset = out.size() + 12 * tags_.size();
    for (const auto& [signature, data] : tags_) {
        appendText(out, signature);
        append32(out, static_cast<uint32_t>(offset));
        append32(out, static_cast<uint32_t>(data.size()));
        offset = (offset + data.size() + 3) / 4 * 4;
    }
    for (const auto& [signature, data] : tags_) {
        out.insert(out.end(), data.begin(), data.end());
        align4(out);
    }
    put32(out, 0, static_cast<uint32_t>(out.size()));
    return out;
}

Bytes smallRgbProfile() {
    const Bytes curve = curveTag({563});  // gamma 2.2
    return ProfileBytes()
        .addTag("wtpt", xyzTag(0.9505, 1.0, 1.0891))
        .addTag("rXYZ", xyzTag(0.4361, 0.2225, 0.0139))
        .addTag("gXYZ", xyzTag(0.3851, 0.7169, 0.0971))
        .addTag("bXYZ", xyzTag(0.1431, 0.0606, 0.7141))
        .addTag("rTRC", curve)
        .addTag("gTRC", curve)
        .addTag("bTRC", curve)
        .image();
}

}  // namespace lumoxa_test
