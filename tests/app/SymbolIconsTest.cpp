#include "app/SymbolIcons.h"

#include "AppTestSupport.h"
#include "app/SymbolIconTable.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <set>
#include <string>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

// Found by argument lookup, so failures name the symbol instead of dumping bytes.
static void PrintTo(const SymbolIconEntry& entry, std::ostream* out) {
    *out << entry.symbol << " -> " << entry.path;
}

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

// Test names allow letters, digits and underscores only.
std::string testName(const ::testing::TestParamInfo<SymbolIconEntry>& entry) {
    std::string name(entry.param.symbol);
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

class SymbolIconsTest : public ::testing::Test {
protected:
    void SetUp() override { testing::ensureApplication(); }
};

class EverySymbolTest : public ::testing::TestWithParam<SymbolIconEntry> {
protected:
    void SetUp() override { testing::ensureApplication(); }
};

TEST_P(EverySymbolTest, DrawingExistsAndPaintsOnlyInTheAskedColour) {
    const QString name = toQString(GetParam().symbol);
    const QString path = symbolIconPath(name);
    ASSERT_EQ(path, toQString(GetParam().path));
    const QIcon icon = symbolIcon(name, QColor(200, 40, 90));
    ASSERT_FALSE(icon.isNull()) << "no drawing at " << path.toStdString();
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_TRUE(QSvgRenderer(path).isValid());

    for (const int side : {16, 18, 24, 32}) {
        const Coverage coverage = coverageOf(imageOf(icon, side), QColor(200, 40, 90));
        EXPECT_GE(coverage.painted, side) << side << " px";
        EXPECT_EQ(coverage.wrongColour, 0) << side << " px";
        // At the drawing's own grid a 2-unit stroke covers whole pixels; at 16 px it is 1.3
        // pixels wide, so no pixel need be fully covered, but the line must still be solid.
        EXPECT_GE(coverage.maxAlpha, side == 24 ? 255 : 160) << side << " px";
    }
}

INSTANTIATE_TEST_SUITE_P(Table, EverySymbolTest, ::testing::ValuesIn(symbolIconTable), testName);

TEST_F(SymbolIconsTest, TableIsStrictlySortedSoLookupsFindEveryName) {
    for (std::size_t i = 1; i < symbolIconTable.size(); ++i)
        EXPECT_LT(symbolIconTable[i - 1].symbol, symbolIconTable[i].symbol) << i;
}

TEST_F(SymbolIconsTest, EveryShippedDrawingIsReachableFromTheTable) {
    std::set<QString> mapped;
    for (const SymbolIconEntry& entry : symbolIconTable)
        mapped.insert(toQString(entry.path));
    (void)symbolIcon(u"plus"_s, Qt::black); // registers the resources
    const QStringList shipped = QDir(u":/icons"_s).entryList({u"*.svg"_s}, QDir::Files);
    ASSERT_FALSE(shipped.isEmpty());
    for (const QString& file : shipped)
        EXPECT_TRUE(mapped.contains(u":/icons/"_s + file)) << file.toStdString();
}

TEST_F(SymbolIconsTest, UnknownNamesGiveNothing) {
    for (const QString& name :
         {u""_s, u"lock"_s, u"lock.fil"_s, u"lock.fill "_s, u"Lock.fill"_s, u"menubaricon"_s,
          u"AAA"_s, u"zzz"_s, u"icons/lock.svg"_s, u":/icons/lock.svg"_s}) {
        EXPECT_TRUE(symbolIcon(name, Qt::black).isNull()) << name.toStdString();
        EXPECT_TRUE(symbolIconPath(name).isEmpty()) << name.toStdString();
    }
}

TEST_F(SymbolIconsTest, EachSizeAndDensityIsDrawnAtItsOwnPixels) {
    const QIcon icon = symbolIcon(u"lock.fill"_s, Qt::black);
    for (const int side : {16, 18, 24, 32}) {
        const QPixmap plain = icon.pixmap(QSize(side, side), 1.0);
        EXPECT_EQ(plain.size(), QSize(side, side));
        const QPixmap dense = icon.pixmap(QSize(side, side), 2.0);
        EXPECT_EQ(dense.size(), QSize(side * 2, side * 2));
        EXPECT_DOUBLE_EQ(dense.devicePixelRatio(), 2.0);
        // A 2x icon is a fresh drawing at twice the pixels, not a blown-up small one.
        EXPECT_EQ(imageOf(icon, side, 2.0), imageOf(icon, side * 2)) << side;
    }
}

TEST_F(SymbolIconsTest, PaintingOnADenseSurfaceUsesItsDensity) {
    const QIcon icon = symbolIcon(u"checkmark.circle.fill"_s, QColor(92, 173, 107));
    QImage surface(32, 32, QImage::Format_ARGB32_Premultiplied);
    surface.setDevicePixelRatio(2.0);
    surface.fill(Qt::transparent);
    {
        QPainter painter(&surface);
        icon.paint(&painter, QRect(0, 0, 16, 16));
    }
    surface.setDevicePixelRatio(1.0);
    EXPECT_EQ(surface, imageOf(icon, 32));
}

TEST_F(SymbolIconsTest, ColourIsPartOfTheIdentity) {
    const QColor amber(212, 163, 77);
    const QIcon first = symbolIcon(u"lock.fill"_s, amber);
    EXPECT_EQ(first.cacheKey(), symbolIcon(u"lock.fill"_s, amber).cacheKey());

    const QColor grey(128, 128, 128);
    const QIcon other = symbolIcon(u"lock.fill"_s, grey);
    EXPECT_NE(first.cacheKey(), other.cacheKey());
    EXPECT_EQ(coverageOf(imageOf(other, 18), grey).wrongColour, 0);

    // The same drawing behind two names still comes out in each caller's colour.
    const QIcon plain = symbolIcon(u"paintpalette"_s, Qt::blue);
    const QIcon filled = symbolIcon(u"paintpalette.fill"_s, Qt::green);
    EXPECT_EQ(coverageOf(imageOf(plain, 18), Qt::blue).wrongColour, 0);
    EXPECT_EQ(coverageOf(imageOf(filled, 18), Qt::green).wrongColour, 0);
}

TEST_F(SymbolIconsTest, TranslucentColourKeepsItsAlpha) {
    const QColor faint(0, 0, 0, 128);
    const QIcon icon = symbolIcon(u"minus"_s, faint);
    EXPECT_NE(icon.cacheKey(), symbolIcon(u"minus"_s, Qt::black).cacheKey());
    const Coverage coverage = coverageOf(imageOf(icon, 24), faint);
    EXPECT_NEAR(coverage.maxAlpha, 128, 1);
    EXPECT_EQ(coverage.wrongColour, 0);
}

TEST_F(SymbolIconsTest, DisabledIconsAreFaded) {
    const QColor red(220, 30, 30);
    const QIcon icon = symbolIcon(u"trash.fill"_s, red);
    const Coverage normal = coverageOf(imageOf(icon, 24), red);
    const Coverage disabled = coverageOf(imageOf(icon, 24, 1.0, QIcon::Disabled), red);
    EXPECT_EQ(normal.maxAlpha, 255);
    EXPECT_GT(disabled.painted, 0);
    EXPECT_LT(disabled.maxAlpha, 128);
    EXPECT_EQ(disabled.wrongColour, 0);
}

TEST_F(SymbolIconsTest, TrayGlyphIsASolidPaletteWithOpenWells) {
    const QImage image = imageOf(symbolIcon(u"MenuBarIcon"_s, Qt::black), 24);
    EXPECT_EQ(qAlpha(image.pixel(4, 16)), 255); // the body
    EXPECT_EQ(qAlpha(image.pixel(7, 12)), 0);   // a paint well is cut out
    EXPECT_EQ(qAlpha(image.pixel(20, 18)), 0);  // the thumb notch
    EXPECT_EQ(qAlpha(image.pixel(1, 1)), 0);
}

} // namespace
} // namespace hueshelf::app
