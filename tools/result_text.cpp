// SPDX-License-Identifier: Apache-2.0
#include "tools/result_text.h"

#include "lumoxa/types.h"

namespace lumoxa_tool {
namespace {

struct Fault {
    int code;
    const char* text;
};

constexpr Fault kFaults[] = {
    {icErrInvalid, "is not a valid ICC profile or does not allow this request"},
    {icErrTagType,
     "has the wrong type or impossible counts (channels, grid points, curve entries)"},
    {icErrTextType, "holds text of an unknown type"},
    {icErrXformKind, "asks for a conversion that is not available"},
    {icErrOpen, "can't be opened for reading"},
    {icErrRead, "holds fewer bytes than it declares"},
    {icErrWrite, "can't be written whole"},
    {icErrNoMemory, "needs more memory than there is"},
    {icErrNoTag, "is missing"},
    {icErrNullData, "holds no bytes"},
    {icErrProfilesDiffer, "differs"},
};

}  // namespace

std::string faultText(int code) {
    const std::string number = " (" + std::to_string(code) + ")";
    for (const Fault& fault : kFaults) {
        if (fault.code == code) return fault.text + number;
    }
    return "failed for an unknown reason" + number;
}

}  // namespace lumoxa_tool
