// SPDX-License-Identifier: Apache-2.0
//
// Symbol visibility of the public interface: LUMOXA_API marks what the library exports, and
// nothing else leaves it.
#pragma once

#if defined(LUMOXA_STATIC)
#define LUMOXA_API
#elif defined(_WIN32)
#if defined(LUMOXA_BUILDING)
#define LUMOXA_API __declspec(dllexport)
#else
#define LUMOXA_API __declspec(dllimport)
#endif
#else
#define LUMOXA_API __attribute__((visibility("default")))
#endif
