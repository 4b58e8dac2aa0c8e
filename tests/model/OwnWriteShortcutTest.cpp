// A writer that finds the file exactly as it left it skips parsing it. Any change by someone
// else, however small and even of the same length, must send it the long way, and what the
// shortcut writes must be what the long way would have written.

#include "PersistenceFixture.h"
#include "model/PreferencesWrite.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

constexpr double kFirst = 1'700'000'000'000.0;

class OwnWriteShortcut : public PersistenceFixture {
protected:
    SaveRequest requestFor(const QList<ColorTemplate>& templates, double baselineStamp,
                           double now) const {
        SaveRequest request;
        request.templates = templates;
        for (const ColorTemplate& palette : templates)
            request.jsonParts.append(TemplateJson::encodeTemplate(palette));
        request.json = TemplateJson::joinEncoded(request.jsonParts);
        request.baselineTemplates = templates;
        request.baselineStamp = baselineStamp;
        request.activeTemplateId = uuidText(templates.constFirst().id);
        request.nowMs = now;
        return request;
    }

    // What the file holds, printed again by Qt: equal to the file only if the file is laid out
    // exactly as Qt lays it out.
    QByteArray reprinted() const { return QJsonDocument(readPreferences()).toJson(); }

    // Rewrites one text in the file without changing its length.
    void replaceInFile(const QByteArray& from, const QByteArray& to) {
        ASSERT_EQ(from.size(), to.size());
        QByteArray bytes = readBytes(prefsPath());
        ASSERT_TRUE(bytes.contains(from));
        bytes.replace(from, to);
        ASSERT_TRUE(writeBytes(prefsPath(), bytes));
    }

    const ColorTemplate a = makePalette(u"A"_s, {makeColor(u"a"_s, u"#111111"_s)});
    const ColorTemplate b = makePalette(u"B"_s, {makeColor(u"b"_s, u"#222222"_s)});
    std::optional<OwnWrite> own;
};

TEST_F(OwnWriteShortcut, RepeatedSavesWriteWhatQtWouldPrint) {
    QJsonObject other;
    other.insert(u"helper.key"_s, QJsonArray{1, u"x"_s});
    ASSERT_TRUE(writeFile(other));
    double stamp = 0.0;
    QList<ColorTemplate> list{a, b};
    for (int i = 0; i < 4; ++i) {
        list[1].name = u"B"_s + QString::number(i);
        const SaveOutcome outcome =
            writePreferences(prefsPath(), requestFor(list, stamp, kFirst + i), own);
        ASSERT_TRUE(outcome.wroteFile);
        stamp = kFirst + i;
        EXPECT_EQ(readBytes(prefsPath()), reprinted()) << i;
        EXPECT_EQ(outcome.writtenJson, PreferencesFile::templatesData(readPreferences())) << i;
        EXPECT_EQ(namesOf(templatesInFile()), namesOf(list)) << i;
        EXPECT_TRUE(readPreferences().contains(u"helper.key"_s)) << i;
    }
}

TEST_F(OwnWriteShortcut, AnEditOfTheSameLengthBySomeoneElseIsMerged) {
    ASSERT_TRUE(writePreferences(prefsPath(), requestFor({a, b}, 0.0, kFirst), own).wroteFile);
    // Another process recolours B and stamps its write, keeping the file's length.
    replaceInFile("#222222", "#333333");
    replaceInFile(QByteArray::number(qint64(kFirst)), QByteArray::number(qint64(kFirst) + 5));

    const SaveOutcome outcome =
        writePreferences(prefsPath(), requestFor({a, b}, kFirst, kFirst + 10.0), own);

    ASSERT_TRUE(outcome.wroteFile);
    ASSERT_EQ(outcome.writtenTemplates.size(), 2);
    EXPECT_EQ(outcome.writtenTemplates.at(1).colors.at(0).hex, u"#333333"_s);
    EXPECT_EQ(templatesInFile().at(1).colors.at(0).hex, u"#333333"_s);
    EXPECT_EQ(readBytes(prefsPath()), reprinted());
}

TEST_F(OwnWriteShortcut, AnotherKeyChangedInPlaceIsKept) {
    QJsonObject other;
    other.insert(u"helper.mode"_s, u"dark"_s);
    ASSERT_TRUE(writeFile(other));
    ASSERT_TRUE(writePreferences(prefsPath(), requestFor({a}, 0.0, kFirst), own).wroteFile);
    // Only a key of its own, so the stamp stays: nothing to merge, but the key must survive.
    replaceInFile("\"dark\"", "\"lite\"");

    ASSERT_TRUE(
        writePreferences(prefsPath(), requestFor({a}, kFirst, kFirst + 10.0), own).wroteFile);

    EXPECT_EQ(readPreferences().value(u"helper.mode"_s).toString(), u"lite"_s);
}

TEST_F(OwnWriteShortcut, BytesAddedAfterTheOwnWriteAreNotTakenForIt) {
    ASSERT_TRUE(writePreferences(prefsPath(), requestFor({a}, 0.0, kFirst), own).wroteFile);
    // Not JSON any more: the long way must notice, keep a copy and still write.
    ASSERT_TRUE(writeBytes(prefsPath(), readBytes(prefsPath()) + "garbage"));

    ASSERT_TRUE(
        writePreferences(prefsPath(), requestFor({a}, kFirst, kFirst + 10.0), own).wroteFile);

    EXPECT_EQ(namesOf(templatesInFile()), QStringList{u"A"_s});
    const QStringList kept = QDir(QFileInfo(prefsPath()).absolutePath())
                                 .entryList(QDir::Files)
                                 .filter(QFileInfo(prefsPath()).fileName());
    EXPECT_GE(kept.size(), 2) << kept.join(u", "_s).toStdString();
}

} // namespace
} // namespace hueshelf::testing
