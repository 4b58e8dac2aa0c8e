// The palette encoder and the content hash build their bytes by hand for speed. Other processes
// and this program's own data hash depend on those bytes being exactly what Qt's JSON writer and
// QString::toUtf8 give, so every case here is checked against them, on hostile input.

#include "ModelTestSupport.h"
#include "RandomRecords.h"
#include "model/ContentHash.h"
#include "model/TemplateJson.h"

#include <QCryptographicHash>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

QByteArray qtEncoded(const QList<ColorTemplate>& templates) {
    return QJsonDocument(TemplateJson::templatesToJson(templates)).toJson(QJsonDocument::Compact);
}

QString qtContentHash(const ColorTemplate& palette) {
    const QByteArray digest = QCryptographicHash::hash(
        contentHashText(palette.name, palette.colors).toUtf8(), QCryptographicHash::Sha256);
    return QString::fromLatin1(digest.left(8).toHex());
}

QString units(std::initializer_list<char16_t> list) {
    QString text;
    for (char16_t unit : list)
        text.append(QChar(unit));
    return text;
}

ColorTemplate paletteWith(const QString& text) {
    ColorItem color = makeColor(text, text, true, true, text);
    ColorTemplate palette = makePalette(text, {color, makeColor(u"plain"_s, u"#000000"_s)});
    palette.contentHash = text;
    palette.updatedByDeviceId = text;
    return palette;
}

// --- Strings -----------------------------------------------------------------------------------

struct TextCase {
    const char* label;
    QString text;
};

class EncodedText : public ::testing::TestWithParam<TextCase> {};

TEST_P(EncodedText, MatchesQtInEveryStringField) {
    const ColorTemplate palette = paletteWith(GetParam().text);
    EXPECT_EQ(TemplateJson::encodeTemplates({palette}), qtEncoded({palette}));
    EXPECT_EQ(computeContentHash(palette.name, palette.colors), qtContentHash(palette));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, EncodedText,
    ::testing::Values(
        TextCase{"empty", QString()}, TextCase{"quoteAndBackslash", u"a\"b\\c/d"_s},
        TextCase{"namedEscapes", u"\b\f\n\r\t"_s},
        TextCase{"otherControls", units({0x00, 0x01, 0x0B, 0x1B, 0x1F, 0x7F})},
        TextCase{"twoByteUtf8", u"Café é ß"_s}, TextCase{"threeByteUtf8", u"€ 色 \u2028"_s},
        TextCase{"surrogatePair", u"😀 𝄞"_s}, TextCase{"nonCharacters", units({0xFFFE, 0xFFFF})},
        TextCase{"loneHighAtEnd", units({u'a', 0xD83D})},
        TextCase{"loneHighBeforeText", units({0xD83D, u'a'})},
        TextCase{"loneLow", units({0xDE00, u'x'})},
        TextCase{"highHighLow", units({0xD83D, 0xD83D, 0xDE00})},
        TextCase{"lowHigh", units({0xDE00, 0xD83D})}, TextCase{"separatorsInText", u"a|b:c|d"_s}),
    [](const ::testing::TestParamInfo<TextCase>& param) { return std::string(param.param.label); });

// --- Numbers -----------------------------------------------------------------------------------

class EncodedNumber : public ::testing::TestWithParam<double> {};

TEST_P(EncodedNumber, MatchesQtAsStampAndRevision) {
    ColorTemplate palette = paletteWith(u"n"_s);
    palette.createdAt = GetParam();
    palette.updatedAt = -GetParam();
    EXPECT_EQ(TemplateJson::encodeTemplates({palette}), qtEncoded({palette}));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, EncodedNumber,
    ::testing::Values(0.0, -0.0, 1.0, 0.1, 0.5, 1e-7, 3e-5, 1e15, 9.0e15, 9.005e15, kTwoTo53 - 1.0,
                      kTwoTo53, kTwoTo53 + 2.0, 9007199254741000.0, 9.1e15, 1e16, 1e20, 1e21,
                      123456789012345678.0, 12345678901234567890.0, 4611686018427387904.0,
                      9223372036854775808.0, 1700000000000.25, 1'700'000'000'000.0,
                      std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::max(),
                      std::numeric_limits<double>::min(), std::numeric_limits<double>::infinity(),
                      std::numeric_limits<double>::quiet_NaN()));

TEST(EncodedRevision, MatchesQtAtTheEndsOfTheRange) {
    for (qint64 revision : {std::numeric_limits<qint64>::min(), qint64(-1), qint64(0),
                            qint64(1) << 53, std::numeric_limits<qint64>::max()}) {
        ColorTemplate palette = paletteWith(u"r"_s);
        palette.revision = revision;
        EXPECT_EQ(TemplateJson::encodeTemplates({palette}), qtEncoded({palette})) << revision;
    }
}

// --- Whole lists -------------------------------------------------------------------------------

TEST(EncodedList, MatchesQtForRandomRecords) {
    RandomRecords records(7);
    QList<ColorTemplate> list;
    QList<QByteArray> oneByOne;
    for (int i = 0; i < 400; ++i) {
        const ColorTemplate palette = records.palette();
        ASSERT_EQ(TemplateJson::encodeTemplates({palette}), qtEncoded({palette})) << i;
        ASSERT_EQ(computeContentHash(palette.name, palette.colors), qtContentHash(palette)) << i;
        list.append(palette);
        oneByOne.append(TemplateJson::encodeTemplate(palette));
    }
    EXPECT_EQ(TemplateJson::encodeTemplates(list), qtEncoded(list));
    EXPECT_EQ(TemplateJson::joinEncoded(oneByOne), qtEncoded(list));
}

TEST(EncodedList, EmptyListsAndPalettesWithoutColours) {
    EXPECT_EQ(TemplateJson::encodeTemplates({}), "[]");
    EXPECT_EQ(TemplateJson::joinEncoded({}), "[]");
    const ColorTemplate bare = makePalette(u"Bare"_s, {});
    EXPECT_EQ(TemplateJson::encodeTemplates({bare, bare}), qtEncoded({bare, bare}));
}

TEST(UuidText, IsTheUpperCaseCanonicalForm) {
    std::mt19937 random(3);
    for (int i = 0; i < 200; ++i) {
        const QUuid id(random(), ushort(random()), ushort(random()), uchar(random()),
                       uchar(random()), uchar(random()), uchar(random()), uchar(random()),
                       uchar(random()), uchar(random()), uchar(random()));
        const QString expected = id.toString(QUuid::WithoutBraces).toUpper();
        ASSERT_EQ(uuidText(id), expected);
        QByteArray appended("x");
        appendUuidText(appended, id);
        ASSERT_EQ(appended, "x" + expected.toLatin1());
    }
}

} // namespace
} // namespace hueshelf::testing
