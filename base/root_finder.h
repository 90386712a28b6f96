// SPDX-License-Identifier: Apache-2.0
//
// Where a function crosses zero: the method of van Wijngaarden and Dekker as improved by R. P.
// Brent ("Algorithms for Minimization without Derivatives", 1973, chapter 4), in single precision.
//
// A bracket of two points with values of opposite sign shrinks around the crossing. Each step goes
// where a curve through the newest points crosses zero (inverse quadratic interpolation, or the
// secant where there are two points only) as long as that shrinks the bracket fast enough; else it
// halves the bracket.
#pragma once

#include <algorithm>
#include <cmath>

namespace lumoxa {

/// A place and the function's value there.
struct RootSample {
    float x;
    float value;
};

/// The bracket: the crossing lies between `best`, the smaller of the two values, and `opposite`.
/// `before` is the estimate before the best one, or the same point as `opposite`.
class RootBracket {
  public:
    RootBracket(RootSample from, RootSample to) : before_(from), best_(to), opposite_(to) {}

    RootSample best() const { return best_; }
    float halfWidth() const { return 0.5f * (opposite_.x - best_.x); }

    /// Restores what holds of the three points after a new best() has come.
    void settle() {
        const float newest = best_.value;
        const float other = opposite_.value;
        if ((newest > 0.0f && other > 0.0f) || (newest < 0.0f && other < 0.0f)) {
            opposite_ = before_;
            lastStep_ = stepBefore_ = best_.x - before_.x;
        }
        if (std::fabs(opposite_.value) < std::fabs(best_.value)) {
            before_ = best_;
            best_ = opposite_;
            opposite_ = before_;
        }
    }

    /// The next place to look at, at least `tolerance` from the best one.
    float next(float tolerance) {
        const bool converging = std::fabs(stepBefore_) >= tolerance &&
                                std::fabs(before_.value) > std::fabs(best_.value);
        if (!converging || !interpolate(tolerance)) lastStep_ = stepBefore_ = halfWidth();
        const float least = std::copysign(tolerance, halfWidth());
        return best_.x + (std::fabs(lastStep_) > tolerance ? lastStep_ : least);
    }
    void add(RootSample newest) {
        before_ = best_;
        best_ = newest;
    }

  private:
    /// A step as a quotient, so that one that is no number is never worked out.
    struct Quotient {
        float numerator;
        float denominator;
    };

    /// The step to where a line, or a parabola in the value, through the points crosses zero.
    Quotient crossing() const {
        const float toBefore = best_.value / before_.value;
        if (before_.x == opposite_.x) return {2.0f * halfWidth() * toBefore, 1.0f - toBefore};
        const float acrossBracket = before_.value / opposite_.value;
        const float toOpposite = best_.value / opposite_.value;
        return {toBefore * (2.0f * halfWidth() * acrossBracket * (acrossBracket - toOpposite) -
                            (best_.x - before_.x) * (toOpposite - 1.0f)),
                (acrossBracket - 1.0f) * (toOpposite - 1.0f) * (toBefore - 1.0f)};
    }

    /// Takes that step where it stays well inside the bracket and is less than half as long as the
    /// step before the last one.
    bool interpolate(float tolerance) {
        Quotient step = crossing();
        if (step.numerator > 0.0f) step.denominator = -step.denominator;
        step.numerator = std::fabs(step.numerator);
        const float inside =
            3.0f * halfWidth() * step.denominator - std::fabs(tolerance * step.denominator);
        const float shrinking = std::fabs(stepBefore_ * step.denominator);
        if (!(2.0f * step.numerator < std::min(inside, shrinking))) return false;
        stepBefore_ = lastStep_;
        lastStep_ = step.numerator / step.denominator;
        return true;
    }

    RootSample before_;
    RootSample best_;
    RootSample opposite_;
    float lastStep_ = 0.0f;
    float stepBefore_ = 0.0f;
};

/// Finds where `function` crosses zero between two places with values of opposite sign; where the
/// signs agree, the search may leave the bracket or find nothing. `toleranceAt(x)` is how near the
/// answer must come to a crossing around x. False, with `root` untouched, when 100 steps are too
/// few.
template <class Function, class Tolerance>
bool findRoot(const Function& function, RootSample from, RootSample to,
              const Tolerance& toleranceAt, float& root) {
    constexpr int kMostSteps = 100;
    RootBracket bracket(from, to);
    for (int step = 0; step < kMostSteps; ++step) {
        bracket.settle();
        const RootSample best = bracket.best();
        const float tolerance = toleranceAt(best.x);
        if (std::fabs(bracket.halfWidth()) <= tolerance || best.value == 0.0f) {
            root = best.x;
            return true;
        }
        const float x = bracket.next(tolerance);
        bracket.add({x, function(x)});
    }
    return false;
}

}  // namespace lumoxa
