// SPDX-License-Identifier: Apache-2.0
#include "tools/edit_command.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <new>

#include <CLI/CLI.hpp>

#include "lumoxa/lumoxa.h"
#include "tools/display_curve.h"
#include "tools/file_bytes.h"
#include "tools/filled_tag.h"
#include "tools/number_list.h"
#include "tools/profile_source.h"
#include "tools/profile_text.h"
#include "tools/profile_writer.h"
#include "tools/result_text.h"
#include "tools/signatures.h"
#include "tools/text_tag.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Bytes = std::vector<uint8_t>;

// The new content of a tag, or nothing where it is removed.
struct TagEdit {
    uint32_t signature;
    std::optional<Bytes> content;
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

TagEdit editFromFile(const std::string& text) {
    const auto [signature, path] = parseAssignment("--set-tag", text);
    Bytes content = readFile(path, "tag");
    if (content.size() < sizeof(icTagBase)) {
        throw InputError(path + ": has " + std::to_string(content.size()) + " bytes",
                         "a tag begins with its type and four zero bytes");
    }
    return {signature, std::move(content)};
}

TagEdit editCurve(const std::string& text) {
    static constexpr uint32_t kCurves[] = {fourCc("rTRC"), fourCc("gTRC"), fourCc("bTRC"),
                                           fourCc("kTRC")};
    const auto [signature, value] = parseAssignment("--trc", text);
    if (std::find(std::begin(kCurves), std::end(kCurves), signature) == std::end(kCurves)) {
        throw UsageError("--trc: " + quotedSignature(signature) +
                         " is no tone curve: give rTRC, gTRC, bTRC or kTRC");
    }
    std::optional<Bytes> curve = gammaTag(parseNumbers("--trc", value, 1).front());
    if (!curve) throw UsageError("--trc: a gamma must be 1/256 to 255.996, not " + value);
    return {signature, std::move(curve)};
}

TagEdit editWhite(const std::string& text) {
    // As it will be stored: single precision and s15Fixed16 round at both ends of the range.
    const auto isStorable = [](double value) {
        const double fixed = static_cast<double>(static_cast<float>(value)) * 65536.0 + 0.5;
        return fixed >= 1.0 && fixed < 2147483648.0;
    };
    const std::vector<double> white = parseNumbers("--white", text, 3);
    if (!std::all_of(white.begin(), white.end(), isStorable)) {
        throw UsageError(
            "--white: X, Y and Z must be above 0 and below 32768, with 1 for a full Y");
    }
    const auto part = [&](size_t i) { return static_cast<float>(white[i]); };
    return {fourCc("wtpt"), filledTag([&](icTagBase** tag) {
                return icFillWhitePoint(part(0), part(1), part(2), tag);
            })};
}

std::vector<TagEdit> collectEdits(const EditArguments& arguments, uint32_t version) {
    std::vector<TagEdit> edits;
    for (const std::string& text : arguments.removeTags)
        edits.push_back({parseSignature("--remove-tag", text), std::nullopt});
    for (const std::string& text : arguments.setTags)
        edits.push_back(editFromFile(text));
    if (arguments.description) {
        edits.push_back({kProfileDescriptionTag, descriptionTag(*arguments.description, version)});
    }
    if (arguments.copyright) {
        edits.push_back({kCopyrightTag, copyrightTag(*arguments.copyright, version)});
    }
    if (arguments.white) edits.push_back(editWhite(*arguments.white));
    for (const std::string& text : arguments.curves)
        edits.push_back(editCurve(text));
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

// A profile without tags could not be read again.
void requireTagsLeft(const Profile& profile, const std::vector<TagEdit>& edits) {
    const auto sets = [](const TagEdit& edit) { return edit.content.has_value(); };
    const auto isRemoved = [&](const icTag_safe64bit& tag) {
        return std::any_of(edits.begin(), edits.end(), [&](const TagEdit& edit) {
            return !edit.content && edit.signature == tag.signature;
        });
    };
    if (std::any_of(edits.begin(), edits.end(), sets)) return;
    if (!std::all_of(profile.tags().begin(), profile.tags().end(), isRemoved)) return;
    throw InputError(profile.name() + ": would have no tags left", "keep one");
}

void apply(const TagEdit& edit, icProfile_t profile, const std::string& name) {
    if (edit.content) {
        const Bytes& bytes = *edit.content;
        const int code =
            icTagAdd(profile, edit.signature, static_cast<unsigned>(bytes.size()), bytes.data());
        if (code != icSuccess) throw std::bad_alloc();
        return;
    }
    if (icTagRemove(profile, edit.signature) != icSuccess) {
        throw InputError(
            name + ": tag " + quotedSignature(edit.signature) + " " + faultText(icErrNoTag),
            "`lumoxa info` lists the tags");
    }
    while (icTagRemove(profile, edit.signature) == icSuccess) {
        // entries of the same name, which would come to light now
    }
}

// The identifier is a digest of the profile as it was; zeros say that there is none.
void clearProfileId(icProfile_t profile) {
    constexpr size_t kIdBytes = 16;
    icHeader header = {};
    icProfileGetHeader(profile, &header);
    std::fill_n(header.reserved, kIdBytes, uint8_t{0});
    icProfileSetHeader(profile, &header);
}

void printReport(const EditArguments& arguments, const std::vector<TagEdit>& edits) {
    const auto set = std::count_if(edits.begin(), edits.end(),
                                   [](const TagEdit& edit) { return edit.content.has_value(); });
    std::error_code ignored;
    std::cout << arguments.profile << " -> " << arguments.output << ": tags set: " << set
              << ", removed: " << edits.size() - static_cast<size_t>(set) << ", "
              << std::filesystem::file_size(arguments.output, ignored) << " bytes" << std::endl;
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
        ->add_option("--trc", arguments.curves,
                     "Set rTRC, gTRC, bTRC or kTRC to a gamma, rounded to 1/256")
        ->allow_extra_args(false)
        ->option_text("SIG=GAMMA ...");
    command->add_flag("-q,--quiet", arguments.quiet, "No report");
    return command;
}

void runEdit(const EditArguments& arguments) {
    const Profile profile = Profile::open(arguments.profile);
    const std::vector<TagEdit> edits = collectEdits(arguments, profile.header().version);
    requireDistinct(edits);
    requireTagsLeft(profile, edits);
    const ProfileHandle edited = profile.loadForEditing();
    for (const TagEdit& edit : edits)
        apply(edit, edited.get(), profile.name());
    clearProfileId(edited.get());
    saveProfile(edited.get(), arguments.output);
    if (!arguments.quiet) printReport(arguments, edits);
}

}  // namespace lumoxa_tool
