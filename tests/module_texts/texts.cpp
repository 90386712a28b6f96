// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "profile/error_text.h"

namespace lumoxa {

std::span<const ErrorText> compiledErrorTexts() {
#define TEXT_OF(code, text) ErrorText{code, text},
    static constexpr std::array kTexts = {
#include "texts.inc"
    };
    return kTexts;
}

}  // namespace lumoxa
