// SPDX-License-Identifier: Apache-2.0
//
// Invariant: no two entries have equal requests; at most capacity_ entries.
#include "convert/conversion_cache.h"

#include <algorithm>
#include <utility>

namespace lumoxa::engine {
namespace {

bool same(const ProfileImage& a, const ProfileImage& b) {
    return a == b || (a != nullptr && b != nullptr && *a == *b);
}

bool same(const ConversionRequest& a, const ConversionRequest& b) {
    return a.intents == b.intents && a.options == b.options && a.exact == b.exact &&
           a.proofIntent == b.proofIntent && same(a.proof, b.proof) &&
           std::equal(a.profiles.begin(), a.profiles.end(), b.profiles.begin(), b.profiles.end(),
                      [](const ProfileImage& x, const ProfileImage& y) { return same(x, y); });
}

}  // namespace

/// Moves what it finds to the front; null for nothing. The caller holds the lock.
std::shared_ptr<const ReadyConversion> ConversionCache::find(const ConversionRequest& request) {
    const auto at = std::find_if(entries_.begin(), entries_.end(),
                                 [&](const Entry& entry) { return same(entry.request, request); });
    if (at == entries_.end()) return nullptr;
    entries_.splice(entries_.begin(), entries_, at);
    return at->conversion;
}

std::shared_ptr<const ReadyConversion> ConversionCache::get(ConversionRequest request) {
    {
        const std::lock_guard lock(mutex_);
        if (auto found = find(request)) return found;
    }
    auto made = std::make_shared<const ReadyConversion>(request);
    const std::lock_guard lock(mutex_);
    if (auto found = find(request)) return found;
    entries_.push_front({std::move(request), made});
    if (entries_.size() > capacity_) entries_.pop_back();
    return made;
}

}  // namespace lumoxa::engine
