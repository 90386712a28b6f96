// SPDX-License-Identifier: Apache-2.0
#include "tools/gray_tone.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include <CLI/CLI.hpp>

#include "tools/fault_finder.h"
#include "tools/number_list.h"
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

std::array<unsigned short, 2> parsePair(const std::string& text) {
    const std::vector<double> numbers = parseNumbers("--tone", text, 2);
    std::array<unsigned short, 2> pair = {};
    for (size_t i = 0; i < pair.size(); ++i) {
        requireRange("--tone", numbers[i], -kMostTone, kMostTone);
        pair[i] = static_cast<unsigned short>(std::lround(32768 + 256 * numbers[i]));
    }
    return pair;
}

std::vector<float> parseSplitTone(const std::string& text) {
    const std::string option = "--split-tone";
    std::vector<float> triples;
    std::istringstream points(text);
    double last = -1;
    for (std::string point; std::getline(points, point, ';');) {
        const size_t colon = point.find(':');
        if (colon == std::string::npos)
            throw UsageError("--split-tone: '" + point + "' is not L:a,b, such as 20:0,-6");
        const double L = parseInRange(option, point.substr(0, colon), 0, kWhite);
        if (L <= last) throw UsageError(option + ": L* must rise from point to point");
        last = L;
        triples.push_back(static_cast<float>(L));
        for (const double value : parseNumbers(option, point.substr(colon + 1), 2)) {
            requireRange(option, value, -kMostTone, kMostTone);
            triples.push_back(static_cast<float>(value));
        }
    }
    if (triples.empty()) throw UsageError(option + ": names no point");
    return triples;
}

}  // namespace

bool isGrayDevice(const Profile& profile, icTransType direction) {
    return profile.space() == kGray && profile.hasTag(kGrayTag) &&
           lutTagFor(profile, icPerceptual, direction) == 0;
}

int deviceChannels(const Profile& profile, icTransType direction) {
    return isGrayDevice(profile, direction) ? kGrayDeviceChannels
                                            : channelsOfSpace(profile.space());
}

bool GrayToneOptions::given() const {
    return noShape || !(tone.empty() && splitTone.empty() && fade.empty() && shape.empty());
}

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

GrayTone parseTone(const GrayToneOptions& options, icRenderingIntent intent) {
    constexpr double kMostShape = 100;
    GrayTone tone;
    if (!options.tone.empty()) tone.pair = parsePair(options.tone);
    if (!options.splitTone.empty()) tone.splitTone = parseSplitTone(options.splitTone);
    if (!options.fade.empty())
        tone.fade = static_cast<float>(parseInRange("--fade", options.fade, 0, 1));
    tone.shaped = !options.noShape;
    if (options.shape.empty()) return tone;
    if (intent != icPerceptual)
        throw UsageError("--shape: only --intent perceptual shapes the tones");
    tone.shape =
        static_cast<float>(parseInRange("--shape", options.shape, -kMostShape, kMostShape));
    return tone;
}

int getTonedXform(icProfile_t profile, icRenderingIntent intent, const GrayTone& tone,
                  icXform_t* out) {
    const unsigned short* const pair = tone.pair ? tone.pair->data() : nullptr;
    const int shaping = tone.shaped ? 1 : 0;
    if (tone.splitTone.empty())
        return icXformGet(profile, intent, icPcsToDevice, pair, tone.fade, out, shaping,
                          tone.shape);
    return icXformGet(profile, intent, icPcsToDevice, pair,
                      static_cast<int>(tone.splitTone.size() / 3), tone.splitTone.data(), out,
                      shaping, tone.shape);
}

}  // namespace lumoxa_tool
