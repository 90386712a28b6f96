// SPDX-License-Identifier: Apache-2.0
#include "tests/support/profile_bytes.h"

#include <algorithm>
#include <cmath>

namespace lumoxa_test {
namespace {

void append(Bytes& out, uint32_t value, unsigned bytes) {
    while (bytes-- > 0)
        out.push_back(static_cast<uint8_t>(value >> 8 * bytes));
}

void append32(Bytes& out, uint32_t value) {
    append(out, value, 4);
}

void appendFixed(Bytes& out, const std::vector<double>& values) {  // s15Fixed16
    for (const double value : values)
        append32(out, static_cast<uint32_t>(std::lround(value * 65536.0)));
}

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
    size_t size = outputs;
    for (const uint8_t points : grid)
        size *= points;
    std::vector<uint16_t> clut(size);
    for (size_t i = 0; i < size; ++i) {
        const size_t dimension = i % outputs % grid.size();
        size_t node = i / outputs;
        for (size_t d = grid.size() - 1; d > dimension; --d)
            node /= grid[d];
        clut[i] = static_cast<uint16_t>(node % grid[dimension] * 65535 / (grid[dimension] - 1U));
    }
    return clut;
}

void appendSamples(Bytes& out, const std::vector<uint16_t>& samples, uint32_t bytes) {
    for (const uint32_t sample : samples)
        append(out, sample >> (16 - 8 * bytes), bytes);
}

Bytes lutTag(uint32_t bytes, const LutContent& c, uint32_t inEntries, uint32_t outEntries) {
    Bytes out = typed(bytes == 2 ? "mft2" : "mft1");
    append32(out, c.inputs << 24 | c.outputs << 16 | c.grid << 8);
    appendFixed(out, c.matrix);
    if (bytes == 2) append32(out, inEntries << 16 | outEntries);
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
    append32(out, c.inputs << 24 | c.outputs << 16);
    out.resize(32);  // offsets of B, matrix, M, CLUT, A
    appendCurves(out, 12, c.bCurves);
    if (!c.matrix.empty()) put32(out, 16, static_cast<uint32_t>(out.size()));
    appendFixed(out, c.matrix);
    appendCurves(out, 20, c.mCurves);
    if (!c.grid.empty()) {
        put32(out, 24, static_cast<uint32_t>(out.size()));
        out.insert(out.end(), c.grid.begin(), c.grid.end());
        out.resize(out.size() + 16 - c.grid.size());
        append32(out, c.precision << 24);
        appendSamples(out, c.clut.empty() ? repeatingClut(c.grid, c.outputs) : c.clut, c.precision);
        align4(out);
    }
    appendCurves(out, 28, c.aCurves);
    return out;
}

}  // namespace

void put32(Bytes& out, size_t at, uint32_t value) {
    Bytes field;
    append32(field, value);
    std::copy(field.begin(), field.end(), out.begin() + static_cast<std::ptrdiff_t>(at));
}

uint32_t numberAt(const Bytes& bytes, size_t at) {
    return uint32_t{bytes.at(at)} << 24 | uint32_t{bytes.at(at + 1)} << 16 |
           uint32_t{bytes.at(at + 2)} << 8 | uint32_t{bytes.at(at + 3)};
}

std::string bigEndian(uint32_t value) {
    Bytes field;
    append32(field, value);
    return {field.begin(), field.end()};
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
    appendFixed(out, parameters);
    return out;
}

Bytes xyzTag(double X, double Y, double Z) {
    Bytes out = typed("XYZ ");
    appendFixed(out, {X, Y, Z});
    return out;
}

Bytes lut8Tag(const LutContent& content) {
    return lutTag(1, content, 256, 256);
}

Bytes lut16Tag(const LutContent& content) {
    return lutTag(2, content, content.inEntries, content.outEntries);
}

Bytes lutAToBTag(const LutABContent& content) {
    return lutABTag("mAB ", content);
}

Bytes lutBToATag(const LutABContent& content) {
    return lutABTag("mBA ", content);
}

ProfileBytes::ProfileBytes(const std::string& deviceClass, const std::string& colorSpace,
                           const std::string& pcs) {
    header_.resize(8);  // the size, which is set by image(), and no preferred CMM
    append32(header_, 0x02100000);
    appendText(header_, deviceClass + colorSpace + pcs);
    for (const uint32_t part : {2020U, 5U, 9U, 12U, 34U, 56U})
        append(header_, part, 2);
    appendText(header_, "acsp");
    header_.resize(68);
    appendFixed(header_, {0.9642, 1.0, 0.8249});
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

ProfileBytes rgbProfile(const std::vector<Bytes>& curves, const std::string& deviceClass,
                        bool unitMatrix) {
    const double one = 131070 / 65536.0;  // 65535 in the XYZ encoding
    ProfileBytes p(deviceClass);
    p.addTag("rXYZ", unitMatrix ? xyzTag(one, 0, 0) : xyzTag(0.4361, 0.2225, 0.0139));
    p.addTag("gXYZ", unitMatrix ? xyzTag(0, one, 0) : xyzTag(0.3851, 0.7169, 0.0971));
    p.addTag("bXYZ", unitMatrix ? xyzTag(0, 0, one) : xyzTag(0.1431, 0.0606, 0.7141));
    for (size_t c = 0; c < 3; ++c)
        p.addTag(std::string{"rgb"[c]} + "TRC", curves[c % curves.size()]);
    return p;
}

Bytes smallRgbProfile() {
    return rgbProfile({curveTag({563})}, "mntr").image();  // gamma 2.2
}

}  // namespace lumoxa_test
