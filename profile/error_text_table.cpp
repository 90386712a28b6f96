// SPDX-License-Identifier: Apache-2.0
//
// Descriptions of result codes compiled into the library, where it has no module with a string
// table: everywhere but in the Windows DLL.
#if !defined(_WIN32) || defined(LUMOXA_STATIC)

#include <algorithm>
#include <cstring>

#include "profile/error_text.h"

namespace lumoxa {

int lookUpErrorText(int code, char* text, int size) {
    const auto texts = compiledErrorTexts();
    const auto entry = std::find_if(texts.begin(), texts.end(),
                                    [code](const ErrorText& e) { return e.code == code; });
    if (entry == texts.end() || size < 1) return 0;
    const size_t length = std::min(entry->text.size(), static_cast<size_t>(size) - 1);
    std::memcpy(text, entry->text.data(), length);
    text[length] = '\0';
    return static_cast<int>(length);
}

}  // namespace lumoxa

#endif
