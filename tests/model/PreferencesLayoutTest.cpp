// The file's layout is built from the encoder's text, not from parsed values; it must still be
// byte for byte what Qt prints for the parsed object, whatever the other keys hold and however
// the palettes changed since the previous layout whose pieces it reuses.

#include "model/PreferencesLayout.h"

#include "ModelTestSupport.h"
#include "RandomRecords.h"
#include "model/PreferencesKeys.h"
#include "model/TemplateJson.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <functional>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

QByteArray qtFile(const QJsonObject& others, const QByteArray& json) {
    QJsonObject object = others;
    object.insert(PreferencesKeys::templates, QJsonDocument::fromJson(json).array());
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

QList<QByteArray> elementsOf(const QList<ColorTemplate>& templates) {
    QList<QByteArray> elements;
    for (const ColorTemplate& palette : templates)
        elements.append(TemplateJson::encodeTemplate(palette));
    return elements;
}

// Keys on both sides of "colorTemplates" in sorted order, ones that begin like it, and values
// with nesting, empty containers and text that needs escapes.
QJsonObject otherKeys() {
    QJsonObject nested;
    nested.insert(u"list"_s, QJsonArray{1, u"two"_s, QJsonArray(), QJsonObject(), QJsonValue()});
    nested.insert(u"deeper"_s, QJsonObject{{u"colorTemplates"_s, QJsonArray{true}}});
    QJsonObject others;
    others.insert(u""_s, u"empty key"_s);
    others.insert(u"aaa"_s, 1.5);
    others.insert(u"colorTemplate"_s, u"\"quoted\"\n"_s);
    others.insert(u"colorTemplatesX"_s, nested);
    others.insert(PreferencesKeys::activeTemplateId, u"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE"_s);
    others.insert(PreferencesKeys::lastModified, 1'700'000'000'000.5);
    others.insert(u"zzz"_s, QJsonArray{QJsonObject{{u"k"_s, u"ä"_s}}});
    others.insert(u"ключ"_s, false);
    return others;
}

TEST(PreferencesLayout, MatchesQtForRandomPalettesAsTextAndAsElements) {
    RandomRecords records(11);
    const QJsonObject others = otherKeys();
    for (int round = 0; round < 40; ++round) {
        QList<ColorTemplate> list;
        const int count = int(records.below(6));
        for (int i = 0; i < count; ++i)
            list.append(records.palette());
        const QByteArray json = TemplateJson::encodeTemplates(list);
        const QByteArray expected = qtFile(others, json);

        const auto asText = PreferencesLayout::make(others, json, {}, nullptr);
        ASSERT_TRUE(asText) << round;
        ASSERT_EQ(asText->bytes(), expected) << round;
        const auto asElements = PreferencesLayout::make(others, json, elementsOf(list), nullptr);
        ASSERT_TRUE(asElements) << round;
        ASSERT_EQ(asElements->bytes(), expected) << round;
    }
}

TEST(PreferencesLayout, AnEmptyListAndAnObjectWithNothingElse) {
    for (const QJsonObject& others : {QJsonObject(), otherKeys()}) {
        const auto layout = PreferencesLayout::make(others, "[]", {}, nullptr);
        ASSERT_TRUE(layout);
        EXPECT_EQ(layout->bytes(), qtFile(others, "[]"));
    }
    const ColorTemplate bare = makePalette(u"Bare"_s, {});
    const QByteArray json = TemplateJson::encodeTemplates({bare});
    EXPECT_EQ(PreferencesLayout::make({}, json, elementsOf({bare}), nullptr)->bytes(),
              qtFile({}, json));
}

TEST(PreferencesLayout, TextWithEscapesReadsBackAsItIs) {
    // A surrogate without its partner is printed as an escape that Qt reads back as the same
    // unit; an escaped backslash before "ud" is no such escape.
    for (const QString& name :
         QStringList{QString(QChar(0xD83D)) + u"tail"_s, QString(QChar(0xDE00)),
                     QString(QChar(0xD83D)) + QChar(0xD83D) + QChar(0xDE00), u"back\\udder"_s,
                     u"tab\there"_s}) {
        ColorTemplate palette = makePalette(name, {makeColor(name, u"#000000"_s)});
        const QByteArray json = TemplateJson::encodeTemplates({palette});
        const auto layout = PreferencesLayout::make({}, json, elementsOf({palette}), nullptr);
        ASSERT_TRUE(layout);
        EXPECT_EQ(layout->bytes(), qtFile({}, json));
    }
}

TEST(PreferencesLayout, ElementsThatDoNotMakeTheTextAreNotUsed) {
    const ColorTemplate a = makePalette(u"A"_s, {makeColor(u"a"_s, u"#111111"_s)});
    const ColorTemplate b = makePalette(u"B"_s, {makeColor(u"b"_s, u"#222222"_s)});
    const QByteArray json = TemplateJson::encodeTemplates({a, b});
    const auto layout = PreferencesLayout::make({}, json, elementsOf({a}), nullptr);
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->bytes(), qtFile({}, json));
}

// --- Reuse of the previous layout --------------------------------------------------------------

struct ReuseCase {
    const char* name;
    std::function<void(QList<ColorTemplate>&, QList<QByteArray>&, RandomRecords&)> change;
};

class LayoutReuse : public ::testing::TestWithParam<ReuseCase> {};

// Elements that still share their buffer with the previous layout's are copied from it; the
// result must be the same as laying everything out afresh.
TEST_P(LayoutReuse, GivesWhatAFreshLayoutGives) {
    RandomRecords records(5);
    QList<ColorTemplate> list;
    for (int i = 0; i < 8; ++i)
        list.append(records.palette());
    QList<QByteArray> elements = elementsOf(list);
    const QJsonObject others = otherKeys();
    const auto previous =
        PreferencesLayout::make(others, TemplateJson::joinEncoded(elements), elements, nullptr);
    ASSERT_TRUE(previous);

    GetParam().change(list, elements, records);
    const QByteArray json = TemplateJson::joinEncoded(elements);
    ASSERT_EQ(json, TemplateJson::encodeTemplates(list));
    const auto layout = PreferencesLayout::make(others, json, elements, &*previous);
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->bytes(), qtFile(others, json));

    // And once more on top of that one, as the next save would.
    const auto next = PreferencesLayout::make(others, json, elements, &*layout);
    ASSERT_TRUE(next);
    EXPECT_EQ(next->bytes(), layout->bytes());
}

void replaceAt(QList<ColorTemplate>& list, QList<QByteArray>& elements, qsizetype i,
               const ColorTemplate& palette) {
    list[i] = palette;
    elements[i] = TemplateJson::encodeTemplate(palette);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LayoutReuse,
    ::testing::Values(ReuseCase{"nothingChanged", [](auto&, auto&, auto&) {}},
                      ReuseCase{"oneChanged",
                                [](auto& list, auto& elements, auto& records) {
                                    replaceAt(list, elements, 3, records.palette());
                                }},
                      ReuseCase{"sameTextNewBuffer",
                                [](auto& list, auto& elements, auto&) {
                                    elements[2] = TemplateJson::encodeTemplate(list.at(2));
                                }},
                      ReuseCase{"insertedAtFront",
                                [](auto& list, auto& elements, auto& records) {
                                    const ColorTemplate palette = records.palette();
                                    list.prepend(palette);
                                    elements.prepend(TemplateJson::encodeTemplate(palette));
                                }},
                      ReuseCase{"removedFromMiddle",
                                [](auto& list, auto& elements, auto&) {
                                    list.removeAt(4);
                                    elements.removeAt(4);
                                }},
                      ReuseCase{"reversed",
                                [](auto& list, auto& elements, auto&) {
                                    std::reverse(list.begin(), list.end());
                                    std::reverse(elements.begin(), elements.end());
                                }},
                      ReuseCase{"allRemoved",
                                [](auto& list, auto& elements, auto&) {
                                    list.clear();
                                    elements.clear();
                                }},
                      ReuseCase{"sameElementTwice",
                                [](auto& list, auto& elements, auto&) {
                                    list.append(list.at(1));
                                    elements.append(elements.at(1));
                                }}),
    [](const ::testing::TestParamInfo<ReuseCase>& param) { return std::string(param.param.name); });

} // namespace
} // namespace hueshelf::testing
