// SPDX-License-Identifier: Apache-2.0
#include "tools/info_command.h"

#include <iostream>

#include <nlohmann/json.hpp>

#include "lumoxa/lumoxa.hpp"
#include "tools/info_text.h"
#include "tools/named_profile.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

const char* remedyOf(const nlohmann::json& report) {
    if (report["header"].is_null()) return "give a profile file";
    return report["fault"]["tag"] == signatureText(kGrayTag)
               ? "make the profile anew with lumoxa make-gray"
               : "get a sound copy of the profile";
}

std::string reportOn(const std::vector<uint8_t>& bytes) {
    static constexpr uint8_t kNothing = 0;  // an empty vector may have no address
    return lumoxa::inspect(bytes.empty() ? &kNothing : bytes.data(), bytes.size());
}

}  // namespace

void runInfo(const InfoArguments& arguments) {
    const ProfileContent content = readProfile(arguments.profile);
    const std::string text = reportOn(content.bytes);
    const nlohmann::json report = nlohmann::json::parse(text);
    if (arguments.json) {
        std::cout << text << '\n';
    } else {
        printReport(std::cout, report, content.name);
    }
    std::cout.flush();
    if (report["fault"].is_null()) return;
    const std::string sentence = report["fault"]["sentence"];
    throw InputError(content.name + ": " + sentence, remedyOf(report));
}

}  // namespace lumoxa_tool
