// SPDX-License-Identifier: Apache-2.0
//
// The profile under inspection: its bytes however broken, and what the engine makes of them.
#pragma once

#include <memory>
#include <optional>
#include <span>

#include "convert/profile_view.h"
#include "inspect/profile_file.h"

namespace lumoxa::inspection {

class Subject {
  public:
    /// @param bytes  anything at all; copied
    explicit Subject(std::span<const uint8_t> bytes);

    const ProfileFile& file() const { return file_; }
    /// As the engine reads it; null where that fails.
    const engine::ProfileView* view() const { return view_.get(); }
    /// Why the profile can't be loaded.
    const std::optional<Fault>& fault() const { return fault_; }

    /// What went wrong, without the name that a profile has in a chain.
    Fault faultOf(const FaultError& error) const;

    /// Runs `attempt` on the view; what it throws is the answer.
    template <class Attempt>
    std::optional<Fault> faultIn(Attempt attempt) const {
        try {
            attempt();
            return std::nullopt;
        } catch (const FaultError& error) {
            return faultOf(error);
        }
    }

  private:
    ProfileImage image_;
    ProfileFile file_;
    std::unique_ptr<const engine::ProfileView> view_;
    std::optional<Fault> fault_;
};

}  // namespace lumoxa::inspection
