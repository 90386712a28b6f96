// SPDX-License-Identifier: Apache-2.0
#include "convert/black_point.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "base/pcs_encoding.h"
#include "profile/signatures.h"

namespace lumoxa::engine {
namespace {

constexpr double kLightestBlack = 50;  // L*; ISO 18619 takes nothing lighter for a black
constexpr double kLargestChroma = 50;  // of the ramp's dark end, either sign
constexpr size_t kRampSteps = 256;
constexpr size_t kLast = kRampSteps - 1;

struct LabColour {
    double L = 0, a = 0, b = 0;
};

/// A black that may still have a chroma.
struct InitialBlack {
    LabColour lab;
    const char* origin = kNoBlackInTables;
};

using Ramp = std::array<double, kRampSteps>;

template <class Real>
Real finiteOrZero(Real value) {
    return std::isfinite(value) ? value : Real{0};
}

BlackPoint neutralBlack(double L, const char* origin) {
    return {clipped(L, kLightestBlack), origin};
}

std::vector<float> converted(const BlackPointProbe::Conversion& convert,
                             const std::vector<float>& from, int count, int channels) {
    std::vector<float> to(static_cast<size_t>(count) * static_cast<size_t>(channels));
    convert(from.data(), to.data(), count);
    for (float& value : to)
        value = finiteOrZero(value);
    return to;
}

/// Device values of a space, one of which is its darkest. Channels past the fourth follow it.
struct BlackCandidates {
    uint32_t space;
    int count;
    float values[4][4];
};

constexpr uint32_t kSpaceYCbCr = fourcc("YCbr");
constexpr BlackCandidates kCandidates[] = {
    {kSpaceCmyk, 4, {{0, 0, 0, 0}, {1, 1, 1, 1}, {0, 0, 0, 1}, {1, 1, 1, 0}}},
    {kSpaceYCbCr, 2, {{0, 0.5f, 0.5f}, {1, 0.5f, 0.5f}}},  // neutral chroma is in the middle
};
constexpr BlackCandidates kAllOrNothing = {0, 2, {{0, 0, 0, 0}, {1, 1, 1, 1}}};

const BlackCandidates& candidatesOf(uint32_t space) {
    for (const BlackCandidates& row : kCandidates) {
        if (row.space == space) return row;
    }
    return kAllOrNothing;
}

std::vector<float> deviceValues(const BlackCandidates& candidates, int channels) {
    std::vector<float> device;
    for (int i = 0; i < candidates.count; ++i) {
        for (int c = 0; c < channels; ++c)
            device.push_back(candidates.values[i][std::min(c, 3)]);
    }
    return device;
}

/// The darkest of some colours in Lab; the first of them if there are several.
LabColour darkest(const std::vector<float>& lab) {
    size_t best = 0;
    for (size_t i = 3; i + 2 < lab.size(); i += 3) {
        if (lab[i] < lab[best]) best = i;
    }
    return {lab[best], lab[best + 1], lab[best + 2]};
}

/// ISO 18619, 4.2, before the black is made neutral. A CMYK black is not at a corner of the
/// device space: a press can't hold all of its inks on top of one another.
InitialBlack initialBlack(const BlackPointProbe& probe) {
    if (probe.colorSpace == kSpaceCmyk && probe.toDevicePerceptual) {
        const std::vector<float> device =
            converted(probe.toDevicePerceptual, {0, 0, 0}, 1, probe.channels);
        return {darkest(converted(probe.toLab, device, 1, 3)), kPerceptualBlack};
    }
    const BlackCandidates& candidates = candidatesOf(probe.colorSpace);
    const std::vector<float> device = deviceValues(candidates, probe.channels);
    return {darkest(converted(probe.toLab, device, candidates.count, 3)), kDarkestColorant};
}

double rampL(size_t i) {
    return 100 * static_cast<double>(i) / static_cast<double>(kLast);
}

/// Colours from black to white; the chroma of the black fades out on the way.
std::vector<float> rampFrom(const LabColour& black) {
    const double a = std::clamp(black.a, -kLargestChroma, kLargestChroma);
    const double b = std::clamp(black.b, -kLargestChroma, kLargestChroma);
    std::vector<float> lab;
    for (size_t i = 0; i < kRampSteps; ++i) {
        const double left = static_cast<double>(kLast - i) / static_cast<double>(kLast);
        for (const double value : {rampL(i), a * left, b * left})
            lab.push_back(static_cast<float>(value));
    }
    return lab;
}

/// Lightnesses of the ramp once it has been to the device and back, made to rise.
Ramp roundTrip(const BlackPointProbe& probe, const LabColour& black) {
    constexpr int kCount = static_cast<int>(kRampSteps);
    const std::vector<float> device =
        converted(probe.toDevice, rampFrom(black), kCount, probe.channels);
    const std::vector<float> lab = converted(probe.toLabColorimetric, device, kCount, 3);
    Ramp out;
    for (size_t i = 0; i < kRampSteps; ++i)
        out[i] = lab[3 * i];
    for (size_t i = kLast; i-- > 0;)
        out[i] = std::min(out[i], out[i + 1]);
    return out;
}

/// Above the shadows the tables leave L* alone, so they clip what is darker than the device's black
/// and nothing has to be estimated.
bool keepsMidtones(const Ramp& out) {
    constexpr double kMidtonesFrom = 0.2;  // of the way from the ramp's darkest to its lightest
    constexpr double kAlike = 4;           // in L*
    const double from = out[0] + kMidtonesFrom * (out[kLast] - out[0]);
    for (size_t i = 0; i < kRampSteps; ++i) {
        if (rampL(i) > from && !(std::fabs(rampL(i) - out[i]) < kAlike)) return false;
    }
    return true;
}

/// Where the shadows lie, in parts of the way from the ramp's darkest to its lightest: above the
/// foot that clipping leaves, below the midtones.
struct ShadowRange {
    double low, high;
};
constexpr ShadowRange kRelativeShadows = {0.1, 0.5};
constexpr ShadowRange kOtherShadows = {0.03, 0.25};

struct Point {
    double x, y;
};

std::vector<Point> shadowsOf(const Ramp& out, const ShadowRange& range) {
    std::vector<Point> points;
    for (size_t i = 0; i < kRampSteps; ++i) {
        const double y = (out[i] - out[0]) / (out[kLast] - out[0]);
        if (y >= range.low && y < range.high) points.push_back({rampL(i), y});
    }
    return points;
}

/// y = a u^2 + b u + c, where u = x - centre.
struct Parabola {
    double a, b, c, centre;
};

Point meanOf(const std::vector<Point>& points) {
    Point sum = {0, 0};
    for (const Point& p : points)
        sum = {sum.x + p.x, sum.y + p.y};
    const auto n = static_cast<double>(points.size());
    return {sum.x / n, sum.y / n};
}

/// Least squares through three points or more. The ramp rises, so the points are neighbours and
/// evenly spaced: odd powers of u sum to zero, and 1, u and u^2 - height are orthogonal. So there
/// are no equations to solve, whose determinant could vanish. y counts from the first point, so
/// that level points give a = b = 0 to the bit.
Parabola fitted(std::vector<Point> points) {
    const double level = points.front().y;
    for (Point& p : points)
        p.y -= level;
    const Point mean = meanOf(points);
    double u2 = 0, yu = 0;
    for (const Point& p : points) {
        const double u = p.x - mean.x;
        u2 += u * u;
        yu += p.y * u;
    }
    const double height = u2 / static_cast<double>(points.size());
    double q2 = 0, yq = 0;
    for (const Point& p : points) {
        const double u = p.x - mean.x, q = u * u - height;
        q2 += q * q;
        yq += p.y * q;
    }
    const double a = yq / q2;
    return {a, yu / u2, level + mean.y - a * height, mean.x};
}

/// Where the parabola comes up through zero; nothing if it never does.
std::optional<double> risingRoot(const Parabola& p) {
    constexpr double kStraight = 1e-10;  // in 1 / L*^2
    if (std::fabs(p.a) < kStraight) {
        if (p.b == 0) return std::nullopt;
        return p.centre - p.c / p.b;
    }
    const double discriminant = p.b * p.b - 4 * p.a * p.c;
    if (!(discriminant > 0)) return std::nullopt;
    return p.centre + (std::sqrt(discriminant) - p.b) / (2 * p.a);
}

/// ISO 18619, 4.2: the shadows of the round trip, continued to where they meet its darkest.
BlackPoint blackOfShadows(const Ramp& out, const ShadowRange& range) {
    constexpr size_t kFewestPoints = 3;
    const std::vector<Point> points = shadowsOf(out, range);
    if (points.size() < kFewestPoints) return neutralBlack(0, kNoBlackInTables);
    const std::optional<double> L = risingRoot(fitted(points));
    return L ? neutralBlack(*L, kFittedShadows) : neutralBlack(0, kNoBlackInTables);
}

/// Y of a neutral colour (CIE 15).
double luminance(double L) {
    constexpr double kLinearUpTo = 8, kLinearSlope = 903.3;
    if (L <= kLinearUpTo) return L / kLinearSlope;
    const double root = (L + 16) / 116;
    return root * root * root;
}

}  // namespace

BlackPoint sourceBlackPoint(const BlackPointProbe& probe) {
    const InitialBlack black = initialBlack(probe);
    return neutralBlack(black.lab.L, black.origin);
}

BlackPoint destinationBlackPoint(const BlackPointProbe& probe, icRenderingIntent intent) {
    if (!probe.hasLuts) return sourceBlackPoint(probe);
    const bool relative = intent == icRelativeColorimetric;
    const InitialBlack initial = relative ? initialBlack(probe) : InitialBlack{};
    const Ramp out = roundTrip(probe, initial.lab);
    if (out[0] >= out[kLast]) return neutralBlack(0, kNoBlackInTables);
    if (relative && keepsMidtones(out)) return neutralBlack(initial.lab.L, initial.origin);
    return blackOfShadows(out, relative ? kRelativeShadows : kOtherShadows);
}

BlackPointMapping mapBlack(double sourceL, double destinationL) {
    const double scale = (1 - luminance(destinationL)) / (1 - luminance(sourceL));
    BlackPointMapping mapping = {scale, {}};
    for (size_t i = 0; i < 3; ++i)
        mapping.offset[i] = (1 - scale) * kPcsWhite[i];
    return mapping;
}

}  // namespace lumoxa::engine
