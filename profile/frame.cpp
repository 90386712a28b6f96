// SPDX-License-Identifier: Apache-2.0
#include "lumoxa/frame.h"

#include <cstdlib>

#include "base/byte_order.h"
#include "profile/error_text.h"

using namespace lumoxa;

int icInitialize(icCallerId_t*, icProgressCallback, void*) {
    return icSuccess;
}

int icTerminate(icCallerId_t*) {
    return icSuccess;
}

int icInitThread(icCallerId_t, icProgressCallback, void*) {
    return icSuccess;
}

int icTermThread(icCallerId_t) {
    return icSuccess;
}

int icGetErrorText(int code, int size, char* buffer) {
    return formatErrorText(code, size, buffer);
}

int icGetInfo(icDBInfo_s* info, int size) {
    if (size < static_cast<int>(sizeof(icDBInfo_s))) return icErrBufferSize;
    if (info == nullptr) return icErrInvalid;
    *info = icDBInfo_s{LUMOXA_VERSION, "1.0", 0};
    return icSuccess;
}

void icFree(void* block) {
    std::free(block);
}

int icIsBigEndian() {
    return hostIsBigEndian ? 1 : 0;
}
