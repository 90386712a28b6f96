// SPDX-License-Identifier: Apache-2.0
//
// The descriptions of result codes that are compiled into the library: none are shipped.
#include "profile/error_text.h"

namespace lumoxa {

std::span<const ErrorText> compiledErrorTexts() {
    return {};
}

}  // namespace lumoxa
