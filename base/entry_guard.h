// SPDX-License-Identifier: Apache-2.0
//
// The one place where exceptions end. Inside the library a failed allocation is std::bad_alloc;
// every exported function that can allocate runs its body through guarded().
#pragma once

#include <exception>
#include <new>
#include <stdexcept>

#include "lumoxa/types.h"

namespace lumoxa {

/// Runs `body`, which returns a result code, and turns a failed allocation into icErrNoMemory.
/// std::length_error is what a container throws for a size that no allocation could satisfy.
template <class Body>
int guarded(Body&& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    } catch (const std::length_error&) {
        return icErrNoMemory;
    } catch (const std::exception&) {
        return icErrInvalid;
    }
}

}  // namespace lumoxa
