// SPDX-License-Identifier: Apache-2.0
#include "tools/make_display_command.h"

#include <ctime>
#include <iostream>

#include <CLI/CLI.hpp>

#include "tools/display_curve.h"
#include "tools/display_profile.h"
#include "tools/number_list.h"
#include "tools/profile_source.h"
#include "tools/profile_writer.h"

namespace lumoxa_tool {
namespace {

DisplayColorimetry parseColorimetry(const MakeDisplayArguments& arguments) {
    std::string words;
    for (const std::string& word : arguments.primaries)
        words += (words.empty() ? "" : ",") + word;
    const std::vector<double> xy = parseNumbers("--primaries", words, 6);
    const std::vector<double> white = parseNumbers("--white", arguments.white, 2);
    return {{{{xy[0], xy[1]}, {xy[2], xy[3]}, {xy[4], xy[5]}}}, {white[0], white[1]}};
}

icDateTimeNumber now() {
    const std::time_t time = std::time(nullptr);
    const std::tm* const utc = std::gmtime(&time);
    if (utc == nullptr) return {};
    const auto part = [](int value) { return static_cast<uint16_t>(value); };
    return {part(utc->tm_year + 1900), part(utc->tm_mon + 1), part(utc->tm_mday),
            part(utc->tm_hour),        part(utc->tm_min),     part(utc->tm_sec)};
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
    command->add_option("-o,--output", arguments.output, "Profile to write")
        ->required()
        ->option_text("OUT");
    command->add_option("--description", arguments.description, "Name of the profile")
        ->option_text("TEXT");
    command->add_option("--copyright", arguments.copyright, "Copyright; free unless given")
        ->option_text("TEXT");
    command->add_flag("-q,--quiet", arguments.quiet, "No report");
    return command;
}

void runMakeDisplay(const MakeDisplayArguments& arguments) {
    const std::string plainName = "RGB display, white " + arguments.white;
    const Profile profile(
        arguments.output,
        makeDisplayProfile({parseColorimetry(arguments), displayCurveTag(arguments.curve),
                            arguments.description.value_or(plainName),
                            arguments.copyright.value_or(kFreeCopyright), now()}));
    saveProfile(profile.loadForEditing().get(), arguments.output);
    if (arguments.quiet) return;
    std::cout << arguments.output << ": " << profile.description() << ", " << profile.bytes().size()
              << " bytes" << std::endl;
}

}  // namespace lumoxa_tool
