// SPDX-License-Identifier: Apache-2.0
#include "tools/link_command.h"

#include <chrono>
#include <filesystem>
#include <iomanip>
#include <iostream>

#include "tools/interrupt.h"
#include "tools/profile_chain.h"
#include "tools/profile_writer.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Clock = std::chrono::steady_clock;

// Its three channels follow one number, which a grid between them would blur.
void refuseGrayDevice(const Profile& profile) {
    if (!isGrayDevice(profile, icDeviceToPcs) && !isGrayDevice(profile, icPcsToDevice)) return;
    throw InputError(profile.name() + ": is for a gray device of three channels, whose tones a " +
                         "device link can't hold",
                     "give the profile itself to convert or values");
}

std::vector<Profile> openProfiles(const LinkArguments& arguments) {
    if (arguments.profiles.size() < 2) {
        throw UsageError(
            "a device link needs at least two profiles: the source's and the target's");
    }
    for (const std::string& word : arguments.profiles) {
        std::error_code ignored;
        if (std::filesystem::equivalent(word, arguments.output, ignored)) {
            throw UsageError(word + ": is a profile to link, and -o would replace it");
        }
    }
    std::vector<Profile> profiles;
    for (const std::string& word : arguments.profiles)
        profiles.push_back(Profile::open(word));
    for (const Profile& profile : profiles)
        refuseGrayDevice(profile);
    return profiles;
}

void printReport(const LinkArguments& arguments, const std::vector<ChainLink>& chain,
                 const Table& table, double seconds) {
    std::cout << std::fixed << arguments.output << '\n';
    for (size_t i = 0; i < chain.size(); ++i) {
        std::cout << "  " << std::left << std::setw(10) << i + 1 << chain[i].description << ": "
                  << chain[i].describe() << '\n';
    }
    std::error_code ignored;
    const auto bytes = std::filesystem::file_size(arguments.output, ignored);
    std::cout << "  combined  " << table.describe() << ", " << intentText(arguments.request.intent)
              << '\n'
              << "  size      " << bytes << " bytes\n"
              << "  time      " << std::setprecision(2) << seconds << " s" << std::endl;
}

}  // namespace

void runLink(const LinkArguments& arguments) {
    const std::vector<Profile> profiles = openProfiles(arguments);
    LinkTexts texts = arguments.texts;
    if (texts.description.empty()) texts.description = linkDescription(profiles);
    requireStorable(texts);
    watchForInterrupt();
    const Clock::time_point start = Clock::now();
    const std::vector<ChainLink> chain = chainOfProfiles(profiles, arguments.request.intent);
    for (const ChainLink& link : chain) {
        if (!link.notice.empty()) printMessage(link.notice);
    }
    const Table table = withPrecision(combineChain(chain, arguments.request), arguments.precision);
    const ProfileHandle link = makeLinkProfile(profiles, table, arguments.request.intent, texts);
    saveProfile(link.get(), arguments.output);
    const std::chrono::duration<double> elapsed = Clock::now() - start;
    if (!arguments.quiet) printReport(arguments, chain, table, elapsed.count());
}

}  // namespace lumoxa_tool
