// SPDX-License-Identifier: Apache-2.0
//
// The stages that conversions of profiles are made of, but for the grid (grid_stage.h).
#pragma once

#include <array>
#include <vector>

#include "convert/curve.h"
#include "convert/stage.h"

namespace lumoxa::engine {

/// One curve a channel.
class CurveStage : public Stage {
  public:
    explicit CurveStage(std::vector<CurvePtr> curves);

    void run(Row* rows, int pixels) const override;
    std::string describe() const override;

    const std::vector<CurvePtr>& curves() const { return curves_; }
    /// Whether all curves are tables of 16-bit numbers with equally many entries, or identities.
    bool allIdentity() const;
    std::shared_ptr<const CurveStage> inverse() const;

  private:
    std::vector<CurvePtr> curves_;
};

/// Up to three channels to up to three: out = factors x in + offsets. Made in double precision, run
/// in single.
struct Affine {
    int inputs = 3, outputs = 3;
    std::array<std::array<double, 3>, 3> factors = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    std::array<double, 3> offsets = {0, 0, 0};

    /// `second` after `first`.
    static Affine product(const Affine& second, const Affine& first);
    static Affine diagonal(const std::array<double, 3>& factors,
                           const std::array<double, 3>& offsets = {0, 0, 0});
    /// The inverse of three channels to three; false where there is none.
    bool invert(Affine& out) const;
    bool isIdentity() const;
};

class AffineStage : public Stage {
  public:
    AffineStage(const Affine& affine, std::string what);

    void run(Row* rows, int pixels) const override;
    std::string describe() const override { return what_; }
    const Affine& affine() const { return affine_; }

  private:
    Affine affine_;
    std::string what_;
    float factors_[3][3];
    float offsets_[3];
};

/// CIE 15, relative to D50.
class LabToXyzStage : public Stage {
  public:
    LabToXyzStage() : Stage(3, 3) {}
    void run(Row* rows, int pixels) const override;
    std::string describe() const override { return "Lab to XYZ"; }
};

class XyzToLabStage : public Stage {
  public:
    XyzToLabStage() : Stage(3, 3) {}
    void run(Row* rows, int pixels) const override;
    std::string describe() const override { return "XYZ to Lab"; }
};

/// Joins what can be computed in one: affine stages that follow one another become one, identities
/// and changes to and fro between connection spaces go.
StageList simplified(const StageList& list);

}  // namespace lumoxa::engine
