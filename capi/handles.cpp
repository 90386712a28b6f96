// SPDX-License-Identifier: Apache-2.0
#include "capi/handles.h"

#include <memory>
#include <utility>

#include "base/fault.h"
#include "convert/profile_view.h"
#include "lumoxa/lumoxa.h"
#include "profile/tag_table.h"

namespace lumoxa {

lmx_profile* profileOf(std::vector<uint8_t> bytes) {
    const auto image = std::make_shared<const std::vector<uint8_t>>(std::move(bytes));
    constexpr int kNoChain = -1;
    const engine::ProfileView view(image, kNoChain);  // says in words what is wrong
    lmx_profile* handle = nullptr;
    const int code = icProfileLoadFromBuffer(nullptr, image->data(), image->size(), &handle);
    ProfilePtr owner(const_cast<icProfileInternal*>(handle));
    if (code == icErrRead) {
        view.fail(icErrRead, 0, -1, "has tags that together are far larger than its file");
    }
    if (code == icErrNoMemory && !image->empty() && view.header().magic == kMagic &&
        view.tagCount() == 0) {
        view.fail(icErrNoMemory, 0, kTagCountOffset, "has an empty tag table");
    }
    if (code == icErrNoMemory) throw std::bad_alloc();
    if (code != icSuccess) view.fail(code, 0, -1, "can't be loaded");
    keepImage(*owner, image);
    return owner.release();
}

const icProfileInternal& requireProfile(lmx_profile* profile) {
    if (const icProfileInternal* valid = validProfile(profile)) return *valid;
    throw FaultError(LMX_ERR_INVALID, profile == nullptr ? "the profile is null"
                                                         : "the handle is that of no profile");
}

}  // namespace lumoxa
