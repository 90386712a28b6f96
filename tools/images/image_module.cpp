// SPDX-License-Identifier: Apache-2.0
//
// Entry of the module with all that needs libvips. Loading libvips with its hundred libraries takes
// longer than converting a colour, so only `convert` does it.
#include "tools/exit_code.h"
#include "tools/image_commands.h"
#include "tools/images/convert_command.h"
#include "tools/images/vips_handle.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

void ignoreLog(const char*, GLogLevelFlags, const char*, void*) {}

// Codecs warn of trifles in several lines; what matters comes back as an error.
void startVips() {
    if (VIPS_INIT("lumoxa") != 0)
        throw InputError("libvips does not start: " + std::string(vips_error_buffer()));
    g_log_set_handler("VIPS", static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK), ignoreLog, nullptr);
    vips_cache_set_max(0);  // one image, one pass: nothing comes again
}

}  // namespace
}  // namespace lumoxa_tool

int lumoxaConvertImage(const lumoxa_tool::ConvertArguments* arguments) {
    const int code = lumoxa_tool::exitCodeOf([=] {
        lumoxa_tool::startVips();
        lumoxa_tool::runConvert(*arguments);
        return lumoxa_tool::kSuccess;
    });
    vips_shutdown();
    return code;
}
