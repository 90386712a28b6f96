// SPDX-License-Identifier: Apache-2.0
#include "tools/make_gray_command.h"

#include <iomanip>
#include <iostream>
#include <new>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "lumoxa/lumoxa.hpp"
#include "tools/files.h"
#include "tools/gray_csv.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Json = nlohmann::json;

// A text is at fault on the command line, all else in the table.
[[noreturn]] void refuse(const lumoxa::Error& error, const std::string& path) {
    if (error.code() == LMX_ERR_NO_MEMORY) throw std::bad_alloc();
    if (error.tag() == kProfileDescriptionTag) {
        throw UsageError(std::string("--description: ") + error.what());
    }
    if (error.tag() == kCopyrightTag) throw UsageError(std::string("--copyright: ") + error.what());
    throw InputError(path + ": " + error.what(),
                     "correct the table, or state the scale of its device values with --range");
}

// A profile, and the library's report on its prints.
struct MadeGray {
    std::vector<uint8_t> bytes;
    Json report;
};

MadeGray makeGray(const MakeGrayArguments& arguments, const lumoxa::GrayPrint& print) {
    const std::vector<lumoxa::GrayPatch> patches = readGrayCsv(arguments.patches, print.range);
    try {
        const lumoxa::Profile profile = lumoxa::makeGrayPrint(patches, print);
        return {profile.bytes(), Json::parse(lumoxa::grayPrintReport(profile))};
    } catch (const lumoxa::Error& error) {
        refuse(error, arguments.patches);
    }
}

bool isRamp(const Json& report) {
    return report["layout"] == "ramp";
}

std::string partsText(const Json& report) {
    const std::string points = report["points"].dump();
    if (isRamp(report)) return "a ramp of " + points + " patches";
    return report["steps"].dump() + (report["steps"] == 1 ? " step" : " steps") + " of " + points +
           " x " + points + " companions, paper and black";
}

void printFit(const Json& report) {
    const auto number = [](const Json& value) { return value.get<double>(); };
    const Json& error = report["tone_error"];
    const Json& ranges = report["off_neutral"];
    std::cout << std::fixed << std::setprecision(1) << "  L* range    " << number(report["black"])
              << " to " << number(report["paper"]) << '\n'
              << std::setprecision(2) << "  tone error  mean " << number(error["mean"])
              << ", largest " << number(error["largest"]) << std::setprecision(1) << " at L* "
              << number(error["largest_at"]) << '\n'
              << (isRamp(report) ? "  off neutral" : "  clips      ");
    for (size_t i = 0; i < ranges.size(); ++i) {
        std::cout << (i == 0 ? " L* " : ", ") << number(ranges[i]["dark"]) << " to "
                  << number(ranges[i]["light"]);
    }
    std::cout << (ranges.empty() ? " nowhere" : "") << std::endl;
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
    command
        ->add_option("--range", arguments.range,
                     "Device value of full ink in the table, 65535 unless given")
        ->check(CLI::IsMember({65535, 255, 100}))
        ->option_text("65535|255|100");
    addProfileOptions(*command, arguments, "Name of the profile");
    return command;
}

void runMakeGray(const MakeGrayArguments& arguments) {
    lumoxa::GrayPrint print;
    print.range = arguments.range;
    print.description = arguments.description.value_or(print.description);
    print.copyright = arguments.copyright.value_or(print.copyright);
    const MadeGray made = makeGray(arguments, print);
    writeFile(arguments.output, made.bytes);
    if (arguments.quiet) return;
    const Json& report = made.report;
    if (report["steps"] != report["best_steps"]) {
        printMessage("note: " + arguments.patches + ": steps of main: " + report["steps"].dump() +
                     "; " + report["best_steps"].dump() +
                     " serve best, as others are resampled to them");
    }
    std::cout << arguments.output << ": " << print.description << ", " << partsText(report) << '\n';
    printFit(report);
}

}  // namespace lumoxa_tool
