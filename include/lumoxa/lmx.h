// SPDX-License-Identifier: Apache-2.0
//
// The interface for C, and for languages that call C: profiles, conversions, device links. It
// compiles alone as C99 or later and as C++17.
//
// The functions of lmx_transform.h hand their arguments to one or a few `ic` functions and add
// nothing to what they do. A program in C++ may use both on one object: the handles are the same.
//
// Calls have the C calling convention of the platform. Numbers and records have fixed sizes, the
// same for every compiler of a 64-bit machine: no bool, no long, no enumerations. Texts are bytes
// that end in NUL.
//
// Result codes: LMX_SUCCESS (0) or one of the LMX_ERR_ codes below. A null handle, record or buffer
// gives a code and does no harm; a handle that has been released, or one of another type, does.
// Nothing is thrown.
//
// Threads: there is no state between calls and no start-up. Any number of threads may convert
// through one transform at once, or read one profile that is held in memory. Editing a profile, and
// taking and dropping holders of a transform, belong to one thread at a time.
#pragma once

#include "lumoxa/lmx_base.h"
#include "lumoxa/lmx_conversion.h"
#include "lumoxa/lmx_make.h"
#include "lumoxa/lmx_profile.h"
#include "lumoxa/lmx_transform.h"
