// SPDX-License-Identifier: Apache-2.0
//
// Compiled for AVX2, with LUMOXA_FORM_AVX2, where processors may have it (CMakeLists.txt).
#include "lut/row_kernels_body.h"
