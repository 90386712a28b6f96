// SPDX-License-Identifier: Apache-2.0
//
// Whether a text is JSON (RFC 8259), and the same text without blanks between its members.
#pragma once

#include <cctype>
#include <cstring>
#include <string>

#include "base/utf8.h"

namespace lumoxa_test {

class JsonCheck {
  public:
    explicit JsonCheck(const std::string& text) : at_(text.c_str()) {}

    bool isJson() {
        if (!value()) return false;
        skip();
        return *at_ == '\0';
    }

  private:
    void skip() { at_ += std::strspn(at_, " \n"); }
    bool take(char wanted) {
        skip();
        if (*at_ != wanted) return false;
        ++at_;
        return true;
    }
    bool word(const char* text) {
        if (std::strncmp(at_, text, std::strlen(text)) != 0) return false;
        at_ += std::strlen(text);
        return true;
    }
    bool string() {
        if (!take('"')) return false;
        for (; *at_ != '"'; ++at_) {
            if (static_cast<unsigned char>(*at_) < 0x20) return false;
            if (*at_ == '\\' && std::strchr("\"\\/bfnrtu", *++at_) == nullptr) return false;
        }
        ++at_;
        return true;
    }
    bool number() {
        const char* const start = at_;
        at_ += std::strspn(at_, "+-.0123456789eE");
        return at_ != start;
    }
    template <class Member>
    bool list(char end, Member member) {
        ++at_;
        if (take(end)) return true;
        do {
            if (!member()) return false;
        } while (take(','));
        return take(end);
    }
    bool value() {
        skip();
        if (*at_ == '{') return list('}', [this] { return string() && take(':') && value(); });
        if (*at_ == '[') return list(']', [this] { return value(); });
        if (*at_ == '"') return string();
        return word("true") || word("false") || word("null") || number();
    }

    const char* at_;
};

inline bool isJson(const std::string& text) {
    return lumoxa::isUtf8(text) && JsonCheck(text).isJson();
}

/// Without line breaks and what indents them, so that members can be looked for.
inline std::string onOneLine(const std::string& json) {
    std::string line;
    for (size_t i = 0; i < json.size(); ++i) {
        if (json[i] != '\n') {
            line += json[i];
            continue;
        }
        while (json[i + 1] == ' ')
            ++i;
    }
    return line;
}

}  // namespace lumoxa_test
