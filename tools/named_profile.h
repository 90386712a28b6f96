// SPDX-License-Identifier: Apache-2.0
//
// Profiles of conversions, as the command line names them and as messages call them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lumoxa/lumoxa.hpp"
#include "tools/tool_error.h"

namespace lumoxa_tool {

/// What a word of the command line stands for, before anything is read from it.
struct ProfileContent {
    std::string name;  ///< as messages call it
    std::vector<uint8_t> bytes;
};

/// @param word  a built-in profile's name, such as sRGB, else a file's
/// @throws InputError for a file that can't be read
ProfileContent readProfile(const std::string& word);

/// A profile with its name in messages.
struct NamedProfile {
    std::string name;
    std::string remedy;  ///< what to do when it can't serve, if not what helps with a file
    lumoxa::Profile profile;

    /// The profile's own name, else that of messages.
    std::string description() const;
};

/// @param remedy  as in NamedProfile
/// @throws InputError for bytes that are no profile
NamedProfile loadProfile(const ProfileContent& content, const std::string& remedy = {});

/// The same of readProfile().
NamedProfile openProfile(const std::string& word);

/// Whether a profile is that of a gray device of three channels, made from measured patches.
bool isGrayPrint(const lumoxa::Profile& profile);

/// A profile of a conversion can't serve.
class ProfileError : public InputError {
  public:
    ProfileError(const std::string& fault, const std::string& remedy, int place)
        : InputError(fault, remedy), place_(place) {}
    /// In the chain, from 0.
    int place() const { return place_; }

  private:
    int place_;
};

/// The engine's sentence with the file's name in place of the profile's number, and what to do.
/// @param chain  the profiles that the error counts
[[noreturn]] void refuse(const lumoxa::Error& error, const std::vector<NamedProfile>& chain);

}  // namespace lumoxa_tool
