// SPDX-License-Identifier: Apache-2.0
//
// Media white and black, and the chromatic adaptation of a profile.
#include <cmath>

#include "base/cie_rows.h"
#include "convert/colorimetry.h"
#include "convert/stages.h"
#include "inspect/facts.h"
#include "inspect/words.h"

namespace lumoxa::inspection {
namespace {

using engine::Affine;
using engine::Chromaticity;

using Xyz = std::array<double, 3>;

std::optional<Xyz> pointOf(const ProfileFile& file, uint32_t signature) {
    constexpr uint64_t kXyzBytes = 20;
    const TagEntry* entry = file.find(signature);
    if (entry == nullptr) return std::nullopt;
    const ByteView data = file.data(*entry);
    if (data.u32(0) != kTypeXyz || data.size() < kXyzBytes) return std::nullopt;
    return Xyz{data.fixed(8), data.fixed(12), data.fixed(16)};
}

void writePoint(JsonObject& report, const char* name, const std::optional<Xyz>& point) {
    if (!point) return report.add(name, nullptr);
    writeNumbers(report, name, *point);
}

// L* of CIE 15.
double lightnessOf(double y) {
    auto lightness = static_cast<float>(y), x = lightness * kWhiteX, z = lightness * kWhiteZ;
    xyzToLab(&x, &lightness, &z, 1);
    return static_cast<double>(x);
}

// The matrix of 'chad', nine numbers row by row (ICC.1:2010, 9.2.15).
std::optional<Affine> adaptationOf(const ProfileFile& file) {
    constexpr uint64_t kNumbersAt = 8, kMatrixBytes = 36;
    const TagEntry* entry = file.find(fourcc("chad"));
    if (entry == nullptr) return std::nullopt;
    const ByteView data = file.data(*entry);
    if (data.u32(0) != fourcc("sf32") || !data.holds(kNumbersAt, kMatrixBytes)) return std::nullopt;
    Affine matrix;
    for (size_t i = 0; i < 9; ++i)
        matrix.factors[i / 3][i % 3] = data.fixed(kNumbersAt + 4 * i);
    return matrix;
}

// The white that the matrix leads to D50.
std::optional<Chromaticity> adaptedWhite(const Affine& matrix) {
    Affine back;
    if (!matrix.invert(back)) return std::nullopt;
    Xyz white = {};
    double sum = 0;
    for (size_t r = 0; r < 3; ++r) {
        for (size_t c = 0; c < 3; ++c)
            white[r] += back.factors[r][c] * kD50Xyz[c] / kFixedOne;
        sum += white[r];
    }
    if (!(sum > 0)) return std::nullopt;
    return Chromaticity{white[0] / sum, white[1] / sum};
}

// Profiles round cone responses, whites and the matrix itself in many ways.
constexpr double kMatrixTolerance = 0.002;

bool isBradford(const Affine& matrix, const Chromaticity& white) {
    try {
        const auto rows = engine::bradfordToD50(white);
        for (size_t i = 0; i < 9; ++i) {
            const double ideal = rows[i / 3][i % 3] / kFixedOne;
            if (std::abs(matrix.factors[i / 3][i % 3] - ideal) > kMatrixTolerance) return false;
        }
        return true;
    } catch (const FaultError&) {
        return false;
    }
}

// Whites of CIE 15 and, for DCI, of SMPTE RP 431-2.
const char* whiteName(const Chromaticity& white) {
    struct NamedWhite {
        const char* name;
        Chromaticity white;
    };
    static constexpr NamedWhite kWhites[] = {
        {"D50", engine::kD50Chromaticity}, {"D55", {0.3324, 0.3474}}, {"D65", {0.3127, 0.3290}},
        {"D75", {0.2990, 0.3149}},         {"A", {0.4476, 0.4074}},   {"C", {0.3101, 0.3162}},
        {"E", {1.0 / 3, 1.0 / 3}},         {"DCI", {0.314, 0.351}},
    };
    constexpr double kTolerance = 0.0008;
    for (const NamedWhite& named : kWhites) {
        if (std::abs(white.x - named.white.x) < kTolerance &&
            std::abs(white.y - named.white.y) < kTolerance)
            return named.name;
    }
    return nullptr;
}

void writeAdaptation(JsonObject& out, const Affine& matrix) {
    out.array("matrix", [&](JsonArray& rows) {
        for (const auto& row : matrix.factors) {
            rows.array([&](JsonArray& list) {
                for (const double factor : row)
                    list.add(factor);
            });
        }
    });
    const std::optional<Chromaticity> white = adaptedWhite(matrix);
    if (!white) {
        out.add("fromWhite", nullptr);
        out.add("bradford", false);
        out.add("words", "a matrix that adapts no white to D50");
        return;
    }
    const bool bradford = isBradford(matrix, *white);
    const char* const name = whiteName(*white);
    out.object("fromWhite", [&](JsonObject& from) {
        from.add("x", white->x);
        from.add("y", white->y);
        writeWord(from, "name", name);
    });
    out.add("bradford", bradford);
    out.add("words",
            (bradford ? "Bradford adaptation from " : "another adaptation from ") +
                (name != nullptr ? std::string(name)
                                 : "x " + numberText(white->x) + ", y " + numberText(white->y)) +
                " to D50");
}

}  // namespace

void writePoints(JsonObject& report, const ProfileFile& file) {
    writePoint(report, "mediaWhitePoint", pointOf(file, fourcc("wtpt")));
    const std::optional<Xyz> black = pointOf(file, fourcc("bkpt"));
    writePoint(report, "mediaBlackPoint", black);
    if (black) {
        report.add("mediaBlackLightness", lightnessOf((*black)[1]));
    } else {
        report.add("mediaBlackLightness", nullptr);
    }
    const std::optional<Affine> adaptation = adaptationOf(file);
    if (!adaptation) return report.add("chromaticAdaptation", nullptr);
    report.object("chromaticAdaptation",
                  [&](JsonObject& out) { writeAdaptation(out, *adaptation); });
}

}  // namespace lumoxa::inspection
