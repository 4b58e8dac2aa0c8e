#include "aitools/ForeignJson.h"

#include "AIToolTestSupport.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <string>

namespace hueshelf::testing {
namespace {

// Bytes of a literal that may hold NULs, without its terminator.
template <std::size_t N>
QByteArray raw(const char (&text)[N]) {
    return QByteArray(text, qsizetype(N - 1));
}

struct RoundTrip {
    const char* label;
    QByteArray input;
    QByteArray printed;
};

class ForeignJsonRoundTrip : public ::testing::TestWithParam<RoundTrip> {};

TEST_P(ForeignJsonRoundTrip, keepsEveryValueInThePrettyForm) {
    const std::optional<ForeignJson> parsed = ForeignJson::parse(GetParam().input);
    ASSERT_TRUE(parsed.has_value());
    const QByteArray printed = parsed->prettyPrinted();
    EXPECT_EQ(printed.toStdString(), GetParam().printed.toStdString());
    // What is written reads back as the same value.
    EXPECT_EQ(ForeignJson::parse(printed), parsed);
}

INSTANTIATE_TEST_SUITE_P(
    ForeignJson, ForeignJsonRoundTrip,
    ::testing::Values(
        RoundTrip{"nestedAndSorted", R"({"b":1,"a":[true,false,null],"c":{"y":"1","x":2}})",
                  "{\n  \"a\" : [\n    true,\n    false,\n    null\n  ],\n  \"b\" : 1,\n"
                  "  \"c\" : {\n    \"x\" : 2,\n    \"y\" : \"1\"\n  }\n}"},
        RoundTrip{"numbersKeepTheirText",
                  "[18446744073709551615,-9223372036854775808,9223372036854775807,"
                  "123456789012345678901234567890,-123456789012345678901234567890,"
                  "1.10000000000000000001,1e400,1E-400,-1e+400,0.1,-0.0,2.50,1E2]",
                  "[\n  18446744073709551615,\n  -9223372036854775808,\n"
                  "  9223372036854775807,\n  123456789012345678901234567890,\n"
                  "  -123456789012345678901234567890,\n  1.10000000000000000001,\n  1e400,\n"
                  "  1E-400,\n  -1e+400,\n  0.1,\n  -0.0,\n  2.50,\n  1E2\n]"},
        RoundTrip{"escapesAndUnicode",
                  R"(["a/b","\ud83d\ude00","\u00e9","é","tab\there","\u001f\u0000","q\"b\\",)"
                  R"("\b\f\n\r","\u2028"])",
                  "[\n  \"a\\/b\",\n  \"\xF0\x9F\x98\x80\",\n  \"\xC3\xA9\",\n  \"\xC3\xA9\",\n"
                  "  \"tab\\there\",\n  \"\\u001f\\u0000\",\n  \"q\\\"b\\\\\",\n"
                  "  \"\\b\\f\\n\\r\",\n  \"\xE2\x80\xA8\"\n]"},
        RoundTrip{"emptyContainers", R"({"a":{},"b":[],"c":[{}]})",
                  "{\n  \"a\" : {},\n  \"b\" : [],\n  \"c\" : [\n    {}\n  ]\n}"},
        RoundTrip{"emptyRoot", " {  } ", "{}"},
        // UTF-8 bytes (and code points) put U+FF01 before U+1F600; UTF-16 code units, whose
        // order is kept, put the surrogate pair first.
        RoundTrip{"keysInUtf16Order", R"({"\uff01":1,"\ud83d\ude00":2,"z":3,"Z":4,"":5})",
                  "{\n  \"\" : 5,\n  \"Z\" : 4,\n  \"z\" : 3,\n  \"\xF0\x9F\x98\x80\" : 2,\n"
                  "  \"\xEF\xBC\x81\" : 1\n}"},
        RoundTrip{"slashInKey", R"({"a/b":"/"})", "{\n  \"a\\/b\" : \"\\/\"\n}"},
        RoundTrip{"lastOfTwinKeysWins", R"({"a":1,"a":{"b":2}})",
                  "{\n  \"a\" : {\n    \"b\" : 2\n  }\n}"},
        RoundTrip{"byteOrderMarkSkipped", "\xEF\xBB\xBF{\"a\":1}", "{\n  \"a\" : 1\n}"},
        RoundTrip{"looseWhitespace", "\r\n\t{ \"a\" :\n1 }\n\n", "{\n  \"a\" : 1\n}"},
        RoundTrip{"scalarRoot", "\"x\"", "\"x\""}),
    ByLabel());

struct Refusal {
    const char* label;
    QByteArray input;
};

class ForeignJsonRefusal : public ::testing::TestWithParam<Refusal> {};

TEST_P(ForeignJsonRefusal, isNoJson) {
    EXPECT_FALSE(ForeignJson::parse(GetParam().input).has_value());
}

INSTANTIATE_TEST_SUITE_P(
    ForeignJson, ForeignJsonRefusal,
    ::testing::Values(
        Refusal{"empty", ""}, Refusal{"unclosed", "{"},
        Refusal{"trailingCommaInObject", R"({"a":1,})"}, Refusal{"trailingCommaInArray", "[1,2,]"},
        Refusal{"lineComment", "// settings\n{}"}, Refusal{"blockComment", "{/* none */}"},
        Refusal{"singleQuotes", "{'a':1}"}, Refusal{"nan", R"({"a":NaN})"},
        Refusal{"secondValue", "{}{}"}, Refusal{"trailingText", "{} x"},
        Refusal{"loneSurrogate", R"(["\ud800"])"}, Refusal{"invalidUtf8", "[\"\xFF\"]"},
        Refusal{"rawLineBreakInString", "[\"a\nb\"]"}, Refusal{"utf16", raw("\xFF\xFE{\0}\0")}),
    ByLabel());

QByteArray nestedArrays(int depth) {
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

TEST(ForeignJson, nestingIsLimited) {
    EXPECT_TRUE(ForeignJson::parse(nestedArrays(ForeignJson::maxDepth)).has_value());
    EXPECT_FALSE(ForeignJson::parse(nestedArrays(ForeignJson::maxDepth + 1)).has_value());
    EXPECT_FALSE(ForeignJson::parse(QByteArray(100000, '{')).has_value());
}

TEST(ForeignJson, numberBeyondTheWidestFloatIsRefusedNotRounded) {
    if (std::numeric_limits<long double>::max_exponent10 >= 5000)
        GTEST_SKIP() << "long double holds 1e5000 here";
    EXPECT_FALSE(ForeignJson::parse("[1e5000]").has_value());
}

// The application runs under the user's locale, whose decimal separator may be a comma.
TEST(ForeignJson, fractionsKeepTheirPointUnderACommaLocale) {
    const std::string previous = std::setlocale(LC_NUMERIC, nullptr);
    bool commaLocale = false;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "nl_NL.UTF-8"}) {
        if (std::setlocale(LC_NUMERIC, name) && *std::localeconv()->decimal_point == ',') {
            commaLocale = true;
            break;
        }
    }
    if (!commaLocale) {
        std::setlocale(LC_NUMERIC, previous.c_str());
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    }
    const std::optional<ForeignJson> parsed = ForeignJson::parse("[1.5,-0.25e3,7]");
    std::setlocale(LC_NUMERIC, previous.c_str());
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(parsed->prettyPrinted().toStdString(), "[\n  1.5,\n  -0.25e3,\n  7\n]");
}

} // namespace
} // namespace hueshelf::testing
