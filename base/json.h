// SPDX-License-Identifier: Apache-2.0
//
// A writer of JSON text (RFC 8259), the same everywhere: members in the order written, two spaces
// a level, numbers without regard to the locale.
//
//     const std::string text = jsonObject([&](JsonObject& report) {
//         report.add("plan", "table");
//         report.array("grid", [&](JsonArray& grid) {
//             for (const int points : {33, 33, 33})
//                 grid.add(points);
//         });
//         report.object("error", [&](JsonObject& error) { error.add("mean", 0.05); });
//     });
//
// An object takes named values and an array nameless ones, and each closes with its function. Only
// what is open innermost may be written to, which debug builds assert; keys are not compared.
#pragma once

#include <cassert>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace lumoxa {

/// The text as far as it is written, shared by the objects and arrays that are open.
class JsonText {
  public:
    void open(char bracket);
    void close(char bracket);
    /// Whatever comes before a member: comma, line break, indentation.
    void beginMember();
    void key(std::string_view name);

    /// UTF-8; each byte of what is not becomes U+FFFD.
    void value(std::string_view text);
    void value(const char* text) { value(std::string_view(text)); }
    void value(bool truth) { text_ += truth ? "true" : "false"; }
    void value(std::nullptr_t) { text_ += "null"; }
    /// Six significant digits, without trailing zeros; null for what is no finite number.
    void value(double number);
    template <std::integral T>
    requires(!std::same_as<T, bool> && !std::same_as<T, char>) void value(T number) {
        text_ += std::to_string(number);
    }

    int depth() const { return depth_; }
    std::string take() { return std::move(text_); }

  private:
    std::string text_;
    int depth_ = 0;
    bool isFirst_ = true;  // in what is open innermost
};

class JsonArray;

/// An object that is open.
class JsonObject {
  public:
    explicit JsonObject(JsonText& text) : text_(text), depth_(text.depth()) {}

    template <class T>
    void add(std::string_view name, const T& value) {
        begin(name);
        text_.value(value);
    }
    template <class Fill>
    void object(std::string_view name, Fill fill);
    template <class Fill>
    void array(std::string_view name, Fill fill);

  private:
    void begin(std::string_view name) {
        assert(text_.depth() == depth_ && "what is open inside has to close first");
        text_.beginMember();
        text_.key(name);
    }

    JsonText& text_;
    int depth_;
};

/// An array that is open.
class JsonArray {
  public:
    explicit JsonArray(JsonText& text) : text_(text), depth_(text.depth()) {}

    template <class T>
    void add(const T& value) {
        begin();
        text_.value(value);
    }
    template <class Fill>
    void object(Fill fill);
    template <class Fill>
    void array(Fill fill);

  private:
    void begin() {
        assert(text_.depth() == depth_ && "what is open inside has to close first");
        text_.beginMember();
    }

    JsonText& text_;
    int depth_;
};

namespace json_detail {

template <class Fill>
void writeObject(JsonText& text, Fill fill) {
    text.open('{');
    JsonObject object(text);
    fill(object);
    text.close('}');
}

template <class Fill>
void writeArray(JsonText& text, Fill fill) {
    text.open('[');
    JsonArray array(text);
    fill(array);
    text.close(']');
}

}  // namespace json_detail

template <class Fill>
void JsonObject::object(std::string_view name, Fill fill) {
    begin(name);
    json_detail::writeObject(text_, fill);
}

template <class Fill>
void JsonObject::array(std::string_view name, Fill fill) {
    begin(name);
    json_detail::writeArray(text_, fill);
}

template <class Fill>
void JsonArray::object(Fill fill) {
    begin();
    json_detail::writeObject(text_, fill);
}

template <class Fill>
void JsonArray::array(Fill fill) {
    begin();
    json_detail::writeArray(text_, fill);
}

/// The text of an object that `fill(JsonObject&)` writes.
template <class Fill>
std::string jsonObject(Fill fill) {
    JsonText text;
    json_detail::writeObject(text, fill);
    return text.take();
}

/// The text of an array that `fill(JsonArray&)` writes.
template <class Fill>
std::string jsonArray(Fill fill) {
    JsonText text;
    json_detail::writeArray(text, fill);
    return text.take();
}

}  // namespace lumoxa
