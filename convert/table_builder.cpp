// SPDX-License-Identifier: Apache-2.0
#include "convert/table_builder.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "convert/table_nodes.h"

namespace lumoxa::engine {
namespace {

/// Room for the nodes of a grid: 1 MB, half of what processors have as second-level cache.
constexpr uint64_t kMaxNodeBytes = uint64_t{1} << 20;
/// Grid sizes worth trying for three inputs and four. The least are those that make a gamut's edges
/// as sharp as users know them from other software.
constexpr int kSizes3[] = {33, 37, 41, 45, 49, 50, 53, 55};
constexpr int kSizes4[] = {17, 18, 19, 20};
/// Some inks bend so much that four inputs in 1 MB err by more than this many times the limits:
/// coarser than other software. They get 3 MB, and cells that fall together with those of the
/// profile's grid if that has 5, 9 or 13 points.
constexpr double kFarBeyond = 2;
constexpr int kLastResort4 = 25;

TableForm formOf(const Shape& shape, int inputs, int outputs, int points) {
    TableForm form;
    form.inCurves = shape.inTables;
    form.outCurves = shape.outTables;
    form.grid.points.assign(static_cast<size_t>(inputs), points);
    form.grid.outputs = outputs;
    form.grid.nodes = sampleNodes(shape.tail, inputs, outputs, points);
    return form;
}

/// How far figures are from limits: 1 is at them.
double excess(const ErrorFigures& figures, const ErrorLimits& limits) {
    return std::max(figures.mean / limits.mean, figures.percentile / limits.percentile);
}

/// Chooses shape and size by previews, then builds.
class TableSearch {
  public:
    TableSearch(const Chain& chain, const StageList& list, const Plan& exact)
        : chain_(chain),
          limits_(errorLimits(chain.inputs)),
          shapes_(shapesOf(list)),
          whole_(chain, exact, randomSamples(chain.inputs, kPreviewed, 1)),
          shadows_(chain, exact, shadowSamples(chain.inSpace, chain.inputs, kPreviewed / 2, 2)) {}

    const Shape& chooseShape() {
        const int points = sizes().front();
        const Shape* best = &shapes_.front();
        double least = shapes_.size() > 1 ? preview(*best, points) : 0;
        for (size_t i = 1; i < shapes_.size(); ++i) {
            const double here = preview(shapes_[i], points);
            if (here >= least) continue;
            least = here;
            best = &shapes_[i];
        }
        return *best;
    }

    /// The first size that keeps to the limits by its preview; else the last resort. Sizes that
    /// can't, as errors fall with the square of the points at best, are passed over.
    int chooseSize(const Shape& shape) const {
        constexpr double kMargin = 0.9;  // the measure that decides has other colours
        const std::vector<int> list = sizes();
        for (size_t i = 0; i + 1 < list.size();) {
            const double here = preview(shape, list[i]);
            if (here <= kMargin) return list[i];
            const double needed = list[i] * std::sqrt(here / kMargin);
            while (i + 1 < list.size() && list[i] < needed)
                ++i;
        }
        const bool enough = chain_.inputs == 3 || preview(shape, list.back()) <= kFarBeyond;
        return enough ? list.back() : kLastResort4;
    }

    /// Sizes within the budget, smallest first.
    std::vector<int> sizes() const {
        std::vector<int> list;
        const auto consider = [&](int points) {
            uint64_t bytes = static_cast<uint64_t>(chain_.outputs) * 2;
            for (int c = 0; c < chain_.inputs; ++c)
                bytes *= static_cast<uint64_t>(points);
            if (bytes <= kMaxNodeBytes || list.empty()) list.push_back(points);
        };
        if (chain_.inputs == 3) {
            std::for_each(std::begin(kSizes3), std::end(kSizes3), consider);
        } else {
            std::for_each(std::begin(kSizes4), std::end(kSizes4), consider);
        }
        return list;
    }

  private:
    static constexpr int kPreviewed = 320;  // colours, enough for a mean within a tenth

    double preview(const Shape& shape, int points) const {
        const auto exceeds = [&](const ErrorSet& set) {
            return excess(set.compare(previewTable(shape, chain_.inputs, chain_.outputs,
                                                   set.samples(), points)),
                          limits_);
        };
        return std::max(exceeds(whole_), exceeds(shadows_));
    }

    const Chain& chain_;
    ErrorLimits limits_;
    std::vector<Shape> shapes_;
    ErrorSet whole_, shadows_;
};

}  // namespace

MeasuredError measured(const Chain& chain, const Plan& exact, const Plan& plan, int points) {
    constexpr int kColours = 1536;
    MeasuredError error;
    error.deltaE = !chain.toLab.empty() || chain.outSpace == kSpaceLab;
    const auto compare = [&](std::vector<uint16_t> samples) {
        return ErrorSet(chain, exact, std::move(samples)).compare(plan);
    };
    error.whole = compare(randomSamples(chain.inputs, kColours, 3));
    error.shadows = compare(shadowSamples(chain.inSpace, chain.inputs, kColours / 2, 4));
    error.between = compare(samplesBetween(chain.inputs, points, kColours / 2, 5));
    return error;
}

BuiltTable buildTable(const Chain& chain, const StageList& samplesToSamples,
                      const std::shared_ptr<const Plan>& exact) {
    TableSearch search(chain, samplesToSamples, *exact);
    const Shape& shape = search.chooseShape();
    const int largest = search.sizes().back();
    for (int points = search.chooseSize(shape);; points = largest) {
        BuiltTable built;
        built.form = formOf(shape, chain.inputs, chain.outputs, points);
        built.plan = makeTablePlan(built.form, exact);
        built.error = measured(chain, *exact, *built.plan, points);
        // Of the colours that weren't measured, some may be worse.
        constexpr double kMargin = 0.9;
        const ErrorLimits limits = errorLimits(chain.inputs);
        built.withinLimits =
            built.error.within({kMargin * limits.mean, kMargin * limits.percentile});
        built.curves = shape.what;
        if (built.withinLimits || points >= largest) return built;
    }
}

TableForm plainTable(const StageList& samplesToSamples, int inputs, int outputs, int points) {
    const Shape shape = {{}, {}, samplesToSamples, ""};
    return formOf(shape, inputs, outputs, points);
}

}  // namespace lumoxa::engine
