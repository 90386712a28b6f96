// SPDX-License-Identifier: Apache-2.0
#include "tools/images/progress_bar.h"

#include <cstdio>
#include <string>

#include <unistd.h>

#include "tools/interrupt.h"

namespace lumoxa_tool {
namespace {

constexpr int kBarWidth = 40;

void stopWhenInterrupted(VipsImage* image, VipsProgress*, void*) {
    if (interrupted()) vips_image_set_kill(image, TRUE);
}

void drawBar(VipsImage* image, VipsProgress* progress, void*) {
    // Called for every strip: draw again only what has changed.
    constexpr const char* kShown = "lumoxa-percent-shown";
    const gpointer shown = GINT_TO_POINTER(progress->percent + 1);
    if (g_object_get_data(G_OBJECT(image), kShown) == shown) return;
    g_object_set_data(G_OBJECT(image), kShown, shown);
    const auto filled = static_cast<size_t>(progress->percent * kBarWidth / 100);
    const std::string bar = std::string(filled, '=') + std::string(kBarWidth - filled, ' ');
    std::fprintf(stderr, "\r[%s] %3d %%, %d s left ", bar.c_str(), progress->percent,
                 progress->eta);
    std::fflush(stderr);
}

void clearBar(VipsImage*, VipsProgress*, void*) {
    std::fprintf(stderr, "\r%*s\r", kBarWidth + 30, "");
    std::fflush(stderr);
}

void connect(VipsImage* image, const char* signal,
             void (*callback)(VipsImage*, VipsProgress*, void*)) {
    g_signal_connect(image, signal, reinterpret_cast<GCallback>(callback), nullptr);
}

}  // namespace

void followProgress(VipsImage* image, bool quiet) {
    vips_image_set_progress(image, TRUE);
    connect(image, "eval", stopWhenInterrupted);
    if (quiet || isatty(STDERR_FILENO) == 0) return;
    connect(image, "preeval", drawBar);
    connect(image, "eval", drawBar);
    connect(image, "posteval", clearBar);
}

}  // namespace lumoxa_tool
