// SPDX-License-Identifier: Apache-2.0
//
// What went wrong, in words: the one exception of the accurate engine. It ends at the C interface,
// which hands its fields to the caller.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>

#include "lumoxa/types.h"

namespace lumoxa {

/// A failure that names its place. Layers below the chain of profiles leave `profileIndex` alone.
struct Fault {
    int code = icErrInvalid;
    std::string sentence;   ///< one sentence without a full stop: what breaks which rule
    uint32_t tag = 0;       ///< signature, 0 for none
    int64_t offset = -1;    ///< byte position in the profile, -1 for none
    int profileIndex = -1;  ///< place in the caller's chain, -1 for none
};

class FaultError : public std::exception {
  public:
    explicit FaultError(Fault fault) : fault_(std::move(fault)) {}
    FaultError(int code, std::string sentence) : fault_{code, std::move(sentence)} {}

    const Fault& fault() const noexcept { return fault_; }
    const char* what() const noexcept override { return fault_.sentence.c_str(); }

  private:
    Fault fault_;
};

}  // namespace lumoxa
