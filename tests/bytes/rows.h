// SPDX-License-Identifier: Apache-2.0
//
// Rows of the table of hashes: what conversions and calls give, as numbers. They are made from
// integers, so that what differs between systems is the library's doing.
#pragma once

#include "tests/support/xforms.h"

namespace lumoxa_test {

/// FNV-1a of 64 bits (Fowler, Noll, Vo), the lowest byte of a number first.
class Hash {
  public:
    template <class Number>
    void add(const std::vector<Number>& numbers) {
        for (const Number n : numbers) {
            for (unsigned bit = 0; bit < 8 * sizeof n; bit += 8)
                value_ = (value_ ^ (static_cast<uint64_t>(n) >> bit & 0xFF)) * 0x100000001B3;
        }
    }
    uint64_t value() const { return value_; }

  private:
    uint64_t value_ = 0xCBF29CE484222325;
};

struct Row {
    std::string name;
    Hash hash;
    std::vector<Bytes> installed = {};  // the profiles of packages that it is made from
};
using Rows = std::vector<Row>;

/// Pixels of noise with many ends of the range among it, then a ramp of grays; 8 or 16 bits.
Samples image(uint32_t channels, int bits);

/// The image converted, packed and planar, in lines with gaps and in one; or the code of a refusal.
void addConverted(Hash& hash, icXform_t xform, int inBits, int outBits);
void addInAllDepths(Hash& hash, icXform_t xform);
/// One row for each pair of depths.
void addRowsByDepth(Rows& rows, const std::string& name, icXform_t xform);
/// The table that a transform becomes in a profile.
void addStored(Hash& hash, icXform_t xform);

/// A profile with zeros for the time at which it was made.
Bytes withoutDate(Bytes profile);

/// Curves by a letter each: i identity, g and h gammas, s, k and l sampled with 17, 16 and 1024
/// entries, 0 to 4 parametric, 5 to 7 other powers alone.
std::vector<Bytes> curves(const std::string& letters);

Rows lutRows();
Rows lutABRows();
Rows intentRows();
Rows curveRows();
Rows grayRows();
Rows labXyzRows();
Rows chainRows();
Rows storedRows();
Rows installedRows();
Rows engineRows();
Rows engineRunRows();
Rows engineProfileRows();
Rows madeRows();

extern const char kRecordedHashes[];  // the table's file

}  // namespace lumoxa_test
