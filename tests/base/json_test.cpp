// SPDX-License-Identifier: Apache-2.0
#include "base/json.h"

#include <limits>

#include <gtest/gtest.h>

namespace {

using namespace lumoxa;

template <class T>
std::string written(const T& value) {
    JsonText text;
    text.value(value);
    return text.take();
}

TEST(Json, IndentsNestedObjectsAndArrays) {
    const std::string text = jsonObject([](JsonObject& report) {
        report.add("plan", "table");
        report.array("grid", [](JsonArray& grid) {
            grid.add(33);
            grid.object([](JsonObject& inner) { inner.add("b", true); });
            grid.array([](JsonArray&) {});
        });
        report.object("error", [](JsonObject&) {});
        report.add("last", nullptr);
    });
    EXPECT_EQ(text,
              "{\n"
              "  \"plan\": \"table\",\n"
              "  \"grid\": [\n"
              "    33,\n"
              "    {\n"
              "      \"b\": true\n"
              "    },\n"
              "    []\n"
              "  ],\n"
              "  \"error\": {},\n"
              "  \"last\": null\n"
              "}");
}

TEST(Json, WritesAnArrayAtTheTop) {
    EXPECT_EQ(jsonArray([](JsonArray&) {}), "[]");
    EXPECT_EQ(jsonArray([](JsonArray& a) { a.add(std::string("x")); }), "[\n  \"x\"\n]");
}

TEST(Json, EscapesStrings) {
    using namespace std::string_view_literals;
    EXPECT_EQ(written("a\"b\\c/"), R"("a\"b\\c/")");
    EXPECT_EQ(written("\n\t\r\x01\x1F\0."sv), R"("\n\t\u000d\u0001\u001f\u0000.")");
    EXPECT_EQ(written("\xC3\xA9\xF0\x9F\x8E\xA8"), "\"\xC3\xA9\xF0\x9F\x8E\xA8\"");
    EXPECT_EQ(written("\xE9."), "\"\xEF\xBF\xBD.\"");
    EXPECT_EQ(jsonObject([](JsonObject& o) { o.add("a\"", 1); }), "{\n  \"a\\\"\": 1\n}");
}

TEST(Json, WritesIntegersWhole) {
    EXPECT_EQ(written(std::numeric_limits<int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(written(std::numeric_limits<uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(written(uint8_t{65}), "65");
    EXPECT_EQ(written(false), "false");
}

TEST(Json, WritesNumbersToSixDigits) {
    EXPECT_EQ(written(0.0), "0");
    EXPECT_EQ(written(0.05), "0.05");
    EXPECT_EQ(written(1.0f), "1");
    EXPECT_EQ(written(1.0 / 3), "0.333333");
    EXPECT_EQ(written(-1234567.0), "-1.23457e+06");
    EXPECT_EQ(written(2.5e-7), "2.5e-07");
    EXPECT_EQ(written(-std::numeric_limits<double>::max()), "-1.79769e+308");
    EXPECT_EQ(written(std::numeric_limits<double>::denorm_min()), "4.94066e-324");
}

TEST(Json, WritesNullForWhatIsNoFiniteNumber) {
    EXPECT_EQ(written(std::numeric_limits<double>::quiet_NaN()), "null");
    EXPECT_EQ(written(-std::numeric_limits<double>::infinity()), "null");
}

}  // namespace
