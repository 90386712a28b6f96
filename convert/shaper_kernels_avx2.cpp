// SPDX-License-Identifier: Apache-2.0
//
// Compiled for AVX2, with LUMOXA_FORM_AVX2, where processors may have it (CMakeLists.txt).
#include "convert/shaper_kernels_body.h"
