// SPDX-License-Identifier: Apache-2.0
#include "tools/link_command.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>

#include "tools/conversion_report.h"
#include "tools/files.h"
#include "tools/option_values.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Clock = std::chrono::steady_clock;

std::vector<NamedProfile> openProfiles(const LinkArguments& arguments) {
    if (arguments.profiles.size() < 2) {
        throw UsageError(
            "a device link needs at least two profiles: the source's and the target's");
    }
    for (const std::string& word : arguments.profiles) {
        std::error_code ignored;
        if (std::filesystem::equivalent(pathOf(word), pathOf(arguments.output), ignored)) {
            throw UsageError(word + ": is a profile to link, and -o would replace it");
        }
    }
    std::vector<NamedProfile> profiles;
    for (const std::string& word : arguments.profiles)
        profiles.push_back(openProfile(word));
    return profiles;
}

// A profile without a description is called by its file, wherever that lies.
std::string endName(const NamedProfile& profile) {
    const std::string text = profile.profile.description();
    return text.empty() ? pathOf(profile.name).filename().string() : text;
}

// In the characters that a description of version 2 can hold.
std::string plainDescription(const std::vector<NamedProfile>& profiles) {
    std::string text = endName(profiles.front()) + " to " + endName(profiles.back());
    const auto isOther = [](char c) { return c < ' ' || c > '~'; };
    std::replace_if(text.begin(), text.end(), isOther, '?');
    return text;
}

lumoxa::Profile makeLink(const LinkArguments& arguments,
                         const std::vector<NamedProfile>& profiles) {
    std::vector<lumoxa::Profile> chain;
    chain.reserve(profiles.size());
    for (const NamedProfile& profile : profiles)
        chain.push_back(profile.profile);
    try {
        return lumoxa::makeLink(chain, arguments.request.options(), arguments.precision);
    } catch (const lumoxa::Error& error) {
        refuse(error, profiles);
    }
}

lumoxa::Profile withTexts(lumoxa::Profile link, const LinkArguments& arguments,
                          const std::vector<NamedProfile>& profiles) {
    const std::string description = arguments.description.value_or(plainDescription(profiles));
    link = withOption("--description",
                      [&] { return link.withText(kProfileDescriptionTag, description); });
    if (!arguments.copyright) return link;
    return withOption("--copyright",
                      [&] { return link.withText(kCopyrightTag, *arguments.copyright); });
}

void printReport(const LinkArguments& arguments, const std::vector<NamedProfile>& profiles,
                 const lumoxa::Profile& link, double seconds) {
    std::cout << arguments.output << '\n';
    for (size_t i = 0; i < profiles.size(); ++i) {
        std::cout << reportLine(
            std::to_string(i + 1),
            profiles[i].description() + ": " + spaceText(profiles[i].profile.colorSpace()));
    }
    std::error_code ignored;
    const auto bytes = std::filesystem::file_size(pathOf(arguments.output), ignored);
    const char* const bits = arguments.precision == lumoxa::Sample::U8 ? "8" : "16";
    std::cout << reportLine("table", linkGridText(lumoxa::Conversion({link})) + ", " + bits +
                                         " bits, " + intentText(arguments.request.intent))
              << reportLine("size", std::to_string(bytes) + " bytes")
              << reportLine("time", rounded(seconds, 2) + " s") << std::flush;
}

}  // namespace

void runLink(const LinkArguments& arguments) {
    const std::vector<NamedProfile> profiles = openProfiles(arguments);
    const Clock::time_point start = Clock::now();
    const lumoxa::Profile link = withTexts(makeLink(arguments, profiles), arguments, profiles);
    writeFile(arguments.output, link.bytes());
    const std::chrono::duration<double> elapsed = Clock::now() - start;
    if (!arguments.quiet) printReport(arguments, profiles, link, elapsed.count());
}

}  // namespace lumoxa_tool
