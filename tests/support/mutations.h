// SPDX-License-Identifier: Apache-2.0
//
// Profiles made faulty at random, and all that the accurate engine can be asked to do with one.
#pragma once

#include "tests/support/profile_bytes.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {

/// Changes one to four places: bytes, the numbers that sizes and offsets are, signatures, fields of
/// the header, the length of the file.
Bytes mutated(Bytes profile, SeededRandom& random);

/// Loads a profile and converts with it, in a chain and a sample type that `random` chooses: 16
/// pixels, one pixel, the explanation, a link. Every call succeeds or names a fault.
/// @return whether a conversion came about
bool convertsOrFaults(const Bytes& profile, SeededRandom& random);

}  // namespace lumoxa_test
