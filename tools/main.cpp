// SPDX-License-Identifier: Apache-2.0
//
// Command line of the tool.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#endif

#include "tools/conversion_request.h"
#include "tools/edit_command.h"
#include "tools/image_commands.h"
#include "tools/info_command.h"
#include "tools/link_command.h"
#include "tools/make_display_command.h"
#include "tools/make_gray_command.h"
#include "tools/tool_error.h"
#include "tools/values_command.h"

#if !defined(LUMOXA_TOOL_VERSION)
#define LUMOXA_TOOL_VERSION "unknown"
#endif

namespace lumoxa_tool {
namespace {

struct CommandLine {
    ConvertArguments convert;
    ValuesArguments values;
    LinkArguments link;
    EditArguments edit;
    MakeDisplayArguments makeDisplay;
    MakeGrayArguments makeGray;
    InfoArguments info;
};

CLI::App* addConvert(CLI::App& app, ConvertArguments& arguments) {
    CLI::App* command = app.add_subcommand("convert", "Convert an image from device to device");
    command->add_option("IN", arguments.input, "Image to read: TIFF, PNG, JPEG, WebP and more")
        ->required();
    command
        ->add_option("OUT", arguments.output,
                     "Image to write: .tif, .png, .jpg or .webp, with the target profile embedded; "
                     "save options may follow the name, as in out.tif[compression=deflate]")
        ->required();
    command
        ->add_option(
            "--to", arguments.to,
            "Target profile: a file or a built-in one; with --link, the one to embed, if any")
        ->option_text("PROFILE");
    command
        ->add_option("--from", arguments.from,
                     "Source profile for an image that embeds none; built-in sRGB unless given")
        ->option_text("PROFILE");
    addConversionOptions(*command, arguments.request);
    addLinkOption(*command, arguments.link);
    addToneOptions(*command, arguments.request.tone);
    command
        ->add_option("--depth", arguments.depth,
                     "Bits a sample, as the image has unless given; 16 for a gray device")
        ->check(CLI::IsMember({"8", "16"}))
        ->option_text("8|16");
    command->add_flag("-q,--quiet", arguments.quiet,
                      "No report, no progress, no notes; warnings stay");
    return command;
}

CLI::App* addValues(CLI::App& app, ValuesArguments& arguments) {
    CLI::App* command = app.add_subcommand("values", "Convert single colours");
    command->add_option("VALUE", arguments.values,
                        "Colours such as 255,0,0; without any, lines of the standard input");
    command->add_option("--from", arguments.from, "Source profile: a file or a built-in one")
        ->option_text("PROFILE");
    command->add_option("--to", arguments.to, "Target profile, likewise")->option_text("PROFILE");
    addConversionOptions(*command, arguments.request);
    addLinkOption(*command, arguments.link);
    command->get_option("--link")->excludes("--to");
    addToneOptions(*command, arguments.request.tone);
    command->add_flag("--16", arguments.sixteenBits, "Also -16: numbers are 0..65535, not 0..255");
    return command;
}

CLI::App* addLink(CLI::App& app, LinkArguments& arguments) {
    CLI::App* command =
        app.add_subcommand("link", "Combine a chain of profiles into a device-link profile");
    command
        ->add_option("PROFILE", arguments.profiles,
                     "Source, target and what stands between: a device in the middle is proofed")
        ->required();
    addConversionOptions(*command, arguments.request);
    using lumoxa::Sample;
    const auto setPrecision = [&arguments](Sample precision) {
        return [&arguments, precision] { arguments.precision = precision; };
    };
    CLI::Option* const lut8 =
        command->add_flag_callback("--lut8", setPrecision(Sample::U8),
                                   "Table of 8 bits: smaller, but coarse where gamuts are cut off");
    command->add_flag_callback("--lut16", setPrecision(Sample::U16), "Of 16 bits, the default")
        ->excludes(lut8);
    addProfileOptions(*command, arguments,
                      "Name; from the first and the last profile's unless given");
    return command;
}

CLI::App* addInfo(CLI::App& app, InfoArguments& arguments) {
    CLI::App* command = app.add_subcommand(
        "info", "Show what a profile holds and offers, and what in it breaks ICC.1");
    command->add_option("PROFILE", arguments.profile, "Profile file, or sRGB for the built-in one")
        ->required();
    command->add_flag("--json", arguments.json, "The whole report as one JSON document");
    return command;
}

// The option parser knows one-letter options and long ones: -16, of `values`, is neither.
std::vector<std::string> parserArguments(std::vector<std::string> words) {
    if (!words.empty() && words.front() == "values")
        std::replace(words.begin(), words.end(), std::string("-16"), std::string("--16"));
    return {words.rbegin(), words.rend()};  // last first, as the parser takes them
}

/// @param words  in UTF-8, without the program's name
int run(const std::vector<std::string>& words) {
    CLI::App app("lumoxa: colour conversion with ICC profiles");
    app.footer(
        "Examples:\n"
        "  lumoxa convert photo.jpg press.tif --to press.icc\n"
        "  lumoxa values --from sRGB --to press.icc 255,0,0 0,0,0\n"
        "  lumoxa link sRGB press.icc -o srgb-to-press.icc\n"
        "  lumoxa info press.icc\n"
        "Built-in profiles: sRGB, AdobeRGB, DisplayP3, Rec2020, ProPhotoRGB, gray, gray-2.2, and "
        "the spaces Lab and XYZ for values; a file of such a name is written ./sRGB.\n"
        "Exit codes: 0 done, 1 an input file is at fault, 2 wrong usage.");
    app.name("lumoxa");
    app.set_version_flag("--version", "lumoxa " LUMOXA_TOOL_VERSION);
    app.require_subcommand(1);
    CommandLine line;
    CLI::App* const convert = addConvert(app, line.convert);
    CLI::App* const values = addValues(app, line.values);
    CLI::App* const link = addLink(app, line.link);
    addInfo(app, line.info);
    CLI::App* const edit = addEdit(app, line.edit);
    CLI::App* const makeDisplay = addMakeDisplay(app, line.makeDisplay);
    CLI::App* const makeGray = addMakeGray(app, line.makeGray);
    try {
        app.parse(parserArguments(words));
    } catch (const CLI::Success& wish) {  // help or version
        return app.exit(wish);
    } catch (const CLI::ParseError& error) {
        if (app.get_subcommands().empty() && app.remaining_size() > 0) {
            throw UsageError("'" + app.remaining().front() +
                             "' is not a command; see lumoxa --help");
        }
        throw UsageError(std::string(error.what()) + "; see lumoxa --help");
    }
    int code = kSuccess;
    if (convert->parsed()) {
        code = convertImage(line.convert);
    } else if (values->parsed()) {
        runValues(line.values);
    } else if (link->parsed()) {
        runLink(line.link);
    } else if (edit->parsed()) {
        runEdit(line.edit);
    } else if (makeDisplay->parsed()) {
        runMakeDisplay(line.makeDisplay);
    } else if (makeGray->parsed()) {
        runMakeGray(line.makeGray);
    } else {
        runInfo(line.info);
    }
    if (!std::cout.flush() && code == kSuccess)
        throw InputError("standard output can't be written; check its disk");
    return code;
}

}  // namespace
}  // namespace lumoxa_tool

#if defined(_WIN32)
// Texts are UTF-8 and lines end as they do elsewhere, whatever the code page of the machine.
int wmain(int argc, wchar_t** argv) {
    for (FILE* const stream : {stdout, stderr})
        _setmode(_fileno(stream), _O_BINARY);
    const UINT codePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    const int code = lumoxa_tool::exitCodeOf([=] {
        std::vector<std::string> words;
        for (int i = 1; i < argc; ++i)
            words.push_back(std::filesystem::path(argv[i]).string());
        return lumoxa_tool::run(words);
    });
    SetConsoleOutputCP(codePage);
    return code;
}
#else
int main(int argc, char** argv) {
    return lumoxa_tool::exitCodeOf([=] {
        return lumoxa_tool::run(std::vector<std::string>(argv + std::min(argc, 1), argv + argc));
    });
}
#endif
