// SPDX-License-Identifier: Apache-2.0
#include "tools/gray_table.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <sstream>

#include "tools/gray_csv.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Xyz = std::array<double, 3>;

// Even steps may be rounded to whole numbers 0..255; the rest is for the rounding of decimals.
constexpr double kTolerance = 0.5001 / 255;
constexpr size_t kMostPoints = 65535, kMostSteps = 255;
constexpr const char* kEvenRemedy =
    "print and measure patches at even steps, which may be rounded to whole numbers of 255";

struct Mean {
    Xyz sum = {};
    double count = 0;
    size_t line = 0;  // the first of them

    void add(const GrayPatch& patch) {
        if (count == 0) line = patch.line;
        for (size_t c = 0; c < 3; ++c)
            sum[c] += patch.xyz[c];
        ++count;
    }
    Xyz value() const { return {sum[0] / count, sum[1] / count, sum[2] / count}; }
};

using Patches = std::map<GrayChannels, Mean>;

class TableSorter {
  public:
    TableSorter(const std::string& path, double range) : path_(path), range_(range) {
        const GrayCsv csv = readGrayCsv(path, range);
        for (const GrayPatch& patch : csv.patches) {
            const GrayChannels& c = patch.channels;
            ramp_ = ramp_ && (!csv.companions || (c[0] == c[1] && c[0] == c[2]));
            patches_[c].add(patch);
        }
    }

    GrayTable sort() {
        GrayTable table;
        ramp_ ? sortRamp(table) : sortGrids(table);
        for (const auto& [channels, patch] : patches_) {
            if (taken_.contains(channels)) continue;
            refuseGrayLine(path_, patch.line,
                           "patch " + text(channels) + " is one too many: with main 0 and " +
                               number(1) + " companions are 0",
                           "remove the line");
        }
        scale(table);
        return table;
    }

  private:
    void sortRamp(GrayTable& table) {
        const std::vector<double> values = valuesOf({0}, [](const GrayChannels&) { return true; });
        const double full = values.back();
        require({0, 0, 0});
        if (full < 1) require({1, 1, 1});
        requireEven(values, 0, 1, "main");
        if (values.size() > kMostPoints)
            throw InputError(path_ + ": has over 65535 patches", "leave some out");
        table.points = static_cast<uint32_t>(values.size());
        table.steps = kBestGraySteps;
        table.layout = kGrayRamp;
        for (const double value : values)
            table.xyz.push_back(require({value, value, value}));
        table.paper = table.xyz.front();
    }

    void sortGrids(GrayTable& table) {
        table.paper = require({0, 0, 0});
        const Xyz black = require({1, 0, 0});  // first: without it, the scale may be another
        const auto between = [](const GrayChannels& c) { return c[0] > 0 && c[0] < 1; };
        const std::vector<double> steps = valuesOf({0}, between);
        const std::vector<double> points = valuesOf({1, 2}, between);
        if (steps.empty() || points.size() < 2) {
            throw InputError(path_ + ": has no grids of companions between paper and black",
                             "give main, X, Y and Z alone for a plain ramp");
        }
        if (steps.size() > kMostSteps || points.size() > kMostPoints) {
            throw InputError(path_ + ": has " + std::to_string(steps.size()) + " steps of main",
                             "255 are the most, and 16 serve best");
        }
        const double step = 1.0 / static_cast<double>(steps.size() + 1);
        requireEven(steps, step, 1 - step, "main");
        requireEven(points, 0, 1, "companion");
        table.points = static_cast<uint32_t>(points.size());
        table.steps = static_cast<uint32_t>(steps.size());
        for (const double main : steps) {
            for (const double first : points) {
                for (const double second : points)
                    table.xyz.push_back(require({main, first, second}));
            }
        }
        table.xyz.push_back(table.paper);
        table.xyz.push_back(black);
    }

    template <class Choose>
    std::vector<double> valuesOf(const std::vector<size_t>& channels, Choose choose) const {
        std::set<double> values;
        for (const auto& [patch, mean] : patches_) {
            for (const size_t channel : channels) {
                if (choose(patch)) values.insert(patch[channel]);
            }
        }
        return {values.begin(), values.end()};
    }

    // Ramps may be finer than the tolerance: there, half of a step is allowed.
    void requireEven(const std::vector<double>& values, double first, double last,
                     const std::string& what) const {
        const auto gaps = static_cast<double>(std::max<size_t>(values.size(), 2) - 1);
        const double step = (last - first) / gaps;
        const double tolerance = step > 0 ? std::min(kTolerance, step / 2) : kTolerance;
        for (size_t i = 0; i < values.size(); ++i) {
            const double even = first + step * static_cast<double>(i);
            if (std::abs(values[i] - even) <= tolerance) continue;
            throw InputError(path_ + ": the " + std::to_string(values.size()) + " values of " +
                                 what + " are not even steps: one is " + number(values[i]) +
                                 ", not " + number(even),
                             kEvenRemedy);
        }
    }

    Xyz require(const GrayChannels& channels) {
        const auto found = patches_.find(channels);
        if (found == patches_.end()) {
            throw InputError(
                path_ + ": patch " + text(channels) + " is missing",
                "measure it too; full ink is " + number(1) + " unless --range says otherwise");
        }
        taken_.insert(channels);
        return found->second.value();
    }

    // The paper tells the scale: a perfect white is 1 or 100.
    void scale(GrayTable& table) const {
        constexpr double kMostPaper = 2;
        const double unit = table.paper[1] > kMostPaper ? 100 : 1;
        for (Xyz& xyz : table.xyz) {
            for (double& value : xyz)
                value /= unit;
        }
        for (double& value : table.paper)
            value /= unit;
        if (*std::min_element(table.paper.begin(), table.paper.end()) <= 0)
            throw InputError(path_ + ": the paper reflects nothing", "measure it again");
        if (table.paper[1] <= table.xyz.back()[1]) {
            throw InputError(path_ + ": the patch of full ink is not darker than the paper",
                             "device values are ink: 0 is the paper");
        }
        for (const Xyz& xyz : table.xyz) {
            if (*std::max_element(xyz.begin(), xyz.end()) <= kMostPaper) continue;
            throw InputError(path_ + ": a patch reflects more than twice a perfect white",
                             "give all patches with Y = 1, or all with Y = 100 for that white");
        }
    }

    std::string number(double value) const {
        std::ostringstream out;
        out << value * range_;
        return out.str();
    }
    std::string text(const GrayChannels& c) const {
        std::string words = "main " + number(c[0]);
        if (!ramp_) words += ", first " + number(c[1]) + ", second " + number(c[2]);
        return words;
    }

    const std::string& path_;
    double range_;
    bool ramp_ = true;
    Patches patches_;
    std::set<GrayChannels> taken_;
};

}  // namespace

GrayTable readGrayTable(const std::string& path, double range) {
    return TableSorter(path, range).sort();
}

}  // namespace lumoxa_tool
