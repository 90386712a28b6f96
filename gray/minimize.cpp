// SPDX-License-Identifier: Apache-2.0
#include "gray/minimize.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "gray/spline.h"

namespace lumoxa {
namespace {

constexpr int kMostSteps = 100;
constexpr float kGoldenSection = 0.381966f;  // (3 - sqrt 5) / 2 of the longer side
constexpr float kShortestStep = 1e-10f;      // where the minimum lies at 0
constexpr int kMostEvaluations = 500;

/// A place on the line and the function's value there.
struct Sample {
    float x, value;
};

/// A step of that length, forward or back.
float directed(float length, bool forward) {
    return forward ? std::fabs(length) : -std::fabs(length);
}

/// The search along a line. The minimum lies in `low_` .. `high_`; the three samples are the lowest
/// that were found, and may be one and the same.
class ValleySearch {
  public:
    ValleySearch(float from, float to, Sample start)
        : low_(std::min(from, to)),
          high_(std::max(from, to)),
          best_(start),
          second_(start),
          third_(start) {}

    Sample best() const { return best_; }

    /// Whether no place in the bracket lies farther than twice `reach` from the best one.
    bool narrow(float reach) const {
        return std::fabs(best_.x - middle()) <= 2.0f * reach - 0.5f * (high_ - low_);
    }

    /// The next place to look at, at least `reach` from the best one.
    float next(float reach) {
        if (!(std::fabs(stepBefore_) > reach) || !stepToVertex(reach)) stepIntoLongerSide();
        const bool longEnough = std::fabs(lastStep_) >= reach;
        return best_.x + (longEnough ? lastStep_ : directed(reach, lastStep_ >= 0.0f));
    }

    void add(Sample sample) {
        const bool lower = sample.value <= best_.value;
        narrowTo(sample.x, lower);
        if (lower) {
            third_ = second_;
            second_ = best_;
            best_ = sample;
        } else if (sample.value <= second_.value || second_.x == best_.x) {
            third_ = second_;
            second_ = sample;
        } else if (sample.value <= third_.value || third_.x == best_.x || third_.x == second_.x) {
            third_ = sample;
        }
    }

  private:
    float middle() const { return 0.5f * (low_ + high_); }

    /// The bracket ends at the higher of the best sample and the new one.
    void narrowTo(float x, bool lower) {
        if (lower) {
            (x >= best_.x ? low_ : high_) = best_.x;
        } else {
            (x < best_.x ? low_ : high_) = x;
        }
    }

    void stepIntoLongerSide() {
        stepBefore_ = best_.x >= middle() ? low_ - best_.x : high_ - best_.x;
        lastStep_ = kGoldenSection * stepBefore_;
    }

    /// Steps to the vertex of the parabola through the three samples, where that lies inside the
    /// bracket and less than half the step before the last one away.
    bool stepToVertex(float reach) {
        const float fromSecond = best_.x - second_.x;
        const float fromThird = best_.x - third_.x;
        const float fallToSecond = fromThird * (best_.value - second_.value);
        const float fallToThird = fromSecond * (best_.value - third_.value);
        float numerator = fromThird * fallToSecond - fromSecond * fallToThird;
        float denominator = 2.0f * (fallToSecond - fallToThird);
        if (denominator > 0.0f) numerator = -numerator;
        denominator = std::fabs(denominator);

        const bool shrinks = !(std::fabs(numerator) >= std::fabs(0.5f * denominator * stepBefore_));
        const bool inside = !(numerator <= denominator * (low_ - best_.x)) &&
                            !(numerator >= denominator * (high_ - best_.x));
        if (!shrinks || !inside) return false;
        stepBefore_ = lastStep_;
        lastStep_ = numerator / denominator;
        keepOffTheEnds(reach);
        return true;
    }

    void keepOffTheEnds(float reach) {
        const float x = best_.x + lastStep_;
        if (x - low_ < 2.0f * reach || high_ - x < 2.0f * reach) {
            lastStep_ = directed(reach, middle() - best_.x >= 0.0f);
        }
    }

    float low_, high_;
    Sample best_, second_, third_;
    float lastStep_ = 0.0f;
    float stepBefore_ = 0.0f;
};

/// The vertices of a simplex with what the moves need of them.
class Simplex {
  public:
    Simplex(double** vertices, double* values, int ndim, SimplexObjective objective,
            int* evaluations, void* context)
        : vertices_(vertices),
          values_(values),
          dimension_(static_cast<size_t>(ndim)),
          objective_(objective),
          evaluations_(evaluations),
          context_(context),
          sums_(dimension_),
          trial_(dimension_) {
        sumUp();
    }

    /// Indices of the best, the worst and the second worst vertex.
    struct Ranks {
        size_t best, worst, nextWorst;
    };
    Ranks rank() const {
        const bool fallsAtFirst = values_[0] > values_[1];
        Ranks r{0, fallsAtFirst ? 0U : 1U, fallsAtFirst ? 1U : 0U};
        for (size_t i = 0; i <= dimension_; ++i) {
            if (values_[i] < values_[r.best]) r.best = i;
            if (values_[i] > values_[r.worst]) {
                r.nextWorst = r.worst;
                r.worst = i;
            } else if (values_[i] > values_[r.nextWorst] && i != r.worst) {
                r.nextWorst = i;
            }
        }
        return r;
    }

    /// Tries `factor` x the worst vertex + (1 - factor) x the centre of the others: -1 reflects, 2
    /// expands, 0.5 contracts. The point takes the vertex's place where it is better.
    double tryMove(size_t worst, double factor) {
        double* const vertex = vertices_[worst];
        const double ofSum = (1.0 - factor) / static_cast<double>(dimension_);
        const double ofVertex = ofSum - factor;  // which the sum has once already
        for (size_t j = 0; j < dimension_; ++j)
            trial_[j] = sums_[j] * ofSum - vertex[j] * ofVertex;
        const double value = evaluate(trial_);
        if (value < values_[worst]) {
            values_[worst] = value;
            for (size_t j = 0; j < dimension_; ++j) {
                sums_[j] += trial_[j] - vertex[j];
                vertex[j] = trial_[j];
            }
        }
        return value;
    }

    /// Moves every vertex halfway to the best one.
    void shrink(size_t best) {
        for (size_t i = 0; i <= dimension_; ++i) {
            if (i == best) continue;
            for (size_t j = 0; j < dimension_; ++j)
                vertices_[i][j] = trial_[j] = 0.5 * (vertices_[i][j] + vertices_[best][j]);
            values_[i] = evaluate(trial_);
        }
        sumUp();
    }

    double value(size_t i) const { return values_[i]; }

  private:
    double evaluate(const std::vector<double>& point) {
        ++*evaluations_;
        return objective_(point.data(), context_);
    }
    void sumUp() {
        for (size_t j = 0; j < dimension_; ++j) {
            sums_[j] = 0.0;
            for (size_t i = 0; i <= dimension_; ++i)
                sums_[j] += vertices_[i][j];
        }
    }

    double** vertices_;
    double* values_;
    size_t dimension_;
    SimplexObjective objective_;
    int* evaluations_;
    void* context_;
    std::vector<double> sums_;  // of each coordinate over all vertices
    std::vector<double> trial_;
};

}  // namespace

float icSplineMinimize(float a, float b, float c, const float* x, const float* y, const float* y2,
                       int n, float tolerance, float* abscissa) {
    const auto sampleAt = [&](float t) {
        Sample sample{t, 0.0f};
        icSplineEval(x, y, y2, n, t, &sample.value);
        return sample;
    };
    ValleySearch search(a, c, sampleAt(b));
    for (int step = 0; step < kMostSteps; ++step) {
        const float reach = tolerance * std::fabs(search.best().x) + kShortestStep;
        if (search.narrow(reach)) break;
        search.add(sampleAt(search.next(reach)));
    }
    *abscissa = search.best().x;
    return search.best().value;
}

int icSimplexMinimize(double** vertices, double* values, int ndim, double ftol,
                      SimplexObjective objective, int* evaluations, void* context) {
    *evaluations = 0;
    Simplex simplex(vertices, values, ndim, objective, evaluations, context);
    for (;;) {
        const auto [best, worst, nextWorst] = simplex.rank();
        const double lowest = simplex.value(best);
        const double highest = simplex.value(worst);
        if (ftol * ftol > highest || ftol > 2.0 * (highest - lowest) / (lowest + highest)) {
            return static_cast<int>(best);
        }
        if (*evaluations >= kMostEvaluations) return -1;
        const double reflected = simplex.tryMove(worst, -1.0);
        if (reflected <= lowest) {
            simplex.tryMove(worst, 2.0);
        } else if (reflected >= simplex.value(nextWorst)) {
            const double before = simplex.value(worst);
            if (simplex.tryMove(worst, 0.5) >= before) simplex.shrink(best);
        }
    }
}

}  // namespace lumoxa
