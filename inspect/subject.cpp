// SPDX-License-Identifier: Apache-2.0
#include "inspect/subject.h"

namespace lumoxa::inspection {
namespace {

// What the loader demands beyond the view of a conversion.
void requireLoadable(const engine::ProfileView& view) {
    const std::vector<uint8_t>& bytes = view.bytes();
    if (view.tagCount() == 0) {
        view.fail(icErrNoMemory, 0, kTagCountOffset, "has an empty tag table");
    }
    const TagListPtr entries = readTagEntries(bytes.data(), static_cast<uint32_t>(view.tagCount()));
    if (!tagsFit(*entries, bytes.size())) {
        view.fail(icErrRead, 0, -1, "has tags that together are far larger than its file");
    }
}

}  // namespace

Subject::Subject(std::span<const uint8_t> bytes)
    : image_(std::make_shared<const std::vector<uint8_t>>(bytes.begin(), bytes.end())),
      file_(ByteView(*image_)) {
    fault_ = faultIn([&] { view_ = std::make_unique<const engine::ProfileView>(image_, 0); });
    if (view_ != nullptr) fault_ = faultIn([&] { requireLoadable(*view_); });
}

Fault Subject::faultOf(const FaultError& error) const {
    Fault fault = error.fault();
    const std::string prefix = (view_ != nullptr ? view_->name() : "profile 1") + ": ";
    if (fault.sentence.rfind(prefix, 0) == 0) fault.sentence.erase(0, prefix.size());
    return fault;
}

}  // namespace lumoxa::inspection
