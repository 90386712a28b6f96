// SPDX-License-Identifier: Apache-2.0
#include "tools/exit_code.h"

#include <new>

#include "tools/interrupt.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {

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
