// SPDX-License-Identifier: Apache-2.0
#include "tools/gray_tone.h"

#include <array>
#include <sstream>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/option_values.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

constexpr double kMostTone = 127;  // of a* and b*, either way
constexpr double kWhite = 100;     // L*

void requireRange(const std::string& option, double value, double low, double high) {
    if (value >= low && value <= high) return;
    std::ostringstream text;
    text << option << ": " << value << " is outside " << low << ".." << high;
    throw UsageError(text.str());
}

double parseInRange(const std::string& option, const std::string& text, double low, double high) {
    const double value = parseNumbers(option, text, 1).front();
    requireRange(option, value, low, high);
    return value;
}

void parsePair(const std::string& text, lumoxa::GrayTone& tone) {
    const std::vector<double> numbers = parseNumbers("--tone", text, 2);
    for (const double number : numbers)
        requireRange("--tone", number, -kMostTone, kMostTone);
    tone.a = static_cast<float>(numbers[0]);
    tone.b = static_cast<float>(numbers[1]);
}

std::vector<std::array<float, 3>> parseSplitTone(const std::string& text) {
    const std::string option = "--split-tone";
    std::vector<std::array<float, 3>> tones;
    std::istringstream points(text);
    double last = -1;
    for (std::string point; std::getline(points, point, ';');) {
        const size_t colon = point.find(':');
        if (colon == std::string::npos)
            throw UsageError("--split-tone: '" + point + "' is not L:a,b, such as 20:0,-6");
        const double L = parseInRange(option, point.substr(0, colon), 0, kWhite);
        if (L <= last) throw UsageError(option + ": L* must rise from point to point");
        last = L;
        const std::vector<double> ab = parseNumbers(option, point.substr(colon + 1), 2);
        for (const double value : ab)
            requireRange(option, value, -kMostTone, kMostTone);
        tones.push_back(
            {static_cast<float>(L), static_cast<float>(ab[0]), static_cast<float>(ab[1])});
    }
    if (tones.empty()) throw UsageError(option + ": names no point");
    return tones;
}

bool isGiven(const GrayToneOptions& options) {
    return options.noShape || !(options.tone.empty() && options.splitTone.empty() &&
                                options.fade.empty() && options.shape.empty());
}

}  // namespace

void addToneOptions(CLI::App& command, GrayToneOptions& options) {
    const auto add = [&](const char* name, std::string& text, const char* form, const char* what) {
        return command.add_option(name, text, what)->option_text(form);
    };
    CLI::Option* const tone =
        add("--tone", options.tone, "a,b",
            "Tone of a print on a gray device of three channels, a* and b*; neutral unless given");
    CLI::Option* const split = add("--split-tone", options.splitTone, "L:a,b;L:a,b;...",
                                   "Tones at some L*, added to that tone, lines between them");
    CLI::Option* const fade = add("--fade", options.fade, "T",
                                  "0..1: how far the tone goes towards neutral at paper and black");
    CLI::Option* const shape =
        add("--shape", options.shape, "P",
            "Contrast of the middle tones, perceptual only: 0 full, above it "
            "more, below less");
    CLI::Option* const noShape = command.add_flag("--no-shape", options.noShape,
                                                  "Black compensation without shaping the tones");
    fade->excludes(split);
    shape->excludes(noShape);
    for (CLI::Option* const option : {tone, split, fade, shape, noShape})
        option->excludes(command.get_option("--link"));
}

std::optional<lumoxa::GrayTone> parseTone(const GrayToneOptions& options, lumoxa::Intent intent) {
    constexpr double kMostShape = 100;
    if (!isGiven(options)) return std::nullopt;
    lumoxa::GrayTone tone;
    if (!options.tone.empty()) parsePair(options.tone, tone);
    if (!options.splitTone.empty()) tone.points = parseSplitTone(options.splitTone);
    if (!options.fade.empty())
        tone.fade = static_cast<float>(parseInRange("--fade", options.fade, 0, 1));
    tone.shaped = !options.noShape;
    if (options.shape.empty()) return tone;
    if (intent != lumoxa::Intent::Perceptual)
        throw UsageError("--shape: only --intent perceptual shapes the tones");
    tone.shape =
        static_cast<float>(parseInRange("--shape", options.shape, -kMostShape, kMostShape));
    return tone;
}

}  // namespace lumoxa_tool
