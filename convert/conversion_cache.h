// SPDX-License-Identifier: Apache-2.0
//
// Ready conversions that were asked for before. A hit costs a comparison of the profiles' bytes,
// where making a table costs milliseconds.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <mutex>

#include "convert/conversion.h"

namespace lumoxa::engine {

/// Any number of threads may use one at once. Two that miss the same conversion both make it; the
/// first that is ready stays.
class ConversionCache {
  public:
    /// @param capacity  conversions kept, at least 1: the least recently used go
    explicit ConversionCache(size_t capacity) : capacity_(capacity) {}

    /// The conversion of a request, equal by content. @throws FaultError, std::bad_alloc as
    /// ReadyConversion; nothing is kept then.
    std::shared_ptr<const ReadyConversion> get(ConversionRequest request);

  private:
    struct Entry {
        ConversionRequest request;
        std::shared_ptr<const ReadyConversion> conversion;
    };

    std::shared_ptr<const ReadyConversion> find(const ConversionRequest& request);

    size_t capacity_;
    std::mutex mutex_;
    std::list<Entry> entries_;  // the most recently used first
};

}  // namespace lumoxa::engine
