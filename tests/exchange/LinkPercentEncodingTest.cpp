#include "exchange/LinkPercentEncoding.h"

#include "../color/QtPrinters.h"

#include <gtest/gtest.h>

#include <optional>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

struct EncodeCase {
    const char* what;
    QString text;
    QString encoded;
};

TEST(LinkPercentEncoding, KeepsLettersMarksAndNumbersOfAnyScriptAndNineMarksRaw) {
    const EncodeCase cases[] = {
        {"the nine", u"-_.!~*'()"_s, u"-_.!~*'()"_s},
        {"separators", u"a:b;c,d|e#f"_s, u"a%3Ab%3Bc%2Cd%7Ce%23f"_s},
        {"percent, blank, slash", u"% /"_s, u"%25%20%2F"_s},
        {"other ASCII marks", u"+$^&=?@[]\"<>`{}\\"_s,
         u"%2B%24%5E%26%3D%3F%40%5B%5D%22%3C%3E%60%7B%7D%5C"_s},
        {"accented letter", u"Café"_s, u"Café"_s},
        {"letter and combining mark", u"e\u0301"_s, u"e\u0301"_s},
        {"CJK and Greek", u"東京Ωμέγα"_s, u"東京Ωμέγα"_s},
        {"other numbers (No, Nl)", u"½Ⅻ٣"_s, u"½Ⅻ٣"_s},
        {"letter outside the BMP", u"\U0001D400"_s, u"\U0001D400"_s},
        {"connector other than _", u"\u203F"_s, u"%E2%80%BF"_s},
        {"no-break space", u"\u00A0"_s, u"%C2%A0"_s},
        {"emoji", u"😀"_s, u"%F0%9F%98%80"_s},
        {"zero-width joiner is a format character", u"a\u200Db"_s, u"a%E2%80%8Db"_s},
        {"control character", u"\t"_s, u"%09"_s},
        {"nothing", QString(), QString()},
    };
    for (const EncodeCase& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(LinkPercentEncoding::encode(c.text), c.encoded);
        EXPECT_EQ(LinkPercentEncoding::decode(c.encoded), c.text);
    }
}

TEST(LinkPercentEncoding, TextWithoutAUtf8FormTravelsUnescaped) {
    const QString lone = u"a:"_s + QChar(0xD800) + u"b"_s;
    EXPECT_EQ(LinkPercentEncoding::encode(lone), lone);
    // ... and a decoder can't make a name of it.
    EXPECT_EQ(LinkPercentEncoding::decode(lone), std::nullopt);
}

struct DecodeCase {
    const char* what;
    QString text;
    std::optional<QString> decoded;
};

TEST(LinkPercentEncoding, DecodingRefusesBrokenEscapesAndInvalidUtf8) {
    const DecodeCase cases[] = {
        {"lower-case hex", u"%c3%a9%3a"_s, u"é:"_s},
        {"raw and escaped mixed", u"Caf%C3%A9 é"_s, u"Café é"_s},
        {"plus is not a blank", u"a+b"_s, u"a+b"_s},
        {"kept byte order mark", u"%EF%BB%BFx"_s, u"\uFEFFx"_s},
        {"escaped NUL", u"a%00b"_s, u"a"_s + QChar(0) + u"b"_s},
        {"lone percent", u"%"_s, std::nullopt},
        {"percent at the end", u"abc%"_s, std::nullopt},
        {"one digit", u"%4"_s, std::nullopt},
        {"not hex", u"%zz"_s, std::nullopt},
        {"percent of a percent", u"%%41"_s, std::nullopt},
        {"cut sequence", u"%C3"_s, std::nullopt},
        {"stray continuation byte", u"%A9"_s, std::nullopt},
        {"overlong slash", u"%C0%AF"_s, std::nullopt},
        {"encoded surrogate", u"%ED%A0%80"_s, std::nullopt},
        {"beyond U+10FFFF", u"%F4%90%80%80"_s, std::nullopt},
        {"byte FF", u"%FF"_s, std::nullopt},
    };
    for (const DecodeCase& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(LinkPercentEncoding::decode(c.text), c.decoded);
    }
}

} // namespace
} // namespace hueshelf::testing
