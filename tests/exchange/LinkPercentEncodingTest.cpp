#include "exchange/LinkPercentEncoding.h"

#include "../color/QtPrinters.h"

#include <gtest/gtest.h>

#include <optional>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// Each class of character once, both ways: letters, marks and numbers of any script and nine
// marks stay raw; everything else is escaped as UTF-8.
TEST(LinkPercentEncoding, KeepsLettersMarksAndNumbersOfAnyScriptAndNineMarksRaw) {
    const std::pair<QString, QString> cases[] = {
        {u"-_.!~*'()"_s, u"-_.!~*'()"_s},
        {u"a:b;c,d|e#f"_s, u"a%3Ab%3Bc%2Cd%7Ce%23f"_s},
        {u"% /"_s, u"%25%20%2F"_s},
        {u"+$^&=?@[]\"<>`{}\\"_s, u"%2B%24%5E%26%3D%3F%40%5B%5D%22%3C%3E%60%7B%7D%5C"_s},
        {u"Café e\u0301 東京Ωμέγα"_s, u"Café%20e\u0301%20東京Ωμέγα"_s},
        {u"½Ⅻ٣\U0001D400"_s, u"½Ⅻ٣\U0001D400"_s}, // other numbers, a letter past the BMP
        {u"\u203F"_s, u"%E2%80%BF"_s},            // a connector other than _
        {u"\u00A0"_s, u"%C2%A0"_s},
        {u"😀"_s, u"%F0%9F%98%80"_s},
        {u"a\u200Db"_s, u"a%E2%80%8Db"_s}, // the zero-width joiner is a format character
        {u"\t"_s, u"%09"_s},
        {QString(), QString()},
    };
    for (const auto& [text, encoded] : cases) {
        EXPECT_EQ(LinkPercentEncoding::encode(text), encoded) << text.toStdString();
        EXPECT_EQ(LinkPercentEncoding::decode(encoded), text) << text.toStdString();
    }
}

TEST(LinkPercentEncoding, TextWithoutAUtf8FormTravelsUnescaped) {
    const QString lone = u"a:"_s + QChar(0xD800) + u"b"_s;
    EXPECT_EQ(LinkPercentEncoding::encode(lone), lone);
    // ... and a decoder can't make a name of it.
    EXPECT_EQ(LinkPercentEncoding::decode(lone), std::nullopt);
}

TEST(LinkPercentEncoding, DecodingRefusesBrokenEscapesAndInvalidUtf8) {
    const std::pair<QString, std::optional<QString>> cases[] = {
        {u"%c3%a9%3a"_s, u"é:"_s},       // lower-case hex
        {u"Caf%C3%A9 é"_s, u"Café é"_s}, // raw and escaped mixed
        {u"a+b"_s, u"a+b"_s},            // plus is not a blank
        {u"%EF%BB%BFx"_s, u"\uFEFFx"_s}, // a byte order mark is kept
        {u"a%00b"_s, u"a"_s + QChar(0) + u"b"_s},
        {u"%"_s, std::nullopt},
        {u"abc%"_s, std::nullopt},
        {u"%4"_s, std::nullopt},
        {u"%zz"_s, std::nullopt},
        {u"%%41"_s, std::nullopt},
        {u"%C3"_s, std::nullopt},          // cut sequence
        {u"%A9"_s, std::nullopt},          // stray continuation byte
        {u"%C0%AF"_s, std::nullopt},       // overlong slash
        {u"%ED%A0%80"_s, std::nullopt},    // encoded surrogate
        {u"%F4%90%80%80"_s, std::nullopt}, // beyond U+10FFFF
        {u"%FF"_s, std::nullopt},
    };
    for (const auto& [text, decoded] : cases)
        EXPECT_EQ(LinkPercentEncoding::decode(text), decoded) << text.toStdString();
}

} // namespace
} // namespace hueshelf::testing
