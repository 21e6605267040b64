#include "base/Json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quorl::test {
namespace {

using namespace std::string_literals;
using Written = std::optional<std::string>;

// What is written of what was read.
Written rewritten(std::string_view text) {
    const auto value = Json::parse(text);
    return value ? Json::write(*value) : std::nullopt;
}

std::string nested(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

Json::Value parsed(std::string_view text) {
    return Json::parse(text).value();
}

TEST(JsonParse, ReadsEveryKindOfValue) {
    EXPECT_EQ(rewritten(" { \"b\" : [ 1 , -2.5, true, null ], \"a\" : \"x\" } "),
              R"({"a":"x","b":[1,-2.5,true,null]})");
    EXPECT_EQ(rewritten("\"alone\""), "\"alone\"");
    EXPECT_EQ(rewritten("12"), "12");
}

TEST(JsonParse, RefusesWhatIsNotJSON) {
    for (const std::string& text :
         {""s,     " "s,        "{"s,       "[1,]"s,      "{\"a\":1,}"s, "{'a':1}"s,   "{a:1}"s,  "nul"s,
          "True"s, "[1] x"s,    "[1][2]"s,  "01"s,        "1."s,         ".5"s,        "+1"s,     "0x10"s,
          "NaN"s,  "Infinity"s, "// c\n1"s, "/* c */ 1"s, "\"a\nb\""s,   "\"\\x41\""s, "\"open"s, "]"s})
        EXPECT_EQ(rewritten(text), std::nullopt) << text;
}

TEST(JsonParse, RefusesZeroBytesWherever) {
    EXPECT_EQ(rewritten("{}\0"s), std::nullopt);
    EXPECT_EQ(rewritten("{}\0garbage"s), std::nullopt);
    EXPECT_EQ(rewritten("\0{}"s), std::nullopt);
    EXPECT_EQ(rewritten("\"a\0b\""s), std::nullopt);
    EXPECT_EQ(parsed(R"("a\u0000b")"), Json::Value("a\0b"s));
}

TEST(JsonParse, RefusesBytesThatAreNotUTF8) {
    EXPECT_EQ(rewritten("\"\xFF\""), std::nullopt);
    EXPECT_EQ(rewritten("\"\xC3\""), std::nullopt);
    EXPECT_EQ(rewritten("\"\xED\xA0\x80\""), std::nullopt);
    EXPECT_EQ(rewritten("[1]\xFF"), std::nullopt);
}

TEST(JsonParse, ReadsSurrogatesOnlyInPairs) {
    EXPECT_EQ(parsed(R"("\ud83d\ude80")"), Json::Value("\U0001F680"));
    EXPECT_EQ(rewritten(R"("\ud83d")"), std::nullopt);
    EXPECT_EQ(rewritten(R"("\ude80")"), std::nullopt);
    EXPECT_EQ(rewritten(R"("\ud83dx")"), std::nullopt);
    EXPECT_EQ(rewritten(R"("\ude80\ud83d")"), std::nullopt);
}

TEST(JsonParse, ReadsDownTo512Levels) {
    EXPECT_TRUE(Json::parse(nested(512)));
    EXPECT_FALSE(Json::parse(nested(513)));
    EXPECT_FALSE(Json::parse(std::string(5'000'000, '[')));

    std::string objects;
    for (int depth = 0; depth < 513; ++depth)
        objects += "{\"a\":";
    EXPECT_FALSE(Json::parse(objects + "1" + std::string(513, '}')));
    EXPECT_TRUE(Json::parse(objects.substr(5) + "1" + std::string(512, '}')));
}

TEST(JsonParse, BracketsInTextsAndSideBySideAreNoLevels) {
    EXPECT_TRUE(Json::parse("\"" + std::string(2000, '[') + "\""));
    EXPECT_TRUE(Json::parse("\"\\\"" + std::string(2000, '{') + "\""));
    EXPECT_FALSE(Json::parse("[\"\\\\\"," + nested(512) + "]"));
    std::string many = "[";
    for (int number = 0; number < 2000; ++number)
        many += "[],";
    EXPECT_TRUE(Json::parse(many + "[]]"));
}

TEST(JsonParse, OfAKeyThatStandsTwiceTheLastValueCounts) {
    EXPECT_EQ(rewritten(R"({"a":1,"b":2,"a":{"c":3}})"), R"({"a":{"c":3},"b":2})");
}

TEST(JsonParse, KeepsTheKeysThatLookAlikeApart) {
    EXPECT_EQ(parsed("{\"\u00E9\":1,\"e\u0301\":2,\"\":3}").size(), 3u);
}

TEST(JsonParse, ReadsNumbersOfAnySize) {
    EXPECT_EQ(rewritten("9223372036854775807"), "9223372036854775807");
    EXPECT_EQ(rewritten("-9223372036854775808"), "-9223372036854775808");
    EXPECT_EQ(rewritten("18446744073709551615"), "18446744073709551615");
    EXPECT_EQ(parsed("18446744073709551616"), Json::Value(18446744073709551616.0));
    EXPECT_EQ(parsed("1e-400"), Json::Value(0.0));
    EXPECT_EQ(rewritten("1e400"), std::nullopt);
    EXPECT_EQ(rewritten("0.1"), "0.1");
}

TEST(JsonParse, ReadsBigTexts) {
    const std::string text(20'000'000, 'x');

    EXPECT_EQ(parsed("\"" + text + "\""), Json::Value(text));
}

TEST(JsonParseObject, TakesObjectsAlone) {
    EXPECT_EQ(Json::parseObject("{\"a\":1}"), parsed("{\"a\":1}"));
    EXPECT_EQ(Json::parseObject("[]"), std::nullopt);
    EXPECT_EQ(Json::parseObject("1"), std::nullopt);
    EXPECT_EQ(Json::parseObject(""), std::nullopt);
}

TEST(JsonWrite, SortsKeysByTheirBytes) {
    EXPECT_EQ(Json::write({{"b", 1}, {"a", 2}, {"B", 3}, {"\u00E9", 4}, {"", 5}}),
              "{\"\":5,\"B\":3,\"a\":2,\"b\":1,\"\u00E9\":4}");
}

TEST(JsonWrite, PrettyIsIndentedByTwoBlanks) {
    EXPECT_EQ(Json::write(parsed(R"({"b":[1,{"c":"d"}],"a":{},"e":[]})"), Json::Layout::pretty),
              "{\n  \"a\": {},\n  \"b\": [\n    1,\n    {\n      \"c\": \"d\"\n    }\n  ],\n  \"e\": []\n}");
}

TEST(JsonWrite, EscapesSlashesWhereAsked) {
    const Json::Value value{{"a/b", "c\\/\"d"}};

    EXPECT_EQ(Json::write(value), R"({"a/b":"c\\/\"d"})");
    EXPECT_EQ(Json::write(value, Json::Layout::compact, Json::Slash::escaped), R"({"a\/b":"c\\\/\"d"})");
    EXPECT_EQ(parsed(*Json::write(value, Json::Layout::compact, Json::Slash::escaped)), value);
}

TEST(JsonWrite, KeepsCharactersAndEscapesControls) {
    EXPECT_EQ(Json::write("é\U0001F680\u2028"), "\"é\U0001F680\u2028\"");
    EXPECT_EQ(Json::write("\0\b\t\n\f\r\x1F\x7F"s), "\"\\u0000\\b\\t\\n\\f\\r\\u001f\x7F\"");
}

TEST(JsonWrite, RefusesWhatJSONCannotHold) {
    EXPECT_EQ(Json::write("\xFF"), Written());
    EXPECT_EQ(Json::write({{"\xC3", 1}}), Written());
    EXPECT_EQ(Json::write({1.0, std::nan("")}), Written());
    EXPECT_EQ(Json::write(std::numeric_limits<double>::infinity()), Written());
    EXPECT_EQ(Json::write({{"a", {{"b", -std::numeric_limits<double>::infinity()}}}}), Written());
}

TEST(JsonWrite, WritesAsDeepAsIsRead) {
    auto value = Json::Value::array();
    for (int depth = 1; depth < 512; ++depth)
        value = Json::Value::array({value});
    EXPECT_EQ(Json::write(value), nested(512));

    value = Json::Value::array({value});
    EXPECT_EQ(Json::write(value), Written());
}

TEST(JsonWrite, NumbersReadBackAsTheyWere) {
    for (const double number : {0.1, 1.0 / 3.0, 1e22, 5e-324, 1.7976931348623157e308, -2.5})
        EXPECT_EQ(parsed(*Json::write(number)).get<double>(), number);
}

TEST(JsonFind, GivesTheMemberOfAnObjectOrNull) {
    const auto value = parsed(R"({"a":{"b":null},"c":[1]})");

    EXPECT_EQ(*Json::find(Json::find(value, "a"), "b"), Json::Value());
    EXPECT_EQ(Json::find(value, "x"), nullptr);
    EXPECT_EQ(Json::find(*Json::find(value, "c"), "0"), nullptr);
    EXPECT_EQ(Json::find(Json::find(value, "x"), "b"), nullptr);
    EXPECT_EQ(Json::find(static_cast<const Json::Value*>(nullptr), "b"), nullptr);
}

TEST(JsonTyped, ValuesOfAnotherTypeAreMissing) {
    const auto value = parsed(R"({"t":"x","o":{},"a":[],"b":true,"n":1,"z":null})");
    const auto kindsOf = [&](const char* key) {
        const auto* member = Json::find(value, key);
        return std::string(Json::text(member) ? "text " : "") + (Json::object(member) ? "object " : "") +
               (Json::array(member) ? "array " : "") + (Json::boolean(member) ? "boolean " : "") +
               (Json::wholeNumber(member) ? "whole " : "") + (Json::number(member) ? "number " : "");
    };

    EXPECT_EQ(kindsOf("t"), "text ");
    EXPECT_EQ(kindsOf("o"), "object ");
    EXPECT_EQ(kindsOf("a"), "array ");
    EXPECT_EQ(kindsOf("b"), "boolean ");
    EXPECT_EQ(kindsOf("n"), "whole number ");
    EXPECT_EQ(kindsOf("z"), "");
    EXPECT_EQ(kindsOf("missing"), "");
}

TEST(JsonTyped, BooleansKeepTheirValue) {
    const auto value = parsed("[true,false]");

    EXPECT_EQ(Json::boolean(&value[0]), true);
    EXPECT_EQ(Json::boolean(&value[1]), false);
}

TEST(JsonTyped, WholeNumbersFit64SignedBits) {
    const auto whole = [](std::string_view text) {
        const auto value = parsed(text);
        return Json::wholeNumber(&value);
    };

    EXPECT_EQ(whole("5.0"), 5);
    EXPECT_EQ(whole("-5e2"), -500);
    EXPECT_EQ(whole("-0"), 0);
    EXPECT_EQ(whole("-0.0"), 0);
    EXPECT_EQ(whole("5.5"), std::nullopt);
    EXPECT_EQ(whole("\"5\""), std::nullopt);
    EXPECT_EQ(whole("9223372036854775807"), INT64_MAX);
    EXPECT_EQ(whole("-9223372036854775808"), INT64_MIN);
    EXPECT_EQ(whole("9223372036854775808"), std::nullopt);
    EXPECT_EQ(whole("9223372036854775808.0"), std::nullopt);
    EXPECT_EQ(whole("-9223372036854775808.0"), INT64_MIN);
    EXPECT_EQ(whole("-9223372036854777856.0"), std::nullopt);
    EXPECT_EQ(whole("1e300"), std::nullopt);
}

TEST(JsonTyped, NumbersAreWholeOrNot) {
    const auto value = parsed("[1,-2.5,18446744073709551615]");

    EXPECT_EQ(Json::number(&value[0]), 1.0);
    EXPECT_EQ(Json::number(&value[1]), -2.5);
    EXPECT_EQ(Json::number(&value[2]), 18446744073709551615.0);
}

TEST(JsonTyped, CountsAreCutOffTowardZero) {
    const auto value = parsed(R"([7,7.9,-7.9,9007199254740993,18446744073709551615,1e300,"7",true,null])");
    using Count = std::optional<std::int64_t>;

    EXPECT_EQ(Json::truncatedCount(&value[0]), 7);
    EXPECT_EQ(Json::truncatedCount(&value[1]), 7);
    EXPECT_EQ(Json::truncatedCount(&value[2]), -7);
    EXPECT_EQ(Json::truncatedCount(&value[3]), 9007199254740993);
    for (std::size_t place = 4; place < value.size(); ++place)
        EXPECT_EQ(Json::truncatedCount(&value[place]), Count()) << place;
    EXPECT_EQ(Json::truncatedCount(nullptr), Count());
}

TEST(JsonAppendText, WritesEveryByteAsTheWriterOfValuesDoes) {
    std::string every;
    for (int byte = 0; byte < 0x80; ++byte)
        every += static_cast<char>(byte);
    every += "é漢👍\u2028/\\\"";
    std::string longer = every;
    for (int place = 0; place < 8; ++place)
        longer += std::string(static_cast<std::size_t>(place), 'x') + "é\n漢\"";
    for (const std::string& text :
         {every, longer, std::string(), "plain"s, "\"ends\""s, std::string(3, '\0')}) {
        std::string json = "before ";

        EXPECT_TRUE(Json::appendText(json, text));

        EXPECT_EQ(json, "before " + *Json::write(Json::Value(text)));
    }
}

TEST(JsonAppendText, AppendsNothingOfATextThatIsNotUTF8) {
    std::string json = "before";

    EXPECT_FALSE(Json::appendText(json, "ok \xFF"));

    EXPECT_EQ(json, "before");
}

} // namespace
} // namespace quorl::test
