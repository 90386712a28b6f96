// SPDX-License-Identifier: Apache-2.0
//
// Tags of profiles that the library made, and the sentences with which it makes none.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "lumoxa/lumoxa.hpp"
#include "tests/support/profile_bytes.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {

inline double fixedAt(const Bytes& bytes, size_t at) {
    return static_cast<int32_t>(numberAt(bytes, at)) / 65536.0;
}

/// The data of the first tag of that name; empty where the profile has none.
inline Bytes tagOf(const Bytes& profile, const std::string& name) {
    for (size_t at = 132; at < 132 + 12 * numberAt(profile, 128); at += 12) {
        if (numberAt(profile, at) != signature(name)) continue;
        const auto first = profile.begin() + numberAt(profile, at + 4);
        return {first, first + numberAt(profile, at + 8)};
    }
    return {};
}

/// x of m x = b, for the 3 x 3 matrix of a 'sf32' tag, by Cramer's rule.
inline std::array<double, 3> solved(const Bytes& matrix, const std::vector<float>& b) {
    const auto determinant = [&](size_t replaced) {
        const auto m = [&](size_t r, size_t c) {
            return c == replaced ? b[r] : fixedAt(matrix, 8 + 4 * (3 * r + c));
        };
        return m(0, 0) * (m(1, 1) * m(2, 2) - m(1, 2) * m(2, 1)) -
               m(0, 1) * (m(1, 0) * m(2, 2) - m(1, 2) * m(2, 0)) +
               m(0, 2) * (m(1, 0) * m(2, 1) - m(1, 1) * m(2, 0));
    };
    return {determinant(0) / determinant(3), determinant(1) / determinant(3),
            determinant(2) / determinant(3)};
}

/// The sentence that `call` throws; empty where it throws none.
template <class Call>
std::string faultOf(Call call) {
    try {
        call();
    } catch (const lumoxa::Error& error) {
        return error.what();
    }
    return {};
}

}  // namespace lumoxa_test
