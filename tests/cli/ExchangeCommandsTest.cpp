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

// Links, exports and imports are compared with an independent model of both formats on random
// palettes (tests/reference); these cases hold what it doesn't look at.
TEST_F(ExchangeCommands, RefusedLinksNameTheirCaseAndItsMessage) {
    const std::pair<QString, QString> cases[] = {
        {u"1;A;B:00000G"_s, u"badHex: That link isn't a HueShelf palette. It may have been cut "
                            u"short when it was copied, or made with a newer version of "
                            u"HueShelf.\n"_s},
        {u"1;A;"_s + QStringList(41, u"B:000000"_s).join(u','),
         u"tooManyColors: Links hold up to 40 colors\n"_s},
    };
    for (const auto& [text, line] : cases) {
        const CliOutcome outcome = runCli({u"link"_s, u"--decode"_s, text});
        EXPECT_EQ(outcome.status, 1) << text.toStdString();
        EXPECT_EQ(outcome.err, line);
    }
    EXPECT_EQ(runCli({u"link"_s, u"Brand"_s, u"--decode"_s, u"1;A;B:000000"_s}).status, 2);
}

TEST_F(ExchangeCommands, AnExportedFileImportsAsThePaletteItCameFrom) {
    seed({brand}, uuidText(brand.id));
    const QString path = home.path() + u"/brand.json"_s;
    ASSERT_EQ(runCli({u"export"_s, u"Brand"_s, u"-o"_s, path}).status, 0);
    // A script's file name stays as given.
    ASSERT_TRUE(QFileInfo::exists(path));
    const CliOutcome again = runCli({u"import"_s, path});
    EXPECT_EQ(again.status, 0);
    EXPECT_EQ(again.out, u"You already have this palette.\n"_s);
    EXPECT_EQ(fileTemplates().size(), 1);
}

TEST_F(ExchangeCommands, UnreadableFilesFailOnOneLineAndChangeNothing) {
    seed({brand}, uuidText(brand.id));
    const QByteArray before = fileBytes();
    QByteArray tooLarge(1'048'577, ' ');
    tooLarge.replace(0, 2, "{}");
    const std::pair<QString, QString> cases[] = {
        {writeFile(u"big.hueshelf"_s, tooLarge), u"File is too large. Maximum size is 1 MB.\n"_s},
        {home.path() + u"/missing.hueshelf"_s,
         u"HueShelf couldn't read that file. No such file or directory\n"_s},
    };
    for (const auto& [argument, line] : cases) {
        const CliOutcome outcome = runCli({u"import"_s, argument});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, line);
    }
    EXPECT_EQ(fileBytes(), before);
}

} // namespace
} // namespace hueshelf::testing
