// SPDX-License-Identifier: Apache-2.0
#include "lut/row_kernels_body.h"
