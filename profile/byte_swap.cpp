// SPDX-License-Identifier: Apache-2.0
//
// The byte reversals for callers that convert fields of tag data themselves.
#include "base/byte_order.h"
#include "lumoxa/profile.h"

using namespace lumoxa;

namespace {

template <class T>
void reverseArray(void* at, int n) {
    if (at != nullptr && n > 0) reverseInPlace<T>(at, static_cast<size_t>(n));
}

}  // namespace

void icSwap2(void* at) {
    reverseArray<uint16_t>(at, 1);
}

void icSwap4(void* at) {
    reverseArray<uint32_t>(at, 1);
}

void icSwap2Array(void* at, int n) {
    reverseArray<uint16_t>(at, n);
}

void icSwap4Array(void* at, int n) {
    reverseArray<uint32_t>(at, n);
}
