// SPDX-License-Identifier: Apache-2.0
#include "tools/make_display_command.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <sstream>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/files.h"
#include "tools/option_values.h"

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

// The curve of "srgb", of "gamma:G", or of a text file: an output from 0 to 1 a line for evenly
// spaced inputs. Whether a gamma is possible is for the library to say.
lumoxa::ToneCurve displayCurve(const std::string& word) {
    const std::string kGamma = "gamma:";
    if (word == "srgb") return lumoxa::ToneCurve::sRGB();
    if (!word.starts_with(kGamma)) return curveFromFile(word);
    return lumoxa::ToneCurve::gamma(parseNumbers("--trc", word.substr(kGamma.size()), 1).front());
}

lumoxa::Display parseDisplay(const MakeDisplayArguments& arguments) {
    constexpr uint32_t kVersion2 = 0x02400000;  // which all software reads
    std::string words;
    for (const std::string& word : arguments.primaries)
        words += (words.empty() ? "" : ",") + word;
    const std::vector<double> xy = parseNumbers("--primaries", words, 6);
    const std::vector<double> white = parseNumbers("--white", arguments.white, 2);
    lumoxa::Display display;
    display.red = {xy[0], xy[1]};
    display.green = {xy[2], xy[3]};
    display.blue = {xy[4], xy[5]};
    display.white = {white[0], white[1]};
    display.curve = displayCurve(arguments.curve);
    display.version = kVersion2;
    display.description = arguments.description.value_or("RGB display, white " + arguments.white);
    display.copyright = arguments.copyright.value_or(display.copyright);
    return display;
}

}  // namespace

CLI::App* addMakeDisplay(CLI::App& app, MakeDisplayArguments& arguments) {
    CLI::App* command = app.add_subcommand("make-display", "Make a display profile");
    command
        ->add_option("--primaries", arguments.primaries,
                     "Chromaticities of red, green and blue; also as three words")
        ->required()
        ->expected(1, 3)
        ->option_text("rx,ry,gx,gy,bx,by");
    command->add_option("--white", arguments.white, "Chromaticity of the white")
        ->required()
        ->option_text("x,y");
    command
        ->add_option("--trc", arguments.curve,
                     "Tone curve; a file has an output from 0 to 1 a line, for even inputs")
        ->required()
        ->option_text("srgb|gamma:G|FILE");
    addProfileOptions(*command, arguments, "Name of the profile");
    return command;
}

void runMakeDisplay(const MakeDisplayArguments& arguments) {
    const lumoxa::Display display = parseDisplay(arguments);
    const lumoxa::Profile profile =
        withOption("make-display", [&] { return lumoxa::makeDisplay(display); });
    const std::vector<uint8_t> bytes = profile.bytes();
    writeFile(arguments.output, bytes);
    if (arguments.quiet) return;
    std::cout << arguments.output << ": " << display.description << ", " << bytes.size() << " bytes"
              << std::endl;
}

}  // namespace lumoxa_tool
