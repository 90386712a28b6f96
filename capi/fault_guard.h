// SPDX-License-Identifier: Apache-2.0
//
// Where the exceptions of the accurate engine end: each becomes a result code and, where the caller
// wants one, a fault record.
#pragma once

#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/fault.h"
#include "lumoxa/lmx.h"

namespace lumoxa {

/// Writes a fault into the caller's record, as much of the sentence as fits, cut between
/// characters.
void report(const Fault& fault, lmx_fault* out) noexcept;

/// The same for a failure without a place. Nothing is allocated, so that it can tell of no memory.
void report(int32_t code, std::string_view sentence, lmx_fault* out) noexcept;

/// Runs `body`, which returns a result code, and turns what it throws into one.
template <class Body>
int32_t faultGuarded(lmx_fault* out, Body&& body) noexcept {
    constexpr const char* kNoMemory = "there is not enough memory";
    try {
        return body();
    } catch (const FaultError& error) {
        report(error.fault(), out);
        return error.fault().code;
    } catch (const std::bad_alloc&) {
        report(LMX_ERR_NO_MEMORY, kNoMemory, out);
        return LMX_ERR_NO_MEMORY;
    } catch (const std::length_error&) {  // more than a container can ever hold
        report(LMX_ERR_NO_MEMORY, kNoMemory, out);
        return LMX_ERR_NO_MEMORY;
    } catch (const std::exception& error) {
        report(LMX_ERR_INVALID, error.what(), out);
        return LMX_ERR_INVALID;
    }
}

/// @throws FaultError for a null pointer
inline void requireArgument(const void* argument, const char* name) {
    if (argument == nullptr) throw FaultError(LMX_ERR_INVALID, std::string(name) + " is null");
}

/// A record of the caller whose size says that it is the one known here.
/// @throws FaultError for another size
template <class Record>
Record copiedRecord(const Record& record, const char* name) {
    if (record.size != sizeof(Record)) {
        throw FaultError(LMX_ERR_INVALID,
                         std::string(name) + " has size " + std::to_string(record.size) + ", not " +
                             std::to_string(sizeof(Record)) + " as this library knows it");
    }
    return record;
}

}  // namespace lumoxa
