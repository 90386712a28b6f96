// SPDX-License-Identifier: Apache-2.0
//
// Compiled for AVX2 (CMakeLists.txt); elsewhere this file is empty.
#if defined(__AVX2__)
#define LUMOXA_FORM_AVX2
#include "convert/shaper_kernels_body.h"
#endif
