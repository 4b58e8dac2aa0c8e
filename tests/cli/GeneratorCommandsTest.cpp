#include "StoreHome.h"
#include "color/ColorUtils.h"

#include <QImage>
#include <QRandomGenerator>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

class GeneratorCommands : public StoreHome {
protected:
    const ColorTemplate brand = [] {
        ColorTemplate made =
            makePalette(u"Brand"_s, {makeColor(u"Ink"_s, u"#111827"_s, false, true),
                                     makeColor(u"Paper"_s, u"#F9FAFB"_s)});
        made.isLocked = true;
        return made;
    }();
    const ColorTemplate other = makePalette(u"Other"_s, {makeColor(u"Red"_s, u"#FF0000"_s)});

    void seedTwo() { seed({brand, other}, uuidText(other.id)); }

    QString writeImage(const QImage& image, const char* format) {
        const QString path = home.path() + u"/picture."_s + QString::fromLatin1(format);
        EXPECT_TRUE(image.save(path, format));
        return path;
    }

    // Left half red, right half blue: two colours whatever the seeds.
    QString twoColorImage() {
        QImage image(40, 20, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, x < 20 ? qRgb(255, 0, 0) : qRgb(0, 0, 255));
        return writeImage(image, "png");
    }
};

TEST_F(GeneratorCommands, LookingNeverWritesTheFile) {
    seedTwo();
    const QByteArray before = fileBytes();
    const QString image = twoColorImage();
    for (const QStringList& arguments :
         {QStringList{u"scheme"_s, u"#3B82F6"_s, u"--json"_s}, QStringList{u"dark"_s, u"Brand"_s},
          QStringList{u"extract"_s, image}}) {
        const CliOutcome outcome = runCli(arguments);
        EXPECT_EQ(outcome.status, 0)
            << arguments.join(u' ').toStdString() << ": " << outcome.err.toStdString();
    }
    EXPECT_EQ(fileBytes(), before);
}

TEST_F(GeneratorCommands, SchemeCreateAddsAnActivePaletteUnderAFreeName) {
    seedTwo();
    ASSERT_EQ(runCli({u"scheme"_s, u"3b82f6"_s, u"--create"_s}).status, 0);
    const CliOutcome outcome = runCli({u"scheme"_s, u"3b82f6"_s, u"--create"_s, u"--json"_s});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();

    const QList<ColorTemplate> stored = fileTemplates();
    ASSERT_EQ(stored.size(), 4);
    const ColorTemplate& made = stored.constLast();
    EXPECT_EQ(made.name, u"My color scheme 2"_s);
    EXPECT_EQ(fileObject().value(PreferencesKeys::activeTemplateId).toString(), uuidText(made.id));
    // What was printed is the record as stored.
    EXPECT_EQ(outcome.json().object(), TemplateJson::templateToJson(made));
    ASSERT_EQ(made.colors.size(), 6);
    EXPECT_EQ(made.colors.constFirst().hex, u"#3B82F6"_s); // the canonical code, not the typed one
    for (const ColorItem& color : made.colors) {
        EXPECT_TRUE(color.isAutoNamed);
        EXPECT_FALSE(color.isLocked);
        EXPECT_FALSE(color.dividerBefore);
    }
}

TEST_F(GeneratorCommands, DarkCreateCopiesWithoutLocksAndLeavesTheSourceAlone) {
    seedTwo();
    const CliOutcome outcome =
        runCli({u"dark"_s, u"Brand"_s, u"--create"_s, u"--name"_s, u"  Night\t"_s});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();

    const QList<ColorTemplate> stored = fileTemplates();
    ASSERT_EQ(stored.size(), 3);
    EXPECT_EQ(stored.at(0), brand);
    const ColorTemplate& made = stored.constLast();
    EXPECT_EQ(made.name, u"Night"_s);
    EXPECT_FALSE(made.isLocked);
    ASSERT_EQ(made.colors.size(), 2);
    EXPECT_FALSE(made.colors.at(0).isLocked);
    EXPECT_NE(made.colors.at(0).id, brand.colors.at(0).id);
    EXPECT_EQ(made.colors.at(0).name, u"Ink"_s);

    // Without a name it is called after its source; the active palette is the default source.
    ASSERT_EQ(runCli({u"dark"_s, u"--create"_s}).status, 0);
    EXPECT_EQ(fileTemplates().constLast().name, u"Night (Dark)"_s);
}

TEST_F(GeneratorCommands, ExtractFindsTheColorsOfAPictureAndCanKeepThem) {
    seedTwo();
    const QString image = twoColorImage();
    const CliOutcome looked = runCli({u"extract"_s, image, u"--json"_s});
    ASSERT_EQ(looked.status, 0) << looked.err.toStdString();
    // The two halves are equal, so which comes first depends on the random start.
    QStringList colors;
    for (const QJsonValue& value : looked.json().object().value(u"colors"_s).toArray())
        colors << value.toString();
    colors.sort();
    EXPECT_EQ(colors, (QStringList{u"#0000FF"_s, u"#FF0000"_s}));

    ASSERT_EQ(runCli({u"extract"_s, image, u"--create"_s}).status, 0);
    const ColorTemplate made = fileTemplates().constLast();
    EXPECT_EQ(made.name, u"Extracted palette"_s);
    ASSERT_EQ(made.colors.size(), 2);
    for (const ColorItem& color : made.colors) {
        EXPECT_EQ(color.name, ColorUtils::colorName(color.hex));
        EXPECT_TRUE(color.isAutoNamed);
    }
}

TEST_F(GeneratorCommands, ExtractWithASeedRepeatsItself) {
    // Noise gives k-means something to disagree about from one start to another.
    QImage image(50, 50, QImage::Format_RGB32);
    QRandomGenerator noise(42);
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 50; ++x)
            image.setPixel(x, y, noise.generate() | 0xFF000000u);
    const QString path = writeImage(image, "png");
    const auto colorsWithSeed = [&](const QString& seedText) {
        return runCli({u"extract"_s, path, u"--seed"_s, seedText, u"--json"_s}).out;
    };
    const QString first = colorsWithSeed(u"7"_s);
    EXPECT_FALSE(first.isEmpty());
    EXPECT_EQ(colorsWithSeed(u"7"_s), first);
}

TEST_F(GeneratorCommands, UnusableInputFailsWithOneLine) {
    seedTwo();
    const QString image = twoColorImage();
    const QString garbage = home.path() + u"/garbage.png"_s;
    QFile file(garbage);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\x89PNG\r\n\x1a\n not really");
    file.close();

    const struct {
        QStringList arguments;
        QString message;
    } cases[] = {
        {{u"scheme"_s, u"nope"_s}, u"Not a color code: \"nope\"\n"_s},
        {{u"dark"_s, u"Missing"_s}, u"No palette is named \"Missing\" or has that id\n"_s},
        {{u"extract"_s, garbage}, u"Could not extract colors\n"_s},
        {{u"extract"_s, image, u"--max"_s, u"0"_s}, u"Could not extract colors\n"_s},
    };
    for (const auto& c : cases) {
        const CliOutcome outcome = runCli(c.arguments);
        EXPECT_EQ(outcome.status, 1) << c.arguments.join(u' ').toStdString();
        EXPECT_EQ(outcome.err, c.message) << c.arguments.join(u' ').toStdString();
        EXPECT_TRUE(outcome.out.isEmpty());
    }
}

TEST_F(GeneratorCommands, UsageErrors) {
    const QStringList cases[] = {
        {u"scheme"_s, u"fff"_s, u"--style"_s, u"Warm"_s},
        {u"scheme"_s, u"fff"_s, u"--name"_s, u"X"_s},
        {u"scheme"_s, u"fff"_s, u"--create"_s, u"--name"_s, u" \t"_s},
        {u"dark"_s, u"a"_s, u"b"_s},
        {u"extract"_s, u"x.png"_s, u"--max"_s, u"six"_s},
        {u"extract"_s, u"x.png"_s, u"--seed"_s, u"-1"_s},
        {u"extract"_s},
    };
    for (const QStringList& arguments : cases) {
        const CliOutcome outcome = runCli(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments.join(u' ').toStdString();
        EXPECT_TRUE(outcome.err.contains(u"Usage: hueshelf "_s)) << outcome.err.toStdString();
    }
    EXPECT_TRUE(filesInHome().isEmpty()); // a refused command creates nothing
}

} // namespace
} // namespace hueshelf::testing
