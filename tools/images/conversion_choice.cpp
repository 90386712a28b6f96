// SPDX-License-Identifier: Apache-2.0
#include "tools/images/conversion_choice.h"

#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

constexpr const char* kNameProfile = "name the image's profile with --from";
constexpr const char* kOtherLink = "give a link that starts from the image's colours";

// Throws an InputError when the profile describes other pixels than the image has.
void requireFit(const std::string& input, const SourceImage& source, const NamedProfile& profile,
                const char* remedy = kNameProfile) {
    const int wanted = profile.profile.channels();
    const uint32_t space = profile.profile.colorSpace();
    const int colours = source.bands - (source.alpha ? 1 : 0);
    // Three channels of ink in a TIFF read as RGB: the format has no word for them.
    const bool sameSpace = source.space == 0 || source.space == space ||
                           (isGrayPrint(profile.profile) && source.space == kRgb);
    const bool enough = source.alpha ? wanted <= source.bands : wanted == source.bands;
    if (enough && sameSpace) return;
    std::string image = std::to_string(colours);
    if (source.space != 0) image += " " + spaceText(source.space);
    throw InputError(input + ": has " + image + " channels, but " + profile.name + " is for " +
                         std::to_string(wanted) + " " + spaceText(space) + " channels",
                     remedy);
}

// A print file has no profile; an image that has one of colours is no print file.
void requirePrintFile(const ConvertArguments& arguments, const SourceImage& source) {
    constexpr size_t kSpaceAt = 16;  // in a header
    if (!source.profile || source.profile->size() < kSpaceAt + 4) return;
    uint32_t space = 0;
    for (size_t i = kSpaceAt; i < kSpaceAt + 4; ++i)
        space = space << 8 | (*source.profile)[i];
    if (space == kGray) return;
    throw InputError(arguments.input + ": has an embedded profile of " + spaceText(space) +
                         ", so its channels are not those of " + arguments.from,
                     "leave out --from, or remove the profile from the image if it is wrong");
}

Chosen chosenOf(const ConvertArguments& arguments, const SourceImage& source,
                std::vector<NamedProfile> chain) {
    requireFit(arguments.input, source, chain.front());
    requireDevice(chain.front());
    lumoxa::Conversion conversion = makeConversion(chain, arguments.request);
    return {std::move(chain), std::move(conversion)};
}

// By the embedded profile; nothing where it can't serve and --from may.
std::optional<Chosen> embeddedConversion(const ConvertArguments& arguments,
                                         const SourceImage& source, const NamedProfile& target) {
    try {
        const ProfileContent content = {"profile embedded in " + arguments.input, *source.profile};
        Chosen chosen = chosenOf(arguments, source, {loadProfile(content, kNameProfile), target});
        if (!arguments.from.empty())
            printNote(arguments, arguments.input + ": has its own profile, --from is not used");
        return chosen;
    } catch (const InputError& error) {
        const auto* const fault = dynamic_cast<const ProfileError*>(&error);
        const bool targetAtFault = fault != nullptr && fault->place() != 0;
        if (arguments.from.empty() || targetAtFault) throw;
        printNote(arguments, error.fault() + "; --from is used instead");
        return std::nullopt;
    }
}

Chosen deviceConversion(const ConvertArguments& arguments, const SourceImage& source,
                        const NamedProfile& target) {
    std::optional<NamedProfile> from;
    if (!arguments.from.empty()) from = openProfile(arguments.from);
    if (from && isGrayPrint(from->profile)) {
        requirePrintFile(arguments, source);
        return chosenOf(arguments, source, {*from, target});
    }
    if (source.profile) {
        if (std::optional<Chosen> chosen = embeddedConversion(arguments, source, target))
            return *chosen;
    }
    if (!from && source.space == kRgb) from = openProfile("sRGB");
    if (!from) {
        throw InputError(arguments.input + ": has no embedded profile and is not RGB",
                         kNameProfile);
    }
    return chosenOf(arguments, source, {*from, target});
}

}  // namespace

void printNote(const ConvertArguments& arguments, const std::string& text) {
    if (!arguments.quiet) printMessage("note: " + text);
}

Target openTarget(const ConvertArguments& arguments) {
    Target target;
    if (!arguments.to.empty()) target.profile = openProfile(arguments.to);
    if (arguments.link.empty()) {
        if (!target.profile) throw UsageError("--to or --link is required; see lumoxa --help");
        requireDevice(*target.profile);
        requireTonePossible(arguments.request, *target.profile);
        target.space = target.profile->profile.colorSpace();
        target.print = isGrayPrint(target.profile->profile);
        return target;
    }
    target.link = openProfile(arguments.link);
    requireLink(*target.link);
    target.space = target.link->profile.connectionSpace();
    if (target.profile && target.profile->profile.colorSpace() != target.space) {
        throw InputError(arguments.to + ": is for " +
                             spaceText(target.profile->profile.colorSpace()) + ", but " +
                             arguments.link + " gives " + spaceText(target.space),
                         "name a profile of the link's target");
    }
    return target;
}

Chosen chooseConversion(const ConvertArguments& arguments, const SourceImage& source,
                        const Target& target) {
    if (!target.link) return deviceConversion(arguments, source, *target.profile);
    requireFit(arguments.input, source, *target.link, kOtherLink);
    return {{*target.link}, makeConversion({*target.link}, arguments.request)};
}

}  // namespace lumoxa_tool
