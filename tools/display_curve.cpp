// SPDX-License-Identifier: Apache-2.0
#include "tools/display_curve.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "lumoxa/tags.h"
#include "tools/file_bytes.h"
#include "tools/filled_tag.h"
#include "tools/number_list.h"
#include "tools/sampled_curves.h"
#include "tools/srgb_profile.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr double kGammaUnit = 256.0;  // u8Fixed8
constexpr double kFullScale = 65535.0;
constexpr size_t kFewestEntries = 2;
constexpr size_t kMostEntries = 4096;

Bytes curveTag(const std::vector<unsigned short>& entries) {
    return filledTag([&](icTagBase** tag) {
        return icFillTrc(entries.data(), static_cast<int>(entries.size()), tag);
    });
}

// A table where one u8Fixed8 would be another gamma: 2.2 is no multiple of 1/256.
Bytes exactGammaTag(double gamma) {
    constexpr double kSameGamma = 1e-6;
    if (!(gamma > 0 && gamma < 256)) {
        throw UsageError("--trc: a gamma must be above 0 and below 256");
    }
    const double single = std::round(gamma * kGammaUnit) / kGammaUnit;
    if (std::abs(gamma - single) < kSameGamma) {
        if (const std::optional<Bytes> tag = gammaTag(gamma)) return *tag;
    }
    return sampledCurveTag([=](double x) { return std::pow(x, gamma); });
}

[[noreturn]] void refuseLine(const std::string& path, size_t line, const std::string& fault) {
    throw InputError(path + ", line " + std::to_string(line) + ": " + fault,
                     "a curve has a number from 0 to 1 a line, none below the one before");
}

Bytes curveFromFile(const std::string& path) {
    const Bytes bytes = readFile(path, "curve, neither srgb nor gamma:G,");
    std::istringstream lines(std::string(bytes.begin(), bytes.end()));
    std::vector<unsigned short> entries;
    double last = 0;
    size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        line.resize(std::min(line.find('#'), line.size()));
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        const std::optional<double> value = parseNumber(line);
        if (!value || *value < 0 || *value > 1) refuseLine(path, number, "is no number 0..1");
        if (*value < last) refuseLine(path, number, "goes down");
        if (entries.size() == kMostEntries) refuseLine(path, number, "is one of over 4096 values");
        last = *value;
        entries.push_back(static_cast<unsigned short>(std::lround(last * kFullScale)));
    }
    if (entries.size() < kFewestEntries) refuseLine(path, number, "ends before a second value");
    return curveTag(entries);
}

}  // namespace

std::optional<std::vector<uint8_t>> gammaTag(double gamma) {
    const double scaled = std::round(gamma * kGammaUnit);
    if (!(scaled >= 1 && scaled <= kFullScale)) return std::nullopt;
    return curveTag({static_cast<unsigned short>(scaled)});
}

std::vector<uint8_t> displayCurveTag(const std::string& word) {
    const std::string kGamma = "gamma:";
    if (word == "srgb") return srgbCurveTag();
    if (!word.starts_with(kGamma)) return curveFromFile(word);
    return exactGammaTag(parseNumbers("--trc", word.substr(kGamma.size()), 1).front());
}

}  // namespace lumoxa_tool
