// SPDX-License-Identifier: Apache-2.0
#include "tools/display_curve.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <vector>

#include "tools/file_bytes.h"
#include "tools/number_list.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

constexpr size_t kFewestEntries = 2;
constexpr size_t kMostEntries = 4096;

[[noreturn]] void refuseLine(const std::string& path, size_t line, const std::string& fault) {
    throw InputError(path + ", line " + std::to_string(line) + ": " + fault,
                     "a curve has a number from 0 to 1 a line, none below the one before");
}

lumoxa::ToneCurve curveFromFile(const std::string& path) {
    const std::vector<uint8_t> bytes = readFile(path, "curve, neither srgb nor gamma:G,");
    std::istringstream lines(std::string(bytes.begin(), bytes.end()));
    std::vector<double> entries;
    size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        line.resize(std::min(line.find('#'), line.size()));
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        const std::optional<double> value = parseNumber(line);
        if (!value || *value < 0 || *value > 1) refuseLine(path, number, "is no number 0..1");
        if (!entries.empty() && *value < entries.back()) refuseLine(path, number, "goes down");
        if (entries.size() == kMostEntries) refuseLine(path, number, "is one of over 4096 values");
        entries.push_back(*value);
    }
    if (entries.size() < kFewestEntries) refuseLine(path, number, "ends before a second value");
    return lumoxa::ToneCurve::table(entries);
}

}  // namespace

lumoxa::ToneCurve displayCurve(const std::string& word) {
    const std::string kGamma = "gamma:";
    if (word == "srgb") return lumoxa::ToneCurve::sRGB();
    if (!word.starts_with(kGamma)) return curveFromFile(word);
    return lumoxa::ToneCurve::gamma(parseNumbers("--trc", word.substr(kGamma.size()), 1).front());
}

}  // namespace lumoxa_tool
