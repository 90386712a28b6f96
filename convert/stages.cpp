// SPDX-License-Identifier: Apache-2.0
#include "convert/stages.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/cie_rows.h"

namespace lumoxa::engine {

void StageList::convert(const float* source, int inputs, float* destination, int outputs) const {
    Row rows[kMaxChannels] = {};
    for (int c = 0; c < inputs; ++c)
        rows[c][0] = source[c];
    run(rows, 1);
    for (int c = 0; c < outputs; ++c)
        destination[c] = rows[c][0];
}

// --- curves --------------------------------------------------------------------------------------

CurveStage::CurveStage(std::vector<CurvePtr> curves)
    : Stage(static_cast<int>(curves.size()), static_cast<int>(curves.size())),
      curves_(std::move(curves)) {}

void CurveStage::run(Row* rows, int pixels) const {
    for (size_t c = 0; c < curves_.size(); ++c)
        curves_[c]->run(rows[c], pixels);
}

std::string CurveStage::describe() const {
    const bool same = std::all_of(curves_.begin(), curves_.end(),
                                  [&](const CurvePtr& curve) { return *curve == *curves_[0]; });
    return "curves, " + curves_[0]->describe() + (same ? "" : " and others");
}

bool CurveStage::allIdentity() const {
    return std::all_of(curves_.begin(), curves_.end(),
                       [](const CurvePtr& curve) { return curve->isIdentity(); });
}

std::shared_ptr<const CurveStage> CurveStage::inverse() const {
    std::vector<CurvePtr> inverses;
    inverses.reserve(curves_.size());
    for (const CurvePtr& curve : curves_)
        inverses.push_back(curve->inverse());
    return std::make_shared<CurveStage>(std::move(inverses));
}

// --- matrices ------------------------------------------------------------------------------------

Affine Affine::product(const Affine& second, const Affine& first) {
    Affine out;
    out.inputs = first.inputs;
    out.outputs = second.outputs;
    const auto middle = static_cast<size_t>(first.outputs);
    for (size_t r = 0; r < 3; ++r) {
        out.offsets[r] = second.offsets[r];
        for (size_t k = 0; k < middle; ++k)
            out.offsets[r] += second.factors[r][k] * first.offsets[k];
        for (size_t c = 0; c < 3; ++c) {
            out.factors[r][c] = 0;
            for (size_t k = 0; k < middle; ++k)
                out.factors[r][c] += second.factors[r][k] * first.factors[k][c];
        }
    }
    return out;
}

Affine Affine::diagonal(const std::array<double, 3>& factors,
                        const std::array<double, 3>& offsets) {
    Affine out;
    for (size_t c = 0; c < 3; ++c)
        out.factors[c][c] = factors[c];
    out.offsets = offsets;
    return out;
}

bool Affine::invert(Affine& out) const {
    const auto& m = factors;
    const auto minor = [&](size_t r, size_t c) {
        const size_t r1 = (r + 1) % 3, r2 = (r + 2) % 3, c1 = (c + 1) % 3, c2 = (c + 2) % 3;
        return m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1];
    };
    const double determinant =
        m[0][0] * minor(0, 0) + m[0][1] * minor(0, 1) + m[0][2] * minor(0, 2);
    constexpr double kSingular = 1e-9;  // s15Fixed16 colorants of any use are far above it
    if (!(std::fabs(determinant) > kSingular)) return false;
    for (size_t r = 0; r < 3; ++r) {
        for (size_t c = 0; c < 3; ++c)
            out.factors[c][r] = minor(r, c) / determinant;
    }
    for (size_t r = 0; r < 3; ++r) {
        out.offsets[r] = 0;
        for (size_t k = 0; k < 3; ++k)
            out.offsets[r] -= out.factors[r][k] * offsets[k];
    }
    return true;
}

bool Affine::isIdentity() const {
    constexpr double kNothing = 1e-9;  // below half a unit of single precision
    if (inputs != outputs) return false;
    for (size_t r = 0; r < static_cast<size_t>(outputs); ++r) {
        if (std::fabs(offsets[r]) > kNothing) return false;
        for (size_t c = 0; c < static_cast<size_t>(inputs); ++c) {
            if (std::fabs(factors[r][c] - (r == c ? 1 : 0)) > kNothing) return false;
        }
    }
    return true;
}

AffineStage::AffineStage(const Affine& affine, std::string what)
    : Stage(affine.inputs, affine.outputs), affine_(affine), what_(std::move(what)) {
    for (size_t r = 0; r < 3; ++r) {
        offsets_[r] = static_cast<float>(affine.offsets[r]);
        for (size_t c = 0; c < 3; ++c)
            factors_[r][c] = static_cast<float>(affine.factors[r][c]);
    }
}

void AffineStage::run(Row* rows, int pixels) const {
    const auto& m = factors_;
    const float* o = offsets_;
    if (inputs() == 1) {
        for (int r = outputs(); r-- > 0;) {
            for (int i = 0; i < pixels; ++i)
                rows[r][i] = m[r][0] * rows[0][i] + o[r];
        }
    } else {
        Row out[3];
        for (int r = 0; r < outputs(); ++r) {
            for (int i = 0; i < pixels; ++i) {
                out[r][i] =
                    m[r][0] * rows[0][i] + m[r][1] * rows[1][i] + m[r][2] * rows[2][i] + o[r];
            }
        }
        for (int r = 0; r < outputs(); ++r)
            std::copy_n(out[r], pixels, rows[r]);
    }
}

// --- connection spaces ---------------------------------------------------------------------------

void LabToXyzStage::run(Row* rows, int pixels) const {
    labToXyz(rows[0], rows[1], rows[2], pixels);
}

void XyzToLabStage::run(Row* rows, int pixels) const {
    xyzToLab(rows[0], rows[1], rows[2], pixels);
}

// --- simplifying ---------------------------------------------------------------------------------

namespace {

std::string joined(const std::string& a, const std::string& b) {
    return a == b || b.empty() ? a : a.empty() ? b : a + ", " + b;
}

template <class First, class Second>
bool arePair(const PlacedStage& first, const PlacedStage& second) {
    return dynamic_cast<const First*>(first.stage.get()) != nullptr &&
           dynamic_cast<const Second*>(second.stage.get()) != nullptr;
}

bool changesNothing(const PlacedStage& placed) {
    if (const auto* affine = dynamic_cast<const AffineStage*>(placed.stage.get()))
        return affine->affine().isIdentity();
    const auto* curves = dynamic_cast<const CurveStage*>(placed.stage.get());
    return curves != nullptr && curves->allIdentity();
}

PlacedStage mergedAffine(const PlacedStage& first, const PlacedStage& second) {
    const auto& a = static_cast<const AffineStage&>(*first.stage);
    const auto& b = static_cast<const AffineStage&>(*second.stage);
    const std::string what = a.describe() == b.describe() ? a.describe() : "matrix";
    return {std::make_shared<AffineStage>(Affine::product(b.affine(), a.affine()), what),
            joined(first.origin, second.origin)};
}

}  // namespace

StageList simplified(const StageList& list) {
    StageList out;
    std::vector<PlacedStage>& kept = out.stages();
    for (const PlacedStage& placed : list.stages()) {
        if (changesNothing(placed)) continue;
        const bool first = kept.empty();
        if (!first && (arePair<LabToXyzStage, XyzToLabStage>(kept.back(), placed) ||
                       arePair<XyzToLabStage, LabToXyzStage>(kept.back(), placed))) {
            kept.pop_back();
        } else if (!first && arePair<AffineStage, AffineStage>(kept.back(), placed)) {
            const PlacedStage merged = mergedAffine(kept.back(), placed);
            kept.pop_back();
            if (!changesNothing(merged)) kept.push_back(merged);
        } else {
            kept.push_back(placed);
        }
    }
    return out;
}

}  // namespace lumoxa::engine
