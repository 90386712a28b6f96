// SPDX-License-Identifier: Apache-2.0
//
// What the library's result codes mean to somebody who holds a faulty file.
#pragma once

#include <string>

namespace lumoxa_tool {

/// The fault of a tag or a profile as the end of a sentence that names it, with the code:
/// "holds fewer bytes than it declares (512)".
std::string faultText(int code);

}  // namespace lumoxa_tool
