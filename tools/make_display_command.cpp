// SPDX-License-Identifier: Apache-2.0
#include "tools/make_display_command.h"

#include <iostream>

#include <CLI/CLI.hpp>

#include "tools/display_curve.h"
#include "tools/number_list.h"
#include "tools/option_fault.h"
#include "tools/output_file.h"

namespace lumoxa_tool {
namespace {

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
