#include "StoreHome.h"

#include <QTemporaryDir>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

class ExchangeCommands : public StoreHome {
protected:
    const ColorTemplate brand =
        makePalette(u"Brand"_s, {makeColor(u"Primary"_s, u"#FF0000"_s),
                                 makeColor(u"Sky"_s, u"#87CEEB"_s, true, true, u"Soft"_s)});

    QString writeFile(const QString& name, const QByteArray& bytes) {
        const QString path = home.path() + u'/' + name;
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }
};

TEST_F(ExchangeCommands, ALinkOfAStoredPaletteReadsBackAsThatPalette) {
    seed({brand}, uuidText(brand.id));
    const CliOutcome link = runCli({u"link"_s});
    ASSERT_EQ(link.status, 0) << link.err.toStdString();
    EXPECT_EQ(link.out, u"https://hueshelf.app/p/#1;Brand;Primary:FF0000,|Soft|Sky:87CEEB\n"_s);

    const CliOutcome decoded = runCli({u"link"_s, u"--decode"_s, link.out.trimmed(), u"--json"_s});
    ASSERT_EQ(decoded.status, 0);
    const QJsonObject sky = decoded.json().object().value(u"colors"_s).toArray().at(1).toObject();
    EXPECT_EQ(sky, (QJsonObject{{u"name"_s, u"Sky"_s},
                                {u"hex"_s, u"#87CEEB"_s},
                                {u"dividerBefore"_s, true},
                                {u"dividerLabel"_s, u"Soft"_s}}));
}

TEST_F(ExchangeCommands, RefusedLinksNameTheirCase) {
    const struct {
        QString text;
        QString line;
    } cases[] = {
        {u"#2;A;B:000000"_s, u"unknownVersion: That link isn't a HueShelf palette. It may have "
                             u"been cut short when it was copied, or made with a newer version "
                             u"of HueShelf.\n"_s},
        {u"1;A;B:00000G"_s, u"badHex: That link isn't a HueShelf palette. It may have been cut "
                            u"short when it was copied, or made with a newer version of "
                            u"HueShelf.\n"_s},
        {u"1;A;"_s + QStringList(41, u"B:000000"_s).join(u','),
         u"tooManyColors: Links hold up to 40 colors\n"_s},
    };
    for (const auto& c : cases) {
        const CliOutcome outcome = runCli({u"link"_s, u"--decode"_s, c.text});
        EXPECT_EQ(outcome.status, 1) << c.text.toStdString();
        EXPECT_EQ(outcome.err, c.line);
    }
    EXPECT_EQ(runCli({u"link"_s, u"Brand"_s, u"--decode"_s, u"1;A;B:000000"_s}).status, 2);
}

TEST_F(ExchangeCommands, ExportedFileImportsAsTheSamePaletteAndALinkAddsOnce) {
    seed({brand}, uuidText(brand.id));
    const QString path = home.path() + u"/brand.json"_s;
    ASSERT_EQ(runCli({u"export"_s, u"Brand"_s, u"-o"_s, path}).status, 0);
    // A script's file name stays as given.
    ASSERT_TRUE(QFileInfo::exists(path));

    const CliOutcome again = runCli({u"import"_s, path});
    EXPECT_EQ(again.status, 0);
    EXPECT_EQ(again.out, u"You already have this palette.\n"_s);
    EXPECT_EQ(fileTemplates().size(), 1);

    EXPECT_EQ(runCli({u"import"_s, u"1;Brand;Primary:00ff00"_s}).out,
              u"Imported \"Brand (1)\"\n"_s);
    const QString link = u"hueshelf://import#1;Ocean;Deep:003366"_s;
    EXPECT_EQ(runCli({u"import"_s, link}).out, u"Imported \"Ocean\"\n"_s);
    EXPECT_EQ(runCli({u"import"_s, link}).out, u"You already have this palette.\n"_s);
    EXPECT_EQ(fileTemplates().size(), 3);
}

TEST_F(ExchangeCommands, UnreadableFilesFailOnOneLineAndChangeNothing) {
    seed({brand}, uuidText(brand.id));
    const QByteArray before = fileBytes();
    QByteArray tooLarge(1'048'577, ' ');
    tooLarge.replace(0, 2, "{}");
    const struct {
        QString argument;
        QString line;
    } cases[] = {
        {writeFile(u"big.hueshelf"_s, tooLarge), u"File is too large. Maximum size is 1 MB.\n"_s},
        {writeFile(u"empty.hueshelf"_s, R"({"name":"X","colors":[]})"),
         u"That file has no colors HueShelf can read.\n"_s},
        {home.path() + u"/missing.hueshelf"_s,
         u"HueShelf couldn't read that file. No such file or directory\n"_s},
    };
    for (const auto& c : cases) {
        const CliOutcome outcome = runCli({u"import"_s, c.argument});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, c.line);
    }
    EXPECT_EQ(fileBytes(), before);
}

} // namespace
} // namespace hueshelf::testing
