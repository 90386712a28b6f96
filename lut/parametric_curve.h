// SPDX-License-Identifier: Apache-2.0
//
// Parametric curves (parametricCurveType of ICC.1:2010): a power segment and, below a break point,
// a linear one.
//
//   type 0   x^g
//   type 1   (a x + b)^g        x >= -b/a, else 0
//   type 2   (a x + b)^g + c    x >= -b/a, else c
//   type 3   (a x + b)^g        x >= d,    else c x
//   type 4   (a x + b)^g + e    x >= d,    else c x + f
#pragma once

#include <cstdint>

#include "base/power.h"
#include "lut/lut_tag.h"

namespace lumoxa {

class ParametricCurve {
  public:
    ParametricCurve() = default;

    /// `curve` views a 'para' element that holds all its parameters.
    explicit ParametricCurve(const TagView& curve) : type_(curve.u16(lut_layout::kParaType)) {
        const uint32_t count = parametricCount(type_);
        for (uint32_t i = 0; i < count; ++i) {
            const auto fixed = static_cast<int32_t>(curve.u32(lut_layout::kCurveData + 4 * i));
            p_[i] = static_cast<float>(fixed) * (1.0f / 65536.0f);
        }
    }

    uint32_t type() const { return type_; }
    bool known() const { return parametricCount(type_) != 0; }

    bool inPowerSegment(float x) const {
        if (type_ == 0) return true;
        return type_ <= 2 ? x >= -b() / a() : x >= d();
    }
    /// The power term alone, without the constant that types 2 and 4 add to it.
    float powerTerm(float x) const {
        return type_ == 0 ? power(x, g()) : power(a() * x + b(), g());
    }
    float powerOffset() const { return type_ == 2 ? c() : type_ == 4 ? p_[5] : 0.0f; }
    float linear(float x) const {
        switch (type_) {
            case 2:
                return c();
            case 3:
                return c() * x;
            case 4:
                return c() * x + p_[6];
            default:
                return 0.0f;
        }
    }

  private:
    float g() const { return p_[0]; }
    float a() const { return p_[1]; }
    float b() const { return p_[2]; }
    float c() const { return p_[3]; }
    float d() const { return p_[4]; }

    uint32_t type_ = 0;
    float p_[7] = {};  // g, a, b, c, d, e, f
};

}  // namespace lumoxa
