// SPDX-License-Identifier: Apache-2.0
#include "convert/shaper_kernels_body.h"
