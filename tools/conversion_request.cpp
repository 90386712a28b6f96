// SPDX-License-Identifier: Apache-2.0
#include "tools/conversion_request.h"

#include <array>
#include <map>

#include <CLI/CLI.hpp>

#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

using lumoxa::Intent;

const std::map<std::string, Intent> kIntents = {
    {"perceptual", Intent::Perceptual},
    {"relative", Intent::Relative},
    {"saturation", Intent::Saturation},
    {"absolute", Intent::Absolute},
};

}  // namespace

lumoxa::Options ConversionRequest::options() const {
    lumoxa::Options options;
    options.intent = intent;
    options.blackPointCompensation = !noBlackPointCompensation;
    options.tone = parseTone(tone, intent);
    return options;
}

void addConversionOptions(CLI::App& command, ConversionRequest& request) {
    const auto choose = [&request](const std::string& word) { request.intent = kIntents.at(word); };
    command
        .add_option_function<std::string>("--intent", choose,
                                          "Rendering intent, relative unless given")
        ->check(CLI::IsMember(kIntents))
        ->option_text("perceptual|relative|saturation|absolute");
    command.add_flag("--no-bpc", request.noBlackPointCompensation,
                     "Without black point compensation (ISO 18619): blacks darker than the "
                     "target's become its black, and none is lightened");
}

void addLinkOption(CLI::App& command, std::string& link) {
    CLI::Option* const option =
        command.add_option("--link", link, "Device-link profile that converts by itself");
    option->option_text("PROFILE");
    for (const char* settled : {"--from", "--intent", "--no-bpc"})
        option->excludes(command.get_option(settled));
}

std::string intentText(Intent intent) {
    return intentText(static_cast<uint32_t>(intent));
}

lumoxa::Conversion makeConversion(const std::vector<NamedProfile>& chain,
                                  const ConversionRequest& request, bool exact) {
    std::vector<lumoxa::Profile> profiles;
    profiles.reserve(chain.size());
    for (const NamedProfile& member : chain)
        profiles.push_back(member.profile);
    lumoxa::Options options = request.options();
    options.exact = exact;
    try {
        return lumoxa::Conversion(profiles, options);
    } catch (const lumoxa::Error& error) {
        refuse(error, chain);
    }
}

void requireDevice(const NamedProfile& profile) {
    if (profile.profile.deviceClass() != kLinkClass) return;
    throw InputError(profile.name + ": is a device link, which describes no single device",
                     profile.remedy.empty()
                         ? "give the profile of a device, or name the link with --link"
                         : profile.remedy);
}

void requireLink(const NamedProfile& profile) {
    if (profile.profile.deviceClass() == kLinkClass) return;
    throw InputError(profile.name + ": is no device link",
                     "make one from profiles with lumoxa link");
}

void requireTonePossible(const ConversionRequest& request, const NamedProfile& to) {
    if (!parseTone(request.tone, request.intent) || isGrayPrint(to.profile)) return;
    throw UsageError("a tone is for gray devices of three channels, and " + to.name +
                     " is for none; leave out --tone and the like");
}

}  // namespace lumoxa_tool
