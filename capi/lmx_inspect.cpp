// SPDX-License-Identifier: Apache-2.0
//
// Facts and faults of profiles for C.
#include "capi/fault_guard.h"
#include "capi/handles.h"
#include "inspect/inspect.h"

using namespace lumoxa;

int32_t lmx_inspect(const void* bytes, uint64_t size, char** json, lmx_fault* fault) {
    if (json != nullptr) *json = nullptr;
    return faultGuarded(fault, [&] {
        requireArgument(bytes, "the address of the bytes");
        requireArgument(json, "the address of the text");
        const auto* const first = static_cast<const uint8_t*>(bytes);
        *json = handedOut(inspection::inspectProfile({first, static_cast<size_t>(size)}));
        return LMX_SUCCESS;
    });
}
