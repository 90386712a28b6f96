// SPDX-License-Identifier: Apache-2.0
#include "tools/tool_error.h"

#include <iostream>
#include <new>

#include "tools/interrupt.h"

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

int exitCodeOf(const std::function<int()>& work) {
    try {
        return work();
    } catch (const UsageError& error) {
        printMessage(error.what());
        return kUsage;
    } catch (const Interrupted&) {
        dieOfInterrupt();
    } catch (const std::bad_alloc&) {
        printMessage("not enough memory");
    } catch (const std::exception& error) {
        printMessage(error.what());
    }
    return kInputAtFault;
}

}  // namespace lumoxa_tool
