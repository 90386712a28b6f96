// SPDX-License-Identifier: Apache-2.0
//
// One-dimensional curves of profiles, evaluated exactly: the 'curv' and 'para' types (curveType
// and parametricCurveType of ICC.1:2010), the tables of lut8 and lut16 tags, and the inverses that
// lead to a device.
//
// Domain and range are 0..1; values beyond either are clipped, as ICC.1 demands of curves.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace lumoxa::engine {

/// Immutable once made.
class Curve {
  public:
    Curve() = default;
    virtual ~Curve() = default;
    Curve(const Curve&) = delete;
    Curve& operator=(const Curve&) = delete;

    /// Converts a row in place.
    virtual void run(float* row, int count) const = 0;
    /// Whether it changes nothing between 0 and 1.
    virtual bool isIdentity() const { return false; }
    /// What it is, for reports.
    virtual std::string describe() const = 0;
    /// Its entries where it is a table of 16-bit numbers at equal steps, else null.
    virtual const std::vector<uint16_t>* table() const { return nullptr; }
    /// The curve that leads back. Where several inputs have one output, 0 and 1 are chosen before
    /// others, so that black and white come out whole.
    virtual std::shared_ptr<const Curve> inverse() const = 0;
    virtual bool operator==(const Curve& other) const { return this == &other; }

    float at(float x) const {
        run(&x, 1);
        return x;
    }
};

using CurvePtr = std::shared_ptr<const Curve>;

CurvePtr identityCurve();

/// x^gamma, gamma > 0.
CurvePtr gammaCurve(double gamma);

/// A parametric curve in the one form that all its types are cases of:
/// (a x + b)^g + e for x >= d, c x + f below.
struct Parametric {
    double g = 1, a = 1, b = 0, c = 0, d = 0, e = 0, f = 0;
};
CurvePtr parametricCurve(const Parametric& parameters);

/// Linear interpolation between equally spaced entries, 0..65535; at least 2.
CurvePtr tableCurve(std::vector<uint16_t> entries);

}  // namespace lumoxa::engine
