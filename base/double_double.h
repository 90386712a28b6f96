// SPDX-License-Identifier: Apache-2.0
//
// Sums and products of twice double precision, as unevaluated sums of two doubles (Dekker 1971,
// Knuth's two-sum). They need plain rounded arithmetic: no fused multiply-add, no reordering.
#pragma once

namespace lumoxa {

/// high + low, where low is at most half a unit in the last place of high.
struct DoubleDouble {
    double high, low;
};

/// a + b without error, for |a| >= |b| or a == 0.
constexpr DoubleDouble orderedSum(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

/// a + b without error.
constexpr DoubleDouble exactSum(double a, double b) {
    const double sum = a + b;
    const double partOfB = sum - a;
    return {sum, (a - (sum - partOfB)) + (b - partOfB)};
}

/// The upper 26 bits of a double; what is left fits into 26 bits as well (Veltkamp 1968).
constexpr double upperHalf(double a) {
    constexpr double kSplitter = 134217729.0;  // 2^27 + 1
    const double scaled = kSplitter * a;
    return scaled - (scaled - a);
}

/// a b without error, as long as neither is above 2^995 and the product is 0 or above 2^-960.
constexpr DoubleDouble exactProduct(double a, double b) {
    const double product = a * b;
    const double aHigh = upperHalf(a), aLow = a - aHigh;
    const double bHigh = upperHalf(b), bLow = b - bHigh;
    const double error = ((aHigh * bHigh - product) + aHigh * bLow + aLow * bHigh) + aLow * bLow;
    return {product, error};
}

constexpr DoubleDouble operator+(const DoubleDouble& a, const DoubleDouble& b) {
    const DoubleDouble high = exactSum(a.high, b.high);
    return orderedSum(high.high, high.low + (a.low + b.low));
}

constexpr DoubleDouble operator*(const DoubleDouble& a, double b) {
    const DoubleDouble product = exactProduct(a.high, b);
    return orderedSum(product.high, product.low + a.low * b);
}

constexpr DoubleDouble operator*(const DoubleDouble& a, const DoubleDouble& b) {
    const DoubleDouble product = exactProduct(a.high, b.high);
    return orderedSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

constexpr DoubleDouble operator/(const DoubleDouble& a, double b) {
    const double first = a.high / b;
    const DoubleDouble product = exactProduct(first, b);
    const double rest = ((a.high - product.high) - product.low) + a.low;
    return orderedSum(first, rest / b);
}

}  // namespace lumoxa
