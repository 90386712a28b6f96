// SPDX-License-Identifier: Apache-2.0
//
// x^y = e^(y ln x), with the logarithm in double-double arithmetic: the exponential multiplies its
// error by y ln x, so that 53 bits would not do. Both functions are table-driven (Tang, ACM
// Transactions on Mathematical Software 15 and 16, 1989 and 1990); the compiler makes the tables.
#include "base/power.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "base/double_double.h"

namespace lumoxa {
namespace {

constexpr int kFractionBits = 52;
constexpr int kExponentBias = 1023;
constexpr uint64_t kOneBits = uint64_t{kExponentBias} << kFractionBits;
constexpr uint64_t kFractionMask = (uint64_t{1} << kFractionBits) - 1;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

constexpr int kCells = 128;  // of either table
constexpr int kCellBits = 7;
constexpr size_t kCellCount = kCells;

// --- tables -----------------------------------------------------------------------------------

/// ln v = 2 artanh((v - 1) / (v + 1)), as a series; for 2/3 <= v <= 2.
constexpr DoubleDouble seriesLog(double v) {
    const DoubleDouble s = DoubleDouble{v - 1.0, 0.0} / (v + 1.0);
    const DoubleDouble square = s * s;
    DoubleDouble term = s, sum = s;
    for (int n = 3; n < 75; n += 2) {  // s <= 1/3, and 3^-75 is below 2^-118
        term = term * square;
        sum = sum + term / n;
    }
    return {2.0 * sum.high, 2.0 * sum.low};
}

constexpr DoubleDouble kLn2 = seriesLog(2.0);

/// A short reciprocal of the middle of a cell of 1 <= m < 2, and the logarithm that it takes away.
/// Cells from 1.5 on are counted as half their value, so that what is left vanishes as x
/// approaches 1 from either side.
struct LogCell {
    double reciprocal;
    DoubleDouble log;  // -ln(reciprocal)
};

constexpr LogCell logCell(int cell) {
    // Eleven bits, so that products with half a fraction are exact.
    constexpr double kSteps = 1024.0;
    const double middle = 1.0 + (cell + 0.5) / kCells;
    const double scale = 2 * cell < kCells ? 1.0 : 2.0;
    double reciprocal = static_cast<int>(scale * kSteps / middle + 0.5) / kSteps;
    if (cell == 0 || cell == kCells - 1) reciprocal = 1.0;
    const DoubleDouble log = seriesLog(reciprocal);
    return {reciprocal, {-log.high, -log.low}};
}

constexpr std::array<LogCell, kCellCount> makeLogCells() {
    std::array<LogCell, kCellCount> cells{};
    for (int i = 0; i < kCells; ++i)
        cells[static_cast<size_t>(i)] = logCell(i);
    return cells;
}

/// 2^(i / 128).
constexpr std::array<DoubleDouble, kCellCount> makeExponentials() {
    const DoubleDouble step = kLn2 / kCells;
    DoubleDouble factor{1.0, 0.0};  // e^step, by Horner's rule
    for (int n = 14; n > 0; --n)    // step^15 / 15! is below 2^-150
        factor = DoubleDouble{1.0, 0.0} + (step * factor) / n;
    std::array<DoubleDouble, kCellCount> powers{};
    powers[0] = {1.0, 0.0};
    for (size_t i = 1; i < kCellCount; ++i)
        powers[i] = powers[i - 1] * factor;
    return powers;
}

constexpr std::array<LogCell, kCellCount> kLogCells = makeLogCells();
constexpr std::array<DoubleDouble, kCellCount> kExponentials = makeExponentials();

// --- logarithm and exponential ----------------------------------------------------------------

/// ln(1 + r) for |r| < 1/128: the first two terms in double-double, the rest after Mercator.
DoubleDouble logOnePlus(const DoubleDouble& r) {
    const double t = r.high;
    const DoubleDouble square = exactProduct(t, t);
    const double rest =
        t * square.high *
        (1.0 / 3 +
         t * (-1.0 / 4 +
              t * (1.0 / 5 +
                   t * (-1.0 / 6 + t * (1.0 / 7 + t * (-1.0 / 8 + t * (1.0 / 9 - t / 10)))))));
    const DoubleDouble sum = orderedSum(t, -0.5 * square.high);
    return orderedSum(sum.high, sum.low + (rest + (r.low - t * r.low - 0.5 * square.low)));
}

/// ln x for x > 0, finite.
DoubleDouble naturalLog(double x) {
    constexpr double kSubnormalScale = 18014398509481984.0;  // 2^54
    constexpr int kSubnormalShift = 54;
    int exponent = 0;
    if (x < std::numeric_limits<double>::min()) {
        x *= kSubnormalScale;
        exponent = -kSubnormalShift;
    }
    const auto bits = std::bit_cast<uint64_t>(x);
    exponent += static_cast<int>(bits >> kFractionBits) - kExponentBias;
    const uint64_t fraction = bits & kFractionMask;
    const auto cell = static_cast<size_t>(fraction >> (kFractionBits - kCellBits));
    double m = std::bit_cast<double>(fraction | kOneBits);
    if (2 * cell >= kCellCount) {
        m *= 0.5;
        ++exponent;
    }
    const auto& [reciprocal, log] = kLogCells[cell];
    const double high = upperHalf(m);
    const DoubleDouble r = exactSum(high * reciprocal - 1.0, (m - high) * reciprocal);
    return (kLn2 * exponent + log) + logOnePlus(r);
}

double twoToThe(int n) {
    return std::bit_cast<double>(static_cast<uint64_t>(n + kExponentBias) << kFractionBits);
}

/// 2^n v, in two steps, since 2^n may lie outside the range where the result does not.
double scaled(double v, int n) {
    const int half = n / 2;
    return v * twoToThe(half) * twoToThe(n - half);
}

/// e^p.
double exponential(const DoubleDouble& p) {
    constexpr double kOverflow = 710.0;    // above ln(2^1024)
    constexpr double kUnderflow = -746.0;  // below ln(2^-1075)
    if (p.high > kOverflow) return kInfinity;
    if (p.high < kUnderflow) return 0.0;

    // p = cells ln 2 / 128 + q. The upper part of the step is short, so that its multiples are
    // exact.
    constexpr double kCellsPerUnit = kCells / kLn2.high;
    constexpr double kStepHigh = upperHalf(kLn2.high) / kCells;
    constexpr double kStepLow = ((kLn2.high - upperHalf(kLn2.high)) + kLn2.low) / kCells;
    const auto cells = static_cast<int>(p.high * kCellsPerUnit + (p.high < 0.0 ? -0.5 : 0.5));
    const double q = (p.high - cells * kStepHigh) + (p.low - cells * kStepLow);
    const double growth =
        q + q * q * (0.5 + q * (1.0 / 6 + q * (1.0 / 24 + q * (1.0 / 120 + q / 720))));

    const int cell = cells & (kCells - 1);
    const DoubleDouble& base = kExponentials[static_cast<size_t>(cell)];
    return scaled(base.high + (base.low + base.high * growth), (cells - cell) / kCells);
}

// --- the cases of ISO C -----------------------------------------------------------------------

bool isOddInteger(double y) {
    constexpr double kAllEven = 9007199254740992.0;  // 2^53
    const double size = std::fabs(y);
    if (size >= kAllEven) return false;
    const auto whole = static_cast<int64_t>(size);
    return static_cast<double>(whole) == size && whole % 2 == 1;
}

bool isInteger(double y) {
    constexpr double kAllWhole = 4503599627370496.0;  // 2^52
    const double size = std::fabs(y);
    return size >= kAllWhole || static_cast<double>(static_cast<int64_t>(size)) == size;
}

/// x^y for x >= 0, neither of them special in other ways.
double positivePower(double x, double y) {
    if (x == 0.0) return y < 0.0 ? kInfinity : 0.0;
    if (x == kInfinity) return y < 0.0 ? 0.0 : kInfinity;
    if (x == 1.0) return 1.0;
    // Beyond this every base but 1 overflows or vanishes, and products would do before.
    constexpr double kLargest = 1e20;
    // Below this every power rounds to 1, and the products' errors would be lost.
    constexpr double kSmallest = 1e-20;
    if (std::fabs(y) > kLargest) return (x > 1.0) == (y > 0.0) ? kInfinity : 0.0;
    if (std::fabs(y) < kSmallest) return 1.0;
    return exponential(naturalLog(x) * y);
}

}  // namespace

double power(double x, double y) {
    if (x == 1.0 || y == 0.0) return 1.0;
    if (std::isnan(x) || std::isnan(y)) return x + y;
    if (!std::signbit(x)) return positivePower(x, y);
    if (x == -1.0 && std::fabs(y) == kInfinity) return 1.0;
    const bool finiteBase = x != 0.0 && x != -kInfinity;
    if (finiteBase && !isInteger(y)) return std::numeric_limits<double>::quiet_NaN();
    const double result = positivePower(-x, y);
    return isOddInteger(y) ? -result : result;
}

}  // namespace lumoxa
