// SPDX-License-Identifier: Apache-2.0
#include "tools/make_gray_command.h"

#include <iomanip>
#include <iostream>

#include <CLI/CLI.hpp>

#include "tools/display_profile.h"
#include "tools/gray_fit.h"
#include "tools/gray_profile.h"
#include "tools/gray_table.h"
#include "tools/profile_writer.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

std::string partsText(const GrayTable& table) {
    const std::string points = std::to_string(table.points);
    if (table.layout == kGrayRamp) return "a ramp of " + points + " patches";
    return std::to_string(table.steps) + (table.steps == 1 ? " step" : " steps") + " of " + points +
           " x " + points + " companions, paper and black";
}

void printFit(const NeutralFit& fit, const GrayTable& table) {
    std::cout << std::fixed << std::setprecision(1) << "  L* range    " << fit.black << " to "
              << fit.paper << '\n'
              << std::setprecision(2) << "  tone error  mean " << fit.meanError << ", largest "
              << fit.largestError << std::setprecision(1) << " at L* " << fit.largestAt << '\n'
              << (table.layout == kGrayRamp ? "  off neutral" : "  clips      ");
    for (size_t i = 0; i < fit.clips.size(); ++i) {
        std::cout << (i == 0 ? " L* " : ", ") << fit.clips[i].dark << " to " << fit.clips[i].light;
    }
    std::cout << (fit.clips.empty() ? " nowhere" : "") << std::endl;
}

}  // namespace

CLI::App* addMakeGray(CLI::App& app, MakeGrayArguments& arguments) {
    CLI::App* command =
        app.add_subcommand("make-gray", "Make the profile of a gray device of three channels");
    command
        ->add_option("PATCHES", arguments.patches,
                     "Measured patches: a text table with columns main,first,second,X,Y,Z, or "
                     "main,X,Y,Z for a ramp")
        ->required();
    command->add_option("-o,--output", arguments.output, "Profile to write")
        ->required()
        ->option_text("OUT");
    command
        ->add_option("--range", arguments.range,
                     "Device value of full ink in the table, 65535 unless given")
        ->check(CLI::IsMember({65535, 255, 100}))
        ->option_text("65535|255|100");
    command->add_option("--description", arguments.description, "Name of the profile")
        ->option_text("TEXT");
    command->add_option("--copyright", arguments.copyright, "Copyright; free unless given")
        ->option_text("TEXT");
    command->add_flag("-q,--quiet", arguments.quiet, "No report, no notes");
    return command;
}

void runMakeGray(const MakeGrayArguments& arguments) {
    const GrayTable table = readGrayTable(arguments.patches, arguments.range);
    const std::string name = arguments.description.value_or("Gray print of three channels");
    const ProfileHandle profile =
        makeGrayProfile(table, name, arguments.copyright.value_or(kFreeCopyright));
    const NeutralFit fit = neutralFit(profile.get());
    saveProfile(profile.get(), arguments.output);
    if (arguments.quiet) return;
    if (table.steps != kBestGraySteps) {
        printMessage("note: " + arguments.patches +
                     ": steps of main: " + std::to_string(table.steps) +
                     "; 16 serve best, as others are resampled to them");
    }
    std::cout << arguments.output << ": " << name << ", " << partsText(table) << '\n';
    printFit(fit, table);
}

}  // namespace lumoxa_tool
