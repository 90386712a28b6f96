// SPDX-License-Identifier: Apache-2.0
//
// The inverse of a curve that is given by its values at equal steps.
#pragma once

#include <vector>

#include "convert/curve.h"

namespace lumoxa::engine {

/// The curve is made monotone first, by its running maximum (of a falling curve, that of its mirror
/// image): tone curves that dip have been measured with noise. Where it is flat, a value
/// leads to the upper end of the flat part. Its least value leads to 0 and its greatest to 1; from
/// a long flat end, to where it begins to change.
class InverseTable : public Curve {
  public:
    /// @param values  at least 2, of 0..1
    explicit InverseTable(const std::vector<float>& values);

    void run(float* row, int count) const override;
    std::string describe() const override;
    CurvePtr inverse() const override;
    bool operator==(const Curve& other) const override;

  private:
    float lookUp(float y) const;
    void findEnds();

    bool falling_;
    std::vector<float> rising_;    // the monotone curve, mirrored if it falls
    std::vector<uint32_t> guide_;  // for equal steps of y, the last entry that is not above
    float atLowest_ = 0.0f, atHighest_ = 1.0f;  // x of the least and the greatest y
    float perStep_ = 0;                         // guide steps a unit of y
    float perEntry_ = 0;
};

}  // namespace lumoxa::engine
