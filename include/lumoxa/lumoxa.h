// SPDX-License-Identifier: Apache-2.0
//
// Lumoxa: reads ICC profiles, builds and chains colour transforms, converts pixels.
// This header brings in all `ic` functions; C++17 or later, nothing else to include. Conversions
// that are right by default are in lumoxa.hpp, what other languages call is in lmx.h.
#pragma once

#include "lumoxa/combine.h"
#include "lumoxa/evaluate.h"
#include "lumoxa/export.h"
#include "lumoxa/frame.h"
#include "lumoxa/gray.h"
#include "lumoxa/profile.h"
#include "lumoxa/tags.h"
#include "lumoxa/types.h"
#include "lumoxa/xform.h"
