#include "color/ImageThumbnailReader.h"

#include "QtPrinters.h"
#include "color/ExtractionRandom.h"
#include "color/ImageColorExtractor.h"

#include <QBuffer>
#include <QDir>
#include <QImageWriter>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <functional>
#include <span>

using namespace Qt::StringLiterals;
using namespace hueshelf;

namespace {

constexpr QRgb kOrange = 0xFFE8A33B, kBlue = 0xFF2E6FD0;

const QString dataDir = QStringLiteral(HUESHELF_TEST_DATA_DIR "/");

QString folder() {
    static QTemporaryDir dir;
    return dir.path() + u'/';
}

QString write(const QString& name, const QByteArray& bytes) {
    QFile file(folder() + name);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    return file.fileName();
}

QByteArray encoded(const QImage& picture, const char* format, int quality = -1,
                   bool progressive = false) {
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    writer.setQuality(quality);
    writer.setProgressiveScanWrite(progressive);
    EXPECT_TRUE(writer.write(picture)) << qPrintable(writer.errorString());
    return buffer.data();
}

QByteArray randomBytes(qsizetype count, quint32 seed) {
    QByteArray bytes(count, '\0');
    QRandomGenerator(seed).fillRange(reinterpret_cast<quint32*>(bytes.data()), count / 4);
    return bytes;
}

// Two colours side by side, the left one over `split` of 160: the committed HEIC and CMYK
// files hold this picture at 160 by 160.
QImage halves(QSize size = {160, 160}, QRgb left = kOrange, QRgb right = kBlue, int split = 80) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(right);
    QPainter(&image).fillRect(0, 0, split * size.width() / 160, size.height(), QColor(left));
    return image;
}

// Gradients and a shape with a sharp edge: something like a photo.
QImage photo(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(
                x, y, qRgb(x * 255 / width, y * 255 / height, (x + y) * 127 / (width + height)));
    }
    QPainter painter(&image);
    painter.setBrush(QColor(30, 160, 90));
    painter.drawEllipse(QRect(width / 5, height / 4, width / 3, height / 2));
    return image;
}

QByteArray be32(quint32 value) {
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray pngChunk(const char* type, const QByteArray& data) {
    const QByteArray body = type + data;
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const char byte : body) {
        crc ^= std::uint8_t(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return be32(quint32(data.size())) + body + be32(~crc);
}

QByteArray pngHeader(quint32 width, quint32 height, int depth, int colorType, bool interlaced) {
    const char rest[] = {char(depth), char(colorType), 0, 0, char(interlaced)};
    return QByteArray("\x89PNG\r\n\x1A\n", 8) +
           pngChunk("IHDR", be32(width) + be32(height) + QByteArray(rest, 5));
}

// A PNG written sample by sample, for colour types, depths and interlacing Qt never writes:
// unfiltered rows of each Adam7 pass, or of the whole picture.
QByteArray handMadePng(QSize size, int colorType, int depth, bool interlaced,
                       const std::function<std::vector<int>(int, int)>& samples,
                       const QByteArray& chunks = {}) {
    const int adam7[7][4] = {{0, 8, 0, 8}, {4, 8, 0, 8}, {0, 4, 4, 8}, {2, 4, 0, 4},
                             {0, 2, 2, 4}, {1, 2, 0, 2}, {0, 1, 1, 2}};
    const int plain[1][4] = {{0, 1, 0, 1}};
    QByteArray raw;
    for (const auto& [x0, dx, y0, dy] :
         std::span<const int[4]>(interlaced ? adam7 : plain, interlaced ? 7 : 1)) {
        for (int y = y0; y < size.height() && x0 < size.width(); y += dy) {
            raw.append('\0');
            for (int x = x0; x < size.width(); x += dx) {
                for (const int sample : samples(x, y))
                    raw.append(depth == 16 ? QByteArray(1, char(sample >> 8)) + char(sample)
                                           : QByteArray(1, char(sample)));
            }
        }
    }
    return pngHeader(size.width(), size.height(), depth, colorType, interlaced) + chunks +
           pngChunk("IDAT", qCompress(raw).mid(4)) + pngChunk("IEND", {});
}

// Qt reads GIF but doesn't write it: two pixels, a four-colour table, and the codes clear,
// 0, 1, end at three bits each.
QByteArray twoPixelGif(QRgb left, QRgb right) {
    QByteArray gif("GIF89a\x02\x00\x01\x00\x81\x00\x00", 13);
    for (const QRgb c : {left, right, QRgb(0), QRgb(0)})
        gif.append(char(qRed(c))).append(char(qGreen(c))).append(char(qBlue(c)));
    return gif.append("\x2C\0\0\0\0\x02\0\x01\0\0\x02\x02\x44\x0A\0\x3B", 16);
}

std::optional<QImage> thumbnailOf(const QString& name, const QByteArray& bytes) {
    return ImageThumbnailReader::read(write(name, bytes));
}

// The premultiplied bytes of a thumbnail pixel are within `tolerance` of `expected`.
::testing::AssertionResult pixelIs(const QImage& thumbnail, int x, int y, QRgb expected,
                                   int tolerance = 0) {
    const uchar* px = thumbnail.constScanLine(y) + 4 * x;
    const int wanted[] = {qRed(expected), qGreen(expected), qBlue(expected), qAlpha(expected)};
    for (int i = 0; i < 4; ++i) {
        if (std::abs(px[i] - wanted[i]) > tolerance)
            return ::testing::AssertionFailure() << "pixel " << x << "," << y << " channel " << i
                                                 << " is " << int(px[i]) << ", not " << wanted[i];
    }
    return ::testing::AssertionSuccess();
}

TEST(ImageThumbnailReader, EveryFormatGivesTheSamePicture) {
    const QImage picture = halves();
    const QImage grey = halves({160, 120}, qRgb(40, 40, 40), qRgb(128, 128, 128))
                            .convertToFormat(QImage::Format_Grayscale8);
    const QByteArray png = encoded(picture, "png"), jpeg = encoded(picture, "jpeg", 90);
    const QString files[] = {write(u"p.png"_s, png),
                             write(u"p.jpg"_s, jpeg),
                             write(u"pp.jpg"_s, encoded(picture, "jpeg", 90, true)),
                             dataDir + u"halves-cmyk.jpg"_s,
                             write(u"p.gif"_s, twoPixelGif(kOrange, kBlue)),
                             write(u"p.webp"_s, encoded(picture, "webp", 100)),
                             write(u"p.tiff"_s, encoded(picture, "tiff")),
                             write(u"p.bmp"_s, encoded(picture, "bmp")),
                             dataDir + u"halves.heic"_s,
                             dataDir + u"halves-with-thumbnail.heic"_s,
                             write(u"png.jpg"_s, png), // content decides, not the name
                             write(u"jpeg"_s, jpeg),
                             write(u"grey.jpg"_s, encoded(grey, "jpeg", 95))};
    for (const QString& path : files) {
        SCOPED_TRACE(qPrintable(path));
        const std::optional<QImage> thumbnail = ImageThumbnailReader::read(path);
        ASSERT_TRUE(thumbnail);
        EXPECT_EQ(thumbnail->size(), QSize(50, 50));
        EXPECT_EQ(thumbnail->format(), QImage::Format_RGBA8888_Premultiplied);
        const bool isGrey = path.endsWith(u"grey.jpg"_s);
        EXPECT_TRUE(pixelIs(*thumbnail, 10, 25, isGrey ? qRgb(40, 40, 40) : kOrange, 4));
        EXPECT_TRUE(pixelIs(*thumbnail, 40, 25, isGrey ? qRgb(128, 128, 128) : kBlue, 4));
    }
    ExtractionRandom random(7);
    EXPECT_EQ(ImageColorExtractor::extractColors(files[0], 6, random)->size(), 2);
    EXPECT_FALSE(ImageColorExtractor::extractColors(files[0], 0, random)); // no colours asked
}

// A JPEG is decoded at the least reduction that keeps 50 pixels each way: this one at an eighth
// would differ from its PNG by about 8 on average.
TEST(ImageThumbnailReader, ANarrowJpegIsDecodedNearlyWhole) {
    const auto png = thumbnailOf(u"photo.png"_s, encoded(photo(52, 400), "png"));
    const auto jpeg = thumbnailOf(u"photo.jpg"_s, encoded(photo(52, 400), "jpeg", 90));
    ASSERT_TRUE(png && jpeg);
    int total = 0;
    for (qsizetype i = 0; i < png->sizeInBytes(); ++i)
        total += std::abs(png->constBits()[i] - jpeg->constBits()[i]);
    EXPECT_LT(total / double(png->sizeInBytes()), 3.0);
}

TEST(ImageThumbnailReader, PicturesAreStretchedAndTransparentPixelsLendNoColour) {
    // Red over three quarters of the long side: thumbnail pixel 37 is half of each.
    const QRgb red = qRgb(255, 0, 0), blue = qRgb(0, 0, 255), purple = qRgb(128, 0, 128);
    const QImage wide = halves({200, 50}, red, blue, 120);
    const auto thumbnail = thumbnailOf(u"wide.png"_s, encoded(wide, "png"));
    const auto tall = thumbnailOf(u"tall.tiff"_s,
                                  encoded(wide.transformed(QTransform(0, 1, 1, 0, 0, 0)), "tiff"));
    ASSERT_TRUE(thumbnail && tall);
    for (const int across : {0, 49}) {
        for (const auto& [along, color] : {std::pair{36, red}, {37, purple}, {38, blue}}) {
            EXPECT_TRUE(pixelIs(*thumbnail, along, across, color));
            EXPECT_TRUE(pixelIs(*tall, across, along, color));
        }
    }
    // Opaque red and fully transparent green, column by column: averaged straight they would
    // make olive; averaged premultiplied they make red at half alpha.
    QImage stripes(100, 10, QImage::Format_ARGB32);
    stripes.fill(QColor(0, 255, 0, 0));
    for (int x = 0; x < 100; x += 2)
        QPainter(&stripes).fillRect(x, 0, 1, 10, QColor(red));
    for (const char* format : {"png", "tiff", "webp"}) {
        const auto striped =
            thumbnailOf(u"s."_s + QString::fromUtf8(format), encoded(stripes, format, 100));
        ASSERT_TRUE(striped) << format;
        EXPECT_TRUE(pixelIs(*striped, 33, 41, qRgba(128, 0, 0, 128))) << format;
    }
}

TEST(ImageThumbnailReader, PngColourTypesDepthsAndInterlacing) {
    for (const QSize size : {QSize(1, 1), QSize(1, 9), QSize(13, 17), QSize(203, 64)}) {
        const QByteArray bytes = randomBytes(size.width() * size.height() * 3 + 4, size.width());
        const auto rgb = [&](int x, int y) {
            const auto* at =
                reinterpret_cast<const uchar*>(bytes.constData()) + 3 * (y * size.width() + x);
            return std::vector<int>{at[0], at[1], at[2]};
        };
        const auto plain = thumbnailOf(u"plain.png"_s, handMadePng(size, 2, 8, false, rgb));
        const auto adam7 = thumbnailOf(u"adam7.png"_s, handMadePng(size, 2, 8, true, rgb));
        ASSERT_TRUE(plain && adam7) << size.width();
        EXPECT_EQ(*adam7, *plain) << size.width();
    }
    const QByteArray palette = pngChunk("PLTE", "\x0A\x14\x1E\xC8\x64\x32") +
                               pngChunk("tRNS", QByteArray("\xFF\x00", 2)); // the second clear
    const std::tuple<const char*, int, int, std::vector<int>, QByteArray, QRgb> cases[] = {
        {"grey 16, rounded", 0, 16, {0x40F0}, {}, qRgb(65, 65, 65)},
        {"grey and alpha", 4, 8, {200, 51}, {}, qRgba(40, 40, 40, 51)},
        {"rgb 16", 2, 16, {0xFFFF, 0, 0x8080}, {}, qRgb(255, 0, 128)},
        {"rgba", 6, 8, {255, 0, 0, 128}, {}, qRgba(128, 0, 0, 128)},
        {"rgb, a transparent colour", 2, 8, {0, 0, 0}, pngChunk("tRNS", QByteArray(6, 0)), 0},
        {"palette", 3, 8, {0}, palette, qRgb(10, 20, 30)},
        {"palette, a transparent entry", 3, 8, {1}, palette, 0}};
    for (const auto& [name, type, depth, samples, chunks, expected] : cases) {
        const auto thumbnail =
            thumbnailOf(u"kind.png"_s,
                        handMadePng(
                            {9, 6}, type, depth, false, [&](int, int) { return samples; }, chunks));
        ASSERT_TRUE(thumbnail) << name;
        EXPECT_TRUE(pixelIs(*thumbnail, 25, 25, expected)) << name;
    }
}

TEST(ImageThumbnailReader, LimitsRefuseBeforeDecoding) {
    const QImage square = halves({100, 100});
    // The HEIC with a thumbnail has its 64 by 64 thumbnail decoded, not its 160 by 160 picture.
    const std::tuple<QString, qint64, qint64> limits[] = {
        {write(u"l.png"_s, encoded(square, "png")), 10'000, 1 << 30},
        {write(u"l.jpg"_s, encoded(square, "jpeg", 90)), 10'000, 1 << 30},
        {write(u"l.bmp"_s, encoded(square, "bmp")), 1 << 30, 40'000},
        {dataDir + u"halves.heic"_s, 1 << 30, 102'400},
        {dataDir + u"halves-with-thumbnail.heic"_s, 1 << 30, 16'384}};
    for (const auto& [path, pixels, bytes] : limits) { // readable at the limit, not under it
        EXPECT_TRUE(ImageThumbnailReader::read(path, {pixels, bytes})) << qPrintable(path);
        const ThumbnailLimits under{pixels - (pixels < bytes), bytes - (bytes < pixels)};
        EXPECT_FALSE(ImageThumbnailReader::read(path, under)) << qPrintable(path);
    }
}

TEST(ImageThumbnailReader, DamagedAndHostileFilesGiveNothing) {
    const QByteArray noise = randomBytes(640 * 480 * 4, 9);
    const QImage photo =
        QImage(reinterpret_cast<const uchar*>(noise.constData()), 640, 480, QImage::Format_RGB32)
            .copy();
    const QByteArray png = encoded(photo, "png"), jpeg = encoded(photo, "jpeg", 90);
    const QByteArray progressive = encoded(photo, "jpeg", 90, true);
    const auto claiming = [](QByteArray copy, const char* heightAndWidth) { // in the frame header
        return copy.replace(copy.indexOf("\xFF\xC0") + 5, 4, QByteArray(heightAndWidth, 4));
    };
    QFile heicFile(dataDir + u"halves.heic"_s);
    ASSERT_TRUE(heicFile.open(QIODevice::ReadOnly));
    const QByteArray heic = heicFile.readAll();
    const qsizetype coded = heic.indexOf("mdat") + 4; // the coded picture overwritten below
    QByteArray bmp = encoded(halves({8, 8}), "bmp");
    bmp.replace(18, 8, QByteArray("\xA0\x86\x01\0\xA0\x86\x01\0", 8)); // 100000 by 100000
    const QByteArray cases[] = {
        {},
        png.left(png.size() / 2),
        png.left(8) + randomBytes(5000, 1),
        pngHeader(100'000, 100'000, 8, 6, false) +
            pngChunk("IDAT", qCompress(QByteArray(1000, 0)).mid(4)),
        pngHeader(2'000'000, 1, 8, 2, false) + pngChunk("IEND", {}),
        jpeg.left(jpeg.size() / 2),
        progressive.left(progressive.lastIndexOf("\xFF\xDA")), // no last scan
        progressive.left(progressive.size() * 9 / 10),
        jpeg.left(3) + randomBytes(5000, 2),
        claiming(jpeg, "\xFF\xFF\xFF\xFF"), // 65535 by 65535
        claiming(jpeg, "\xEA\x60\xEA\x60"), // 60000 by 60000
        bmp + QByteArray(4096, 0),
        heic.left(heic.size() * 9 / 10),
        heic.left(coded) + randomBytes(heic.size() - coded, 4),
        heic.left(32) + randomBytes(2000, 3),
        "Not a picture at all, just words.\n"};
    QDir(folder()).mkdir(u"folder.png"_s);
    QStringList paths{folder() + u"missing.png"_s, folder() + u"folder.png"_s};
    for (const QByteArray& bytes : cases)
        paths << write(u"damaged-%1"_s.arg(paths.size()), bytes);
    for (const QString& path : paths)
        EXPECT_FALSE(ImageThumbnailReader::read(path)) << qPrintable(path);
    // Complete data without the end marker is read.
    for (const QByteArray& bytes :
         {encoded(halves(), "png").chopped(12), encoded(halves(), "jpeg", 90).chopped(2)}) {
        const auto thumbnail = thumbnailOf(u"no-end"_s, bytes);
        ASSERT_TRUE(thumbnail);
        EXPECT_TRUE(pixelIs(*thumbnail, 40, 49, kBlue, 4));
    }
}

} // namespace
