#include "app/SymbolIcons.h"

#include "AppTestSupport.h"
#include "app/ApplicationIcon.h"
#include "app/SymbolIconTable.h"

#include <QDir>
#include <QImage>
#include <QSvgRenderer>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

namespace {

QString toQString(std::string_view text) {
    return QString::fromLatin1(text.data(), qsizetype(text.size()));
}

QImage imageOf(const QIcon& icon, int side, qreal scale = 1.0, QIcon::Mode mode = QIcon::Normal) {
    QImage image = icon.pixmap(QSize(side, side), scale, mode)
                       .toImage()
                       .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(1.0);
    return image;
}

struct Coverage {
    int painted = 0;     // pixels with any alpha
    int wrongColour = 0; // painted pixels whose colour is not the one asked for
    int maxAlpha = 0;
};

// Compares in premultiplied form so that faint edge pixels are held to the colour as well.
Coverage coverageOf(const QImage& image, const QColor& expected) {
    Coverage result;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            const int alpha = qAlpha(pixel);
            if (alpha == 0)
                continue;
            ++result.painted;
            result.maxAlpha = std::max(result.maxAlpha, alpha);
            const auto off = [alpha](int channel, int wanted) {
                return std::abs(channel - wanted * alpha / 255) > 2;
            };
            if (off(qRed(pixel), expected.red()) || off(qGreen(pixel), expected.green()) ||
                off(qBlue(pixel), expected.blue()))
                ++result.wrongColour;
        }
    }
    return result;
}

class EverySymbolTest : public ::testing::TestWithParam<SymbolIconEntry> {
protected:
    void SetUp() override { testing::ensureApplication(); }
};

// Every name in the table has a drawing that exists, and it paints solid, in the asked colour
// only, at each size the program uses.
TEST_P(EverySymbolTest, DrawingExistsAndPaintsOnlyInTheAskedColour) {
    const QString name = toQString(GetParam().symbol);
    const QString path = symbolIconPath(name);
    ASSERT_EQ(path, toQString(GetParam().path));
    EXPECT_TRUE(QSvgRenderer(path).isValid()) << path.toStdString();
    const QIcon icon = symbolIcon(name, QColor(200, 40, 90));
    ASSERT_FALSE(icon.isNull());
    EXPECT_EQ(imageOf(icon, 16, 2.0), imageOf(icon, 32)); // each density drawn at its own pixels
    const int faded =
        coverageOf(imageOf(icon, 24, 1.0, QIcon::Disabled), QColor(200, 40, 90)).maxAlpha;
    EXPECT_TRUE(faded > 0 && faded <= 127) << "disabled is faded, not recoloured: " << faded;
    for (const int side : {16, 24}) {
        const Coverage coverage = coverageOf(imageOf(icon, side), QColor(200, 40, 90));
        EXPECT_GE(coverage.painted, side) << side << " px";
        EXPECT_EQ(coverage.wrongColour, 0) << side << " px";
        // At the drawing's own grid a 2-unit stroke covers whole pixels; at 16 px it is 1.3
        // pixels wide, so none need be fully covered, but the line must still be solid.
        EXPECT_GE(coverage.maxAlpha, side == 24 ? 255 : 160) << side << " px";
    }
}

INSTANTIATE_TEST_SUITE_P(Table, EverySymbolTest, ::testing::ValuesIn(symbolIconTable),
                         [](const ::testing::TestParamInfo<SymbolIconEntry>& entry) {
                             std::string name(entry.param.symbol);
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });

// Lookups search the table, so it must be sorted; every shipped drawing has a name; names are
// matched exactly.
TEST(SymbolIconsTest, TableIsSortedCompleteAndExact) {
    testing::ensureApplication();
    std::set<QString> mapped;
    for (std::size_t i = 0; i < symbolIconTable.size(); ++i) {
        if (i > 0) {
            EXPECT_LT(symbolIconTable[i - 1].symbol, symbolIconTable[i].symbol) << i;
        }
        mapped.insert(toQString(symbolIconTable[i].path));
    }
    (void)symbolIcon(u"plus"_s, Qt::black); // registers the resources
    const QStringList shipped = QDir(u":/icons"_s).entryList({u"*.svg"_s}, QDir::Files);
    ASSERT_FALSE(shipped.isEmpty());
    for (const QString& file : shipped)
        EXPECT_TRUE(mapped.contains(u":/icons/"_s + file)) << file.toStdString();
    for (const QString& name : {u""_s, u"lock.fil"_s, u"Lock.fill"_s, u":/icons/lock.svg"_s})
        EXPECT_TRUE(symbolIcon(name, Qt::black).isNull()) << name.toStdString();
}

// The highlighted tray icon is the drawing on a plate: where the plain icon is clear the plate
// shows, and the drawing still stands on it at every size a tray asks for.
TEST(SymbolIconsTest, TheHighlightedTrayIconIsTheDrawingOnAPlate) {
    testing::ensureApplication();
    const QColor plate(40, 90, 200);
    for (const int side : {16, 22, 48}) {
        const QImage plain = imageOf(applicationIcon(), side);
        const QImage lit = imageOf(highlightedApplicationIcon(plate), side);
        ASSERT_EQ(lit.size(), QSize(side, side)) << side;
        int plateShows = 0;
        int drawingShows = 0;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                const QColor pixel = lit.pixelColor(x, y);
                if (plain.pixelColor(x, y).alpha() == 0 && pixel == plate)
                    ++plateShows;
                if (pixel.alpha() == 255 && pixel != plate)
                    ++drawingShows;
            }
        }
        EXPECT_GT(plateShows, side) << side;
        EXPECT_GT(drawingShows, side) << side;
        EXPECT_EQ(lit.pixelColor(0, 0).alpha(), 0) << "rounded corners, " << side;
    }
}

} // namespace
} // namespace hueshelf::app
