// SPDX-License-Identifier: Apache-2.0
#include "tools/image_commands.h"

#include "tools/tool_error.h"

#if defined(LUMOXA_TOOL_MODULE)
#include <dlfcn.h>
#endif

namespace lumoxa_tool {

#if defined(LUMOXA_TOOL_MODULE)
int convertImage(const ConvertArguments& arguments) {
    // Found in the program's own search path, and never unloaded: libvips has threads.
    void* const module = dlopen(LUMOXA_TOOL_MODULE, RTLD_NOW | RTLD_LOCAL);
    void* const entry = module == nullptr ? nullptr : dlsym(module, "lumoxaConvertImage");
    if (entry == nullptr) {
        throw InputError(
            std::string("the part that reads images can't be loaded (") + dlerror() + ")",
            "install the tool and libvips anew");
    }
    return reinterpret_cast<decltype(&lumoxaConvertImage)>(entry)(&arguments);
}
#else
int convertImage(const ConvertArguments&) {
    throw UsageError("convert: this lumoxa was built without pictures; take one with libvips");
}
#endif

}  // namespace lumoxa_tool
