// SPDX-License-Identifier: Apache-2.0
#include "gray/minimize.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "gray/spline.h"

namespace lumoxa {
namespace {

constexpr int kMostIterations = 100;
constexpr float kGolden = 0.381966f;  // (3 - sqrt 5) / 2
constexpr float kSmallest = 1e-10f;   // a step where the minimum lies at 0
constexpr int kMostEvaluations = 500;

float withSign(float magnitude, float sign) {
    return sign >= 0.0f ? std::fabs(magnitude) : -std::fabs(magnitude);
}

/// An abscissa with its value.
struct Sample {
    float x, f;
};

/// State of Brent's minimisation: the best point, the second best, the second best before.
struct LineSearch {
    float lo, hi;
    Sample best, second, third;
    float d = 0.0f, e = 0.0f;  // the last step and the one before

    float middle() const { return 0.5f * (lo + hi); }

    void goldenStep() {
        e = best.x >= middle() ? lo - best.x : hi - best.x;
        d = kGolden * e;
    }

    void parabolicStep(float tol1) {
        float r = (best.x - second.x) * (best.f - third.f);
        float q = (best.x - third.x) * (best.f - second.f);
        float p = (best.x - third.x) * q - (best.x - second.x) * r;
        q = 2.0f * (q - r);
        if (q > 0.0f) p = -p;
        q = std::fabs(q);
        const float before = e;
        e = d;
        if (std::fabs(p) >= std::fabs(0.5f * q * before) || p <= q * (lo - best.x) ||
            p >= q * (hi - best.x)) {
            goldenStep();
            return;
        }
        d = p / q;
        const float u = best.x + d;
        if (u - lo < 2.0f * tol1 || hi - u < 2.0f * tol1) d = withSign(tol1, middle() - best.x);
    }

    void take(Sample u) {
        if (u.f <= best.f) {
            (u.x >= best.x ? lo : hi) = best.x;
            third = second;
            second = best;
            best = u;
            return;
        }
        (u.x < best.x ? lo : hi) = u.x;
        if (u.f <= second.f || second.x == best.x) {
            third = second;
            second = u;
        } else if (u.f <= third.f || third.x == best.x || third.x == second.x) {
            third = u;
        }
    }
};

/// The vertices of a simplex with what the moves need of them.
class Simplex {
  public:
    Simplex(double** vertices, double* values, int ndim, SimplexObjective objective,
            int* evaluations, void* context)
        : p_(vertices),
          values_(values),
          ndim_(ndim),
          objective_(objective),
          evaluations_(evaluations),
          context_(context),
          sums_(static_cast<size_t>(ndim)),
          trial_(static_cast<size_t>(ndim)) {
        sumUp();
    }

    /// Indices of the best, the worst and the second worst vertex.
    struct Ranks {
        int best, worst, nextWorst;
    };
    Ranks rank() const {
        Ranks r{0, values_[0] > values_[1] ? 0 : 1, values_[0] > values_[1] ? 1 : 0};
        for (int i = 0; i <= ndim_; ++i) {
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

    /// Tries the point on the line from the worst vertex through the face of the others; it takes
    /// the vertex's place where it is better. Factor -1 reflects, 2 expands, 0.5 contracts.
    double tryMove(int worst, double factor) {
        const double fac1 = (1.0 - factor) / ndim_;
        const double fac2 = fac1 - factor;
        for (int j = 0; j < ndim_; ++j)
            trial_[index(j)] = sums_[index(j)] * fac1 - p_[worst][j] * fac2;
        const double value = objective_(trial_.data(), context_);
        ++*evaluations_;
        if (value < values_[worst]) {
            values_[worst] = value;
            for (int j = 0; j < ndim_; ++j) {
                sums_[index(j)] += trial_[index(j)] - p_[worst][j];
                p_[worst][j] = trial_[index(j)];
            }
        }
        return value;
    }

    /// Moves every vertex halfway to the best one.
    void shrink(int best) {
        for (int i = 0; i <= ndim_; ++i) {
            if (i == best) continue;
            for (int j = 0; j < ndim_; ++j)
                p_[i][j] = sums_[index(j)] = 0.5 * (p_[i][j] + p_[best][j]);
            values_[i] = objective_(sums_.data(), context_);
        }
        *evaluations_ += ndim_;
        sumUp();
    }

    double value(int i) const { return values_[i]; }

  private:
    static size_t index(int j) { return static_cast<size_t>(j); }
    void sumUp() {
        for (int j = 0; j < ndim_; ++j) {
            sums_[index(j)] = 0.0;
            for (int i = 0; i <= ndim_; ++i)
                sums_[index(j)] += p_[i][j];
        }
    }

    double** p_;
    double* values_;
    int ndim_;
    SimplexObjective objective_;
    int* evaluations_;
    void* context_;
    std::vector<double> sums_;
    std::vector<double> trial_;
};

}  // namespace

float icSplineMinimize(float a, float b, float c, const float* x, const float* y, const float* y2,
                       int n, float tolerance, float* abscissa) {
    const auto sampleAt = [&](float t) {
        Sample sample{t, 0.0f};
        icSplineEval(x, y, y2, n, t, &sample.f);
        return sample;
    };
    const Sample start = sampleAt(b);
    LineSearch s{std::min(a, c), std::max(a, c), start, start, start};
    for (int i = 0; i < kMostIterations; ++i) {
        const float xm = s.middle();
        const float tol1 = tolerance * std::fabs(s.best.x) + kSmallest;
        if (std::fabs(s.best.x - xm) <= 2.0f * tol1 - 0.5f * (s.hi - s.lo)) break;
        if (std::fabs(s.e) > tol1) {
            s.parabolicStep(tol1);
        } else {
            s.goldenStep();
        }
        s.take(sampleAt(s.best.x + (std::fabs(s.d) >= tol1 ? s.d : withSign(tol1, s.d))));
    }
    *abscissa = s.best.x;
    return s.best.f;
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
            return best;
        }
        if (*evaluations >= kMostEvaluations) return -1;
        double tried = simplex.tryMove(worst, -1.0);
        if (tried <= lowest) {
            simplex.tryMove(worst, 2.0);
        } else if (tried >= simplex.value(nextWorst)) {
            const double before = simplex.value(worst);
            tried = simplex.tryMove(worst, 0.5);
            if (tried >= before) simplex.shrink(best);
        }
    }
}

}  // namespace lumoxa
