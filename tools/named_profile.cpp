// SPDX-License-Identifier: Apache-2.0
#include "tools/named_profile.h"

#include "tools/files.h"
#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

// The sentence without `profile 1 "description": ` in front, or `the profile: ` outside of chains.
std::string ruleOf(const lumoxa::Error& error) {
    std::string sentence = error.what();
    const int place = error.profileIndex();
    const std::string title = place < 0 ? "the profile" : "profile " + std::to_string(place + 1);
    if (!sentence.starts_with(title)) return sentence;
    const bool described = sentence.compare(title.size(), 2, " \"") == 0;
    const std::string end = described ? "\": " : ": ";
    const size_t at = sentence.find(end, title.size());
    return at == std::string::npos ? sentence : sentence.substr(at + end.size());
}

const char* remedyOf(const lumoxa::Error& error) {
    if (error.tag() == kGrayTag) return "make the profile anew with lumoxa make-gray";
    switch (error.code()) {
        case LMX_ERR_READ:
        case LMX_ERR_TAG_TYPE:
        case LMX_ERR_NO_MEMORY:  // counts that no memory holds
            return "get a sound copy of the profile";
        case LMX_ERR_NO_TAG:
            return "choose another profile";
        default:
            return "give the profiles of devices that fit";
    }
}

}  // namespace

ProfileContent readProfile(const std::string& word) {
    try {
        return {"built-in " + word, lumoxa::Profile::named(word.c_str()).bytes()};
    } catch (const lumoxa::Error& error) {
        if (error.code() == LMX_ERR_NO_MEMORY) throw std::bad_alloc();
        return {word, readFile(word, "profile")};  // no built-in one
    }
}

std::string NamedProfile::description() const {
    const std::string text = profile.description();
    return text.empty() ? name : text;
}

NamedProfile loadProfile(const ProfileContent& content, const std::string& remedy) {
    try {
        return {content.name, remedy,
                lumoxa::Profile::fromBytes(content.bytes.data(), content.bytes.size())};
    } catch (const lumoxa::Error& error) {
        const bool noProfile = error.code() == LMX_ERR_INVALID;
        throw InputError(content.name + ": " + ruleOf(error),
                         !remedy.empty() ? remedy
                         : noProfile     ? "give a profile file"
                                         : "get a sound copy of the profile");
    }
}

NamedProfile openProfile(const std::string& word) {
    return loadProfile(readProfile(word));
}

bool isGrayPrint(const lumoxa::Profile& profile) {
    return profile.colorSpace() == kGray && profile.channels() == kGrayPrintChannels;
}

void refuse(const lumoxa::Error& error, const std::vector<NamedProfile>& chain) {
    const int place = error.profileIndex();
    if (place < 0 || static_cast<size_t>(place) >= chain.size()) throw InputError(error.what());
    const NamedProfile& profile = chain[static_cast<size_t>(place)];
    throw ProfileError(profile.name + ": " + ruleOf(error),
                       profile.remedy.empty() ? remedyOf(error) : profile.remedy, place);
}

}  // namespace lumoxa_tool
