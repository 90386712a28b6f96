// SPDX-License-Identifier: Apache-2.0
#include "tools/tool_error.h"

#include <iostream>

namespace lumoxa_tool {

void printMessage(const std::string& text) {
    std::string line;
    for (const char character : text) {
        if (character == '\n') {
            line += "; ";
        } else {
            line += static_cast<unsigned char>(character) < 0x20 ? ' ' : character;
        }
    }
    while (!line.empty() && (line.back() == ' ' || line.back() == ';'))
        line.pop_back();
    std::cerr << "lumoxa: " << line << std::endl;
}

}  // namespace lumoxa_tool
