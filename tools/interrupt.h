// SPDX-License-Identifier: Apache-2.0
//
// Ctrl-C, termination and a closed terminal: noted by a handler, acted on where the tool can clean
// up.
#pragma once

namespace lumoxa_tool {

/// Starts noting SIGINT, SIGTERM and SIGHUP, or on Windows SIGBREAK, instead of dying of them.
/// Reads that wait go on waiting, so this is for work that comes back to interrupted() by itself. A
/// signal that the parent has switched off stays off.
void watchForInterrupt();

/// Whether a signal has come; safe on any thread.
bool interrupted();

/// @throws Interrupted when a signal has come
void throwIfInterrupted();

/// Ends the process with the signal that came, on Windows with the exit code of Ctrl-C, so that
/// shells and scripts see what it died of.
[[noreturn]] void dieOfInterrupt();

}  // namespace lumoxa_tool
