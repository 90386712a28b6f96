// SPDX-License-Identifier: Apache-2.0
#include "profile/stream_position.h"

#if !defined(_WIN32)
#include <sys/types.h>
#endif

namespace lumoxa {
namespace {

#if defined(_WIN32)
int seek(FILE* stream, int64_t offset, int origin) {
    return _fseeki64(stream, offset, origin);
}
int64_t tell(FILE* stream) {
    return _ftelli64(stream);
}
#else
static_assert(sizeof(off_t) == 8, "offsets of 2 GiB and more must be expressible");
int seek(FILE* stream, int64_t offset, int origin) {
    return fseeko(stream, offset, origin);
}
int64_t tell(FILE* stream) {
    return ftello(stream);
}
#endif

}  // namespace

bool seekFromStart(FILE* stream, int64_t offset) {
    return offset >= 0 && seek(stream, offset, SEEK_SET) == 0;
}

std::optional<uint64_t> streamLength(FILE* stream) {
    const int64_t position = tell(stream);
    if (position < 0 || seek(stream, 0, SEEK_END) != 0) return std::nullopt;
    const int64_t length = tell(stream);
    if (!seekFromStart(stream, position) || length < 0) return std::nullopt;
    return static_cast<uint64_t>(length);
}

}  // namespace lumoxa
