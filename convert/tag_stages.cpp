// SPDX-License-Identifier: Apache-2.0
#include "convert/tag_stages.h"

#include <algorithm>

#include "base/byte_order.h"
#include "base/pcs_encoding.h"
#include "convert/grid_stage.h"
#include "lut/lut_tag.h"

namespace lumoxa::engine {
namespace {

using namespace lut_layout;

/// Samples that a grid may have: 128 MB of nodes, enough for 255 points of three inputs and four
/// outputs. Grids in use have up to some four million samples.
constexpr uint64_t kMaxGridSamples = uint64_t{1} << 26;
/// Entries that a curve may have: positions in more are no whole numbers in single precision.
constexpr uint32_t kMaxCurveEntries = uint32_t{1} << 24;

// u1Fixed15: 1.0 is 32768 of 65535 (ICC.1:2010, 6.3.4.2).
constexpr double kXyzRange = 65535.0 / 32768.0;
constexpr double kLRange = 100.0;
// a* and b*: -128 is 0, 127 is 255 of 255 (version 4), or 65280 of 65535 in 16-bit version 2.
constexpr double kChromaRange = 255.0;
constexpr double kChromaZero = -128.0;
constexpr double kLegacyStretch = 65535.0 / 65280.0;

// --- elements that tags share --------------------------------------------------------------------

Parametric readParametric(const TagReader& tag, uint64_t at, uint64_t& size) {
    const uint32_t type = tag.u16(at + kParaType);
    const uint32_t count = parametricCount(type);
    if (count == 0) {
        tag.fail(icErrTagType, static_cast<int64_t>(at + kParaType),
                 "has a parametric curve of type " + std::to_string(type) +
                     ", parametricCurveType of ICC.1:2010 knows 0 to 4");
    }
    double p[7] = {};
    for (uint32_t i = 0; i < count; ++i)
        p[i] = tag.fixed(at + kCurveData + 4 * i);
    size = kCurveData + uint64_t{4} * count;
    const double g = p[0], a = p[1], b = p[2];
    const double zero = a != 0 ? -b / a : 0;  // where types 1 and 2 begin
    switch (type) {
        case 0:
            return {g, 1, 0, 0, 0, 0, 0};
        case 1:
            return {g, a, b, 0, zero, 0, 0};
        case 2:
            return {g, a, b, 0, zero, p[3], p[3]};
        case 3:
            return {g, a, b, p[3], p[4], 0, 0};
        default:
            return {g, a, b, p[3], p[4], p[5], p[6]};
    }
}

CurvePtr readSampled(const TagReader& tag, uint64_t at, uint64_t& size) {
    const uint32_t count = tag.u32(at + kCurveCount);
    if (count > kMaxCurveEntries) {
        tag.fail(icErrTagType, static_cast<int64_t>(at + kCurveCount),
                 "has a curve of " + std::to_string(count) + " entries, more than 2^24");
    }
    const uint8_t* entries = tag.need(at + kCurveData, uint64_t{2} * count);
    size = kCurveData + uint64_t{2} * count;
    if (count == 0) return identityCurve();
    if (count == 1) {
        constexpr double kGammaOne = 256.0;  // u8Fixed8
        const double gamma = loadFileOrder<uint16_t>(entries) / kGammaOne;
        if (gamma == 0) {
            tag.fail(icErrTagType, static_cast<int64_t>(at + kCurveData),
                     "has a curve of gamma 0, which no colour leads back from");
        }
        return gammaCurve(gamma);
    }
    std::vector<uint16_t> table(count);
    for (size_t i = 0; i < table.size(); ++i)
        table[i] = loadFileOrder<uint16_t>(entries + 2 * i);
    return tableCurve(std::move(table));
}

}  // namespace

CurvePtr readCurve(const TagReader& tag, uint64_t at, uint64_t* size) {
    const uint32_t type = tag.u32(at);
    uint64_t bytes = 0;
    CurvePtr curve;
    if (type == kTypeCurve) {
        curve = readSampled(tag, at, bytes);
    } else if (type == kTypeParametric) {
        curve = parametricCurve(readParametric(tag, at, bytes));
    } else {
        tag.fail(icErrTagType, static_cast<int64_t>(at),
                 "has " + quoted(type) + " where a curve must be 'curv' or 'para'");
    }
    if (size != nullptr) *size = bytes;
    return curve;
}

std::array<double, 3> readXyz(const TagReader& tag) {
    constexpr uint64_t kNumbers = 8;
    if (tag.type() != kTypeXyz)
        tag.fail(icErrTagType, 0, "is of type " + quoted(tag.type()) + " and must be 'XYZ '");
    return {tag.fixed(kNumbers), tag.fixed(kNumbers + 4), tag.fixed(kNumbers + 8)};
}

Affine decoding(uint32_t space, bool legacyLab) {
    if (space == kSpaceXyz) return Affine::diagonal({kXyzRange, kXyzRange, kXyzRange});
    if (space != kSpaceLab) return {};
    const double stretch = legacyLab ? kLegacyStretch : 1.0;
    return Affine::diagonal({kLRange * stretch, kChromaRange * stretch, kChromaRange * stretch},
                            {0, kChromaZero, kChromaZero});
}

namespace {

// --- the four types ------------------------------------------------------------------------------

/// Collects the stages of one tag.
class LutReader {
  public:
    LutReader(const TagReader& tag, uint32_t inSpace, uint32_t outSpace, std::string origin)
        : tag_(tag), inSpace_(inSpace), outSpace_(outSpace), origin_(std::move(origin)) {}

    StageList read() {
        const uint32_t type = tag_.type();
        if (!isLutType(type)) {
            tag_.fail(icErrTagType, 0, "is of type " + quoted(type) + ", which is no LUT type");
        }
        requireChannels();
        const bool legacy = type == kTypeLut16;
        if (isConnectionSpace(inSpace_)) {
            Affine encoding;
            decoding(inSpace_, legacy).invert(encoding);
            addAffine(encoding, "encoding of " + spaceName(inSpace_));
        }
        if (type == kTypeLut8 || type == kTypeLut16) {
            readLut(type == kTypeLut16);
        } else {
            readLutAB(type == kTypeLutAToB);
        }
        if (isConnectionSpace(outSpace_))
            addAffine(decoding(outSpace_, legacy), "decoding of " + spaceName(outSpace_));
        return std::move(stages_);
    }

  private:
    void add(std::shared_ptr<const Stage> stage) { stages_.append(std::move(stage), origin_); }
    void addAffine(const Affine& affine, const std::string& what) {
        add(std::make_shared<AffineStage>(affine, what));
    }
    void addCurves(std::vector<CurvePtr> curves) {
        add(std::make_shared<CurveStage>(std::move(curves)));
    }

    uint32_t inputs() const { return tag_.u8(kInputs); }
    uint32_t outputs() const { return tag_.u8(kOutputs); }

    void requireChannels() const {
        const auto require = [&](uint32_t at, uint32_t space, const char* side) {
            const int wanted = channelsOf(space);
            const uint32_t count = tag_.u8(at);
            if (count >= 1 && count <= kMaxChannels &&
                (wanted == 0 || count == static_cast<uint32_t>(wanted)))
                return;
            tag_.fail(icErrTagType, at,
                      "has " + std::to_string(count) + " " + side + " channels, but " +
                          spaceName(space) + " has " + std::to_string(wanted));
        };
        require(kInputs, inSpace_, "input");
        require(kOutputs, outSpace_, "output");
    }

    /// Rows of three factors; `offsets` follow them in lutAToB and lutBToA.
    void readMatrix(uint64_t at, bool offsets) {
        Affine matrix;
        for (size_t i = 0; i < 9; ++i)
            matrix.factors[i / 3][i % 3] = tag_.fixed(at + 4 * i);
        for (size_t i = 0; offsets && i < 3; ++i)
            matrix.offsets[i] = tag_.fixed(at + 4 * (9 + i));
        addAffine(matrix, "matrix");
    }

    /// Samples of a grid, which are bounded before anything is sized by them.
    /// @param pointsAt  where the tag has the points of the first input
    /// @param apart     bytes to those of the next; 0 where all inputs share them
    uint64_t samplesOf(const std::vector<int>& points, uint64_t pointsAt, uint64_t apart) const {
        uint64_t samples = outputs();
        for (size_t d = 0; d < points.size(); ++d) {
            const auto at = static_cast<int64_t>(pointsAt + apart * d);
            if (points[d] < 2) {
                tag_.fail(icErrTagType, at,
                          "has a grid of " + std::to_string(points[d]) + " points along input " +
                              std::to_string(d + 1) + ", at least 2 are needed");
            }
            samples *= static_cast<uint64_t>(points[d]);
            if (samples > kMaxGridSamples) {
                tag_.fail(icErrTagType, at,
                          "has a grid whose first " + std::to_string(d + 1) +
                              " inputs alone make more than 2^26 numbers");
            }
        }
        return samples;
    }

    // Nodes of the grid at `at`, 8 or 16 bits each.
    void readGrid(std::vector<int> points, uint64_t samples, uint64_t at, uint32_t precision) {
        Grid grid;
        grid.outputs = static_cast<int>(outputs());
        const uint8_t* bytes = tag_.need(at, samples * precision);
        grid.points = std::move(points);
        grid.nodes.resize(static_cast<size_t>(samples));
        constexpr unsigned kWiden = 257;  // 255 becomes 65535
        for (size_t i = 0; i < grid.nodes.size(); ++i) {
            grid.nodes[i] = precision == 1 ? static_cast<uint16_t>(bytes[i] * kWiden)
                                           : loadFileOrder<uint16_t>(bytes + 2 * i);
        }
        const auto interpolation =
            inSpace_ == kSpaceLab ? Interpolation::kMultilinear : Interpolation::kSimplex;
        add(std::make_shared<GridStage>(std::move(grid), interpolation));
    }

    // lut8 and lut16: matrix, input tables, grid, output tables.
    void readLut(bool wide) {
        const uint32_t inEntries = wide ? tag_.u16(kInputEntries) : kLut8Entries;
        const uint32_t outEntries = wide ? tag_.u16(kOutputEntries) : kLut8Entries;
        const uint32_t bytes = wide ? 2 : 1;
        if (inEntries < 2 || outEntries < 2) {
            tag_.fail(icErrTagType, inEntries < 2 ? kInputEntries : kOutputEntries,
                      "has tables of fewer than 2 entries");
        }
        // It serves XYZ (ICC.1:2010, 10.8); for others the identity is required.
        if (inputs() == 3) readMatrix(kMatrix, false);
        uint64_t at = wide ? kLut16Tables : kLut8Tables;
        at = readTables(at, inputs(), inEntries, bytes);
        const std::vector<int> points(inputs(), static_cast<int>(tag_.u8(kGrid)));
        const uint64_t samples = samplesOf(points, kGrid, 0);
        readGrid(points, samples, at, bytes);
        readTables(at + samples * bytes, outputs(), outEntries, bytes);
    }

    uint64_t readTables(uint64_t at, uint32_t channels, uint32_t entries, uint32_t bytes) {
        const uint64_t size = uint64_t{channels} * entries * bytes;
        const uint8_t* numbers = tag_.need(at, size);
        std::vector<CurvePtr> curves;
        bool ramps = true;  // at equal steps from 0 to 1, which whole numbers can only round to
        for (uint32_t c = 0; c < channels; ++c) {
            std::vector<uint16_t> table(entries);
            for (uint32_t i = 0; i < entries; ++i, numbers += bytes) {
                table[i] = bytes == 1 ? static_cast<uint16_t>(*numbers * 257U)
                                      : loadFileOrder<uint16_t>(numbers);
                ramps =
                    ramps && table[i] == (uint64_t{i} * 65535 + (entries - 1) / 2) / (entries - 1);
            }
            curves.push_back(tableCurve(std::move(table)));
        }
        if (!ramps) addCurves(std::move(curves));
        return at + size;
    }

    // lutAToB: A curves, grid, M curves, matrix, B curves; lutBToA: the same backwards. An offset
    // of 0 says that an element is absent.
    void readLutAB(bool aToB) {
        const uint32_t deviceSide = aToB ? inputs() : outputs();
        const uint32_t pcsSide = aToB ? outputs() : inputs();
        const auto offset = [&](LutElement element) {
            return tag_.u32(kOffsets + 4 * static_cast<uint32_t>(element));
        };
        if (offset(kClutElement) == 0 && inputs() != outputs()) {
            tag_.fail(icErrTagType, kOffsets + 4 * kClutElement,
                      "has no grid, but " + std::to_string(inputs()) + " inputs and " +
                          std::to_string(outputs()) + " outputs");
        }
        if (offset(kMatrixElement) != 0 && pcsSide != 3) {
            tag_.fail(icErrTagType, kOffsets + 4 * kMatrixElement,
                      "has a matrix for " + std::to_string(pcsSide) + " channels, it serves 3");
        }
        static constexpr LutElement kOrder[] = {kACurves, kClutElement, kMCurves, kMatrixElement,
                                                kBCurves};
        for (size_t i = 0; i < std::size(kOrder); ++i) {
            const LutElement element = kOrder[aToB ? i : std::size(kOrder) - 1 - i];
            const uint32_t at = offset(element);
            if (at != 0) readElement(element, at, element == kACurves ? deviceSide : pcsSide);
        }
    }

    void readElement(LutElement element, uint64_t at, uint32_t channels) {
        if (at < kHeaderSize || at >= tag_.size()) {
            tag_.fail(icErrTagType, kOffsets + 4 * static_cast<int64_t>(element),
                      "has an element at byte " + std::to_string(at) +
                          (at < kHeaderSize ? ", inside its header" : ", behind its end"));
        }
        if (element == kMatrixElement) return readMatrix(at, true);
        if (element != kClutElement) return readCurveSet(at, channels);
        std::vector<int> points;
        for (uint32_t d = 0; d < inputs(); ++d)
            points.push_back(static_cast<int>(tag_.u8(at + d)));
        const uint32_t precision = tag_.u8(at + kClutPrecision);
        if (precision != 1 && precision != 2) {
            tag_.fail(icErrTagType, static_cast<int64_t>(at + kClutPrecision),
                      "has grid numbers of " + std::to_string(precision) + " bytes, not 1 or 2");
        }
        const uint64_t samples = samplesOf(points, at, 1);
        readGrid(std::move(points), samples, at + kClutData, precision);
    }

    void readCurveSet(uint64_t at, uint32_t channels) {
        std::vector<CurvePtr> curves;
        for (uint32_t c = 0; c < channels; ++c) {
            uint64_t size = 0;
            curves.push_back(readCurve(tag_, at, &size));
            at = (at + size + 3) & ~uint64_t{3};
        }
        addCurves(std::move(curves));
    }

    const TagReader& tag_;
    uint32_t inSpace_;
    uint32_t outSpace_;
    std::string origin_;
    StageList stages_;
};

}  // namespace

StageList lutStages(const TagReader& tag, uint32_t inSpace, uint32_t outSpace,
                    const std::string& origin) {
    return LutReader(tag, inSpace, outSpace, origin).read();
}

}  // namespace lumoxa::engine
