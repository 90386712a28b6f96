// SPDX-License-Identifier: Apache-2.0
#include "make/gray_patches.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <set>
#include <string>

#include "base/fault.h"
#include "gray/gray_state.h"

namespace lumoxa::engine {
namespace {

using Xyz = std::array<double, 3>;
using Channels = std::array<double, 3>;  // 0..1

// Even steps may be rounded to whole numbers 0..255; the rest is for the rounding of decimals.
constexpr double kTolerance = 0.5001 / 255;
constexpr size_t kMostPoints = 65535, kMostSteps = 255;
constexpr double kMostXyz = 200;  // a brightened paper in percent is below
constexpr const char* kChannelNames[] = {"main", "first", "second"};
constexpr const char* kXyzNames[] = {"X", "Y", "Z"};

[[noreturn]] void refuse(const std::string& rule) {
    Fault fault;
    fault.tag = kGrayTag;
    fault.sentence = rule;
    throw FaultError(fault);
}

// As a person writes it: 6 significant digits.
std::string number(double value) {
    char digits[32];  // sign, digits, point, "e-308"
    const auto end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6);
    return std::string(digits, end.ptr);
}

struct Mean {
    Xyz sum = {};
    double count = 0;

    void add(const Xyz& xyz) {
        for (size_t c = 0; c < 3; ++c)
            sum[c] += xyz[c];
        ++count;
    }
    Xyz value() const { return {sum[0] / count, sum[1] / count, sum[2] / count}; }
};

class PatchSorter {
  public:
    PatchSorter(const std::vector<MeasuredPatch>& patches, double range) : range_(range) {
        if (!(range > 0 && std::isfinite(range))) refuse("the device value of full ink is above 0");
        if (patches.empty()) refuse("there are no patches");
        for (size_t i = 0; i < patches.size(); ++i) {
            const std::string name = "patch " + std::to_string(i + 1) + " has ";
            Channels channels;
            for (size_t c = 0; c < 3; ++c) {
                requireWithin(range, patches[i].device[c], name + kChannelNames[c]);
                requireWithin(kMostXyz, patches[i].xyz[c], name + kXyzNames[c]);
                channels[c] = patches[i].device[c] / range;
            }
            ramp_ = ramp_ && channels[0] == channels[1] && channels[0] == channels[2];
            patches_[channels].add(patches[i].xyz);
        }
    }

    GrayTable sort() {
        GrayTable table = ramp_ ? sortedRamp() : sortedGrids();
        for (const auto& [channels, patch] : patches_) {
            if (taken_.count(channels) != 0) continue;
            refuse("patch " + text(channels) + " is one too many: with main 0 and " +
                   deviceText(1) + " companions are 0");
        }
        scale(table);
        return table;
    }

  private:
    static void requireWithin(double top, double value, const std::string& name) {
        if (value >= 0 && value <= top) return;
        refuse(name + " " + number(value) + ", which is no number 0.." + number(top));
    }

    GrayTable sortedRamp() {
        const std::vector<double> values = valuesOf({0}, [](const Channels&) { return true; });
        require({0, 0, 0});
        require({1, 1, 1});
        requireEven(values, 0, 1, "main");
        if (values.size() > kMostPoints) refuse("a ramp has 65535 patches at most");
        GrayTable table;
        table.points = static_cast<uint32_t>(values.size());
        table.steps = kBestGraySteps;
        table.layout = kGrayRamp;
        for (const double value : values)
            table.xyz.push_back(require({value, value, value}));
        table.paper = table.xyz.front();
        return table;
    }

    GrayTable sortedGrids() {
        GrayTable table;
        table.paper = require({0, 0, 0});
        const Xyz black = require({1, 0, 0});  // first: without it, the scale may be another
        const auto between = [](const Channels& c) { return c[0] > 0 && c[0] < 1; };
        const std::vector<double> steps = valuesOf({0}, between);
        const std::vector<double> points = valuesOf({1, 2}, between);
        requireGrids(steps, points);
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
        return table;
    }

    void requireGrids(const std::vector<double>& steps, const std::vector<double>& points) const {
        if (steps.empty() || points.size() < 2)
            refuse("the patches have no grids of companions between paper and black");
        if (steps.size() > kMostSteps || points.size() > kMostPoints) {
            refuse("the patches have " + std::to_string(steps.size()) + " steps of main with " +
                   std::to_string(points.size()) + " values of the companions; 255 and 65535 are " +
                   "the most");
        }
        const double step = 1.0 / static_cast<double>(steps.size() + 1);
        requireEven(steps, step, 1 - step, "main");
        requireEven(points, 0, 1, "companion");
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
            refuse("the " + std::to_string(values.size()) + " values of " + what +
                   " are not even steps: one is " + deviceText(values[i]) + ", not " +
                   deviceText(even));
        }
    }

    Xyz require(const Channels& channels) {
        const auto found = patches_.find(channels);
        if (found == patches_.end()) refuse("patch " + text(channels) + " is missing");
        taken_.insert(channels);
        return found->second.value();
    }

    // The paper tells the scale: a perfect white is 1 or 100.
    static void scale(GrayTable& table) {
        constexpr double kMostPaper = 2;
        const double unit = table.paper[1] > kMostPaper ? 100 : 1;
        for (Xyz& xyz : table.xyz) {
            for (double& value : xyz)
                value /= unit;
        }
        for (double& value : table.paper)
            value /= unit;
        if (*std::min_element(table.paper.begin(), table.paper.end()) <= 0)
            refuse("the paper reflects nothing");
        if (table.paper[1] <= table.xyz.back()[1]) {
            refuse("the patch of full ink is not darker than the paper, whose device value is 0");
        }
        for (const Xyz& xyz : table.xyz) {
            if (*std::max_element(xyz.begin(), xyz.end()) <= kMostPaper) continue;
            refuse(
                "a patch reflects more than twice a perfect white, for which all patches have "
                "Y = 1 or all have Y = 100");
        }
    }

    std::string deviceText(double value) const { return number(value * range_); }
    std::string text(const Channels& c) const {
        std::string words = "main " + deviceText(c[0]);
        if (!ramp_) words += ", first " + deviceText(c[1]) + ", second " + deviceText(c[2]);
        return words;
    }

    double range_;
    bool ramp_ = true;
    std::map<Channels, Mean> patches_;
    std::set<Channels> taken_;
};

}  // namespace

GrayTable sortedPatches(const std::vector<MeasuredPatch>& patches, double range) {
    return PatchSorter(patches, range).sort();
}

}  // namespace lumoxa::engine
