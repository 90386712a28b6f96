// SPDX-License-Identifier: Apache-2.0
#include "tools/edit_command.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iostream>
#include <new>

#include <CLI/CLI.hpp>

#include "lumoxa/lumoxa.hpp"
#include "tools/files.h"
#include "tools/named_profile.h"
#include "tools/option_values.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Bytes = std::vector<uint8_t>;

// What is to become of a tag.
struct TagEdit {
    uint32_t signature;
    bool removes;
    std::function<lumoxa::Profile(const lumoxa::Profile&)> apply;
};

uint32_t parseSignature(const std::string& option, const std::string& text) {
    constexpr size_t kCharacters = 4;
    const bool printable = std::all_of(text.begin(), text.end(), [](char character) {
        return character >= 0x20 && character < 0x7F;
    });
    if (text.empty() || text.size() > kCharacters || !printable) {
        throw UsageError(option + ": '" + text + "' is no tag name, which has 1 to 4 characters " +
                         "such as cprt");
    }
    uint32_t signature = 0;
    for (size_t i = 0; i < kCharacters; ++i)
        signature = signature << 8 | static_cast<unsigned char>(i < text.size() ? text[i] : ' ');
    return signature;
}

struct Assignment {
    uint32_t signature;
    std::string value;
};

Assignment parseAssignment(const std::string& option, const std::string& text) {
    const size_t equals = text.find('=');
    if (equals == std::string::npos || equals + 1 == text.size()) {
        throw UsageError(option + ": '" + text + "' lacks the tag's name, '=' or what follows it");
    }
    return {parseSignature(option, text.substr(0, equals)), text.substr(equals + 1)};
}

// The identifier is a digest of the profile as it was; zeros say that there is none.
lumoxa::Profile withTag(const lumoxa::Profile& profile, uint32_t signature, const Bytes& content) {
    constexpr size_t kIdAt = 84, kIdBytes = 16;
    Bytes bytes = profile.bytes();
    std::fill_n(bytes.begin() + kIdAt, kIdBytes, uint8_t{0});
    lumoxa::Profile edited = lumoxa::Profile::fromBytes(bytes.data(), bytes.size());
    const int code = lmx_profile_add_tag(edited.handle(), signature, content.data(),
                                         static_cast<uint32_t>(content.size()));
    if (code != LMX_SUCCESS) throw std::bad_alloc();
    return edited;
}

TagEdit editFromFile(const std::string& text) {
    constexpr size_t kTagStart = 8;  // its type and four zero bytes
    const auto [signature, path] = parseAssignment("--set-tag", text);
    Bytes content = readFile(path, "tag");
    if (content.size() < kTagStart) {
        throw InputError(path + ": has " + std::to_string(content.size()) + " bytes",
                         "a tag begins with its type and four zero bytes");
    }
    return {signature, false,
            [tag = signature, bytes = std::move(content)](const lumoxa::Profile& profile) {
                return withTag(profile, tag, bytes);
            }};
}

TagEdit editCurve(const std::string& text) {
    const auto [signature, value] = parseAssignment("--trc", text);
    const double gamma = parseNumbers("--trc", value, 1).front();
    return {signature, false, [gamma, tag = signature](const lumoxa::Profile& profile) {
                return withOption("--trc", [&] {
                    return profile.withCurve(tag, lumoxa::ToneCurve::gamma(gamma));
                });
            }};
}

TagEdit editWhite(const std::string& text) {
    const std::vector<double> white = parseNumbers("--white", text, 3);
    return {fourCc("wtpt"), false, [white](const lumoxa::Profile& profile) {
                return withOption("--white",
                                  [&] { return profile.withWhite(white[0], white[1], white[2]); });
            }};
}

TagEdit editText(const char* option, uint32_t signature, const std::string& text) {
    return {signature, false, [=](const lumoxa::Profile& profile) {
                return withOption(option, [&] { return profile.withText(signature, text); });
            }};
}

TagEdit removal(uint32_t signature, const std::string& name) {
    return {signature, true, [=](const lumoxa::Profile& profile) {
                try {
                    return profile.without(signature);
                } catch (const lumoxa::Error& error) {
                    if (error.code() == LMX_ERR_NO_MEMORY) throw std::bad_alloc();
                    const bool isMissing = error.code() == LMX_ERR_NO_TAG;
                    throw InputError(name + ": " + error.what(),
                                     isMissing ? "`lumoxa info` lists the tags" : "keep one");
                }
            }};
}

// Removals come last: a profile has a tag at any time.
std::vector<TagEdit> collectEdits(const EditArguments& arguments, const std::string& name) {
    std::vector<TagEdit> edits;
    for (const std::string& text : arguments.setTags)
        edits.push_back(editFromFile(text));
    if (arguments.description)
        edits.push_back(editText("--description", kProfileDescriptionTag, *arguments.description));
    if (arguments.copyright)
        edits.push_back(editText("--copyright", kCopyrightTag, *arguments.copyright));
    if (arguments.white) edits.push_back(editWhite(*arguments.white));
    for (const std::string& text : arguments.curves)
        edits.push_back(editCurve(text));
    for (const std::string& text : arguments.removeTags)
        edits.push_back(removal(parseSignature("--remove-tag", text), name));
    return edits;
}

// Each tag at most once: of two wishes for one tag, one would be lost.
void requireDistinct(std::vector<TagEdit> edits) {
    if (edits.empty()) throw UsageError("nothing to edit: give --description or another option");
    const auto bySignature = [](const TagEdit& a, const TagEdit& b) {
        return a.signature < b.signature;
    };
    std::sort(edits.begin(), edits.end(), bySignature);
    const auto twin = std::adjacent_find(
        edits.begin(), edits.end(),
        [](const TagEdit& a, const TagEdit& b) { return a.signature == b.signature; });
    if (twin == edits.end()) return;
    throw UsageError("tag " + quotedSignature(twin->signature) + " is named by two options");
}

void printReport(const EditArguments& arguments, const std::vector<TagEdit>& edits, size_t bytes) {
    const auto removed =
        std::count_if(edits.begin(), edits.end(), [](const TagEdit& edit) { return edit.removes; });
    std::cout << arguments.profile << " -> " << arguments.output
              << ": tags set: " << edits.size() - static_cast<size_t>(removed)
              << ", removed: " << removed << ", " << bytes << " bytes" << std::endl;
}

}  // namespace

CLI::App* addEdit(CLI::App& app, EditArguments& arguments) {
    CLI::App* command = app.add_subcommand("edit", "Set and remove tags of a profile");
    command->add_option("PROFILE", arguments.profile, "Profile file, or sRGB for the built-in one")
        ->required();
    command
        ->add_option("-o,--output", arguments.output,
                     "Profile to write, which may be the one that is read")
        ->required()
        ->option_text("OUT");
    command->add_option("--description", arguments.description, "New name of the profile")
        ->option_text("TEXT");
    command->add_option("--copyright", arguments.copyright, "New copyright")->option_text("TEXT");
    command
        ->add_option("--set-tag", arguments.setTags,
                     "Set a tag to a file's bytes: its type, four zero bytes, its content")
        ->allow_extra_args(false)
        ->option_text("SIG=FILE ...");
    command->add_option("--remove-tag", arguments.removeTags, "Remove a tag")
        ->allow_extra_args(false)
        ->option_text("SIG ...");
    command->add_option("--white", arguments.white, "Set the white point, with 1 for a full Y")
        ->option_text("X,Y,Z");
    command
        ->add_option("--trc", arguments.curves, "Set rTRC, gTRC, bTRC or kTRC to a gamma, exactly")
        ->allow_extra_args(false)
        ->option_text("SIG=GAMMA ...");
    command->add_flag("-q,--quiet", arguments.quiet, "No report");
    return command;
}

void runEdit(const EditArguments& arguments) {
    const NamedProfile source = openProfile(arguments.profile);
    const std::vector<TagEdit> edits = collectEdits(arguments, source.name);
    requireDistinct(edits);
    lumoxa::Profile profile = source.profile;
    for (const TagEdit& edit : edits)
        profile = edit.apply(profile);
    const Bytes bytes = profile.bytes();
    writeFile(arguments.output, bytes);
    if (!arguments.quiet) printReport(arguments, edits, bytes.size());
}

}  // namespace lumoxa_tool
