#include "color/ImageThumbnailReader.h"

#include "QtPrinters.h"
#include "color/ExtractionRandom.h"
#include "color/ImageColorExtractor.h"

#include <QByteArray>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <vector>

using namespace Qt::StringLiterals;
using namespace hueshelf;

namespace {

constexpr QRgb kOrange = 0xFFE8A33B;
constexpr QRgb kBlue = 0xFF2E6FD0;

QString dataFile(const char* name) {
    return QStringLiteral(HUESHELF_TEST_DATA_DIR "/") + QString::fromUtf8(name);
}

// --- Pictures ------------------------------------------------------------------------------

// Orange on the left half, blue on the right: the same picture as the committed HEIC files.
QImage halves(int width = 160, int height = 160) {
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(kBlue);
    QPainter(&image).fillRect(0, 0, width / 2, height, QColor::fromRgba(kOrange));
    return image;
}

// Something like a photo: smooth gradients, a few shapes, no flat areas.
QImage photoLike(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixel(
                x, y,
                qRgb(x * 255 / width, y * 255 / height, (x + y) * 127 / (width + height) + 64));
        }
    }
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(30, 160, 90));
    painter.drawEllipse(QRect(width / 5, height / 4, width / 3, height / 2));
    painter.setBrush(QColor(240, 220, 40));
    painter.drawRect(QRect(width * 3 / 5, height / 8, width / 4, height / 3));
    return image;
}

QImage noise(int width, int height, quint32 seed) {
    QRandomGenerator random(seed);
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixel(x, y, 0xFF000000 | random.bounded(0x1000000u));
        }
    }
    return image;
}

// --- Files made by hand --------------------------------------------------------------------

std::uint32_t crc32(const QByteArray& bytes) {
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const char byte : bytes) {
        crc ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
        }
    }
    return ~crc;
}

// Integers in the byte order of each format: big-endian for PNG and JPEG, little for the rest.
template <typename... Values>
void put(QByteArray& out, QDataStream::ByteOrder order, Values... values) {
    QDataStream stream(&out, QIODevice::Append);
    stream.setByteOrder(order);
    (stream << ... << values);
}
constexpr auto big = QDataStream::BigEndian;
constexpr auto little = QDataStream::LittleEndian;

QByteArray pngChunk(const char* type, const QByteArray& data) {
    const QByteArray body = QByteArray(type) + data;
    QByteArray chunk;
    put(chunk, big, quint32(data.size()));
    chunk.append(body);
    put(chunk, big, quint32(crc32(body)));
    return chunk;
}

QByteArray pngHeader(quint32 width, quint32 height, int bitDepth, int colorType, bool interlaced) {
    QByteArray ihdr;
    put(ihdr, big, width, height, quint8(bitDepth), quint8(colorType), quint8(0), quint8(0),
        quint8(interlaced ? 1 : 0));
    return QByteArray("\x89PNG\r\n\x1A\n", 8) + pngChunk("IHDR", ihdr);
}

// A PNG written sample by sample, so that colour types, bit depths and interlacing that Qt
// never writes can be tried. `samples(x, y)` gives one pixel's samples.
struct PngSpec {
    int width = 1;
    int height = 1;
    int colorType = 2;
    int bitDepth = 8;
    bool interlaced = false;
    std::function<std::vector<int>(int, int)> samples;
    QByteArray palette;
    QByteArray transparency;
};

QByteArray handMadePng(const PngSpec& spec) {
    // Rows of one pass each, samples packed most significant bit first, no filter.
    QByteArray raw;
    const auto appendRows = [&](int startX, int stepX, int startY, int stepY) {
        for (int y = startY; y < spec.height && startX < spec.width; y += stepY) {
            raw.append('\0');
            int bitsUsed = 0;
            std::uint32_t pending = 0;
            for (int x = startX; x < spec.width; x += stepX) {
                for (const int sample : spec.samples(x, y)) {
                    pending = (pending << spec.bitDepth) | std::uint32_t(sample);
                    for (bitsUsed += spec.bitDepth; bitsUsed >= 8; bitsUsed -= 8)
                        raw.append(char((pending >> (bitsUsed - 8)) & 0xFF));
                }
            }
            if (bitsUsed > 0)
                raw.append(char((pending << (8 - bitsUsed)) & 0xFF));
        }
    };
    if (spec.interlaced) {
        const int passes[7][4] = {{0, 8, 0, 8}, {4, 8, 0, 8}, {0, 4, 4, 8}, {2, 4, 0, 4},
                                  {0, 2, 2, 4}, {1, 2, 0, 2}, {0, 1, 1, 2}};
        for (const auto& pass : passes)
            appendRows(pass[0], pass[1], pass[2], pass[3]);
    } else {
        appendRows(0, 1, 0, 1);
    }
    QByteArray png = pngHeader(quint32(spec.width), quint32(spec.height), spec.bitDepth,
                               spec.colorType, spec.interlaced);
    if (!spec.palette.isEmpty())
        png += pngChunk("PLTE", spec.palette);
    if (!spec.transparency.isEmpty())
        png += pngChunk("tRNS", spec.transparency);
    // qCompress puts the length in front of a plain zlib stream.
    return png + pngChunk("IDAT", qCompress(raw).mid(4)) + pngChunk("IEND", {});
}

PngSpec rgbPng(const QImage& image, bool interlaced) {
    PngSpec spec;
    spec.width = image.width();
    spec.height = image.height();
    spec.interlaced = interlaced;
    spec.samples = [image](int x, int y) {
        const QRgb c = image.pixel(x, y);
        return std::vector<int>{qRed(c), qGreen(c), qBlue(c)};
    };
    return spec;
}

// Qt reads GIF but doesn't write it. Codes are kept at nine bits by a clear code every 100
// pixels, which every decoder must follow. Pixels with alpha 0 use the transparent index 255.
QByteArray handMadeGif(const QImage& image) {
    QList<QRgb> colors;
    QByteArray codes;
    std::uint32_t pending = 0;
    int bits = 0;
    const auto putCode = [&](int code) {
        for (pending |= std::uint32_t(code) << bits, bits += 9; bits >= 8; pending >>= 8, bits -= 8)
            codes.append(char(pending & 0xFF));
    };
    for (int i = 0; i < image.width() * image.height(); ++i) {
        if (i % 100 == 0)
            putCode(256);
        const QRgb c = image.pixel(i % image.width(), i / image.width()) | 0xFF000000;
        if (qAlpha(image.pixel(i % image.width(), i / image.width())) == 0) {
            putCode(255);
            continue;
        }
        if (!colors.contains(c))
            colors.append(c);
        putCode(int(colors.indexOf(c)));
    }
    putCode(257);
    if (bits > 0)
        codes.append(char(pending & 0xFF));
    QByteArray gif("GIF89a");
    put(gif, little, quint16(image.width()), quint16(image.height()));
    gif.append("\xF7\0\0", 3);
    for (int i = 0; i < 256; ++i) {
        const QRgb c = colors.value(i);
        gif.append(char(qRed(c))).append(char(qGreen(c))).append(char(qBlue(c)));
    }
    gif.append("\x21\xF9\x04\x01\x00\x00\xFF\x00\x2C", 9); // transparent index 255; image
    put(gif, little, quint32(0), quint16(image.width()), quint16(image.height()), quint8(0));
    gif.append('\x08'); // minimum code size
    for (qsizetype at = 0; at < codes.size(); at += 255)
        gif.append(char(codes.mid(at, 255).size())).append(codes.mid(at, 255));
    return gif.append("\0\x3B", 2);
}

QByteArray bmpHeader(quint32 width, quint32 height) {
    QByteArray bmp("BM");
    put(bmp, little, quint32(54 + 1024), quint32(0), quint32(54), quint32(40), width, height,
        quint16(1), quint16(24), quint32(0), quint32(0), quint32(2835), quint32(2835), quint32(0),
        quint32(0));
    return bmp + QByteArray(1024, '\0');
}

// A baseline JPEG's frame and scan headers and nothing else.
QByteArray jpegHeader(std::uint16_t width, std::uint16_t height) {
    QByteArray jpeg("\xFF\xD8\xFF\xC0\x00\x11\x08", 7);
    put(jpeg, big, height, width);
    jpeg.append("\x03\x01\x22\x00\x02\x11\x01\x03\x11\x01", 10);
    jpeg.append("\xFF\xDA\x00\x0C\x03\x01\x00\x02\x11\x03\x11\x00\x3F\x00", 14);
    return jpeg + QByteArray(4096, '\0');
}

QByteArray randomBytes(qsizetype count, quint32 seed) {
    QRandomGenerator random(seed);
    QByteArray bytes(count, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random.bounded(256));
    }
    return bytes;
}

// The bytes after `marker` (past an 8-byte box header) overwritten with noise, the size kept.
QByteArray scrambledAfter(const QByteArray& bytes, const char* marker) {
    QByteArray scrambled = bytes;
    const qsizetype start = scrambled.indexOf(marker) + 8;
    const QByteArray noise = randomBytes(scrambled.size() - start, 4);
    scrambled.replace(start, noise.size(), noise);
    return scrambled;
}

// --- Fixture -------------------------------------------------------------------------------

class ThumbnailFiles : public ::testing::Test {
protected:
    QString pathOf(const QString& name) const { return m_dir.filePath(name); }

    QString writeBytes(const QString& name, const QByteArray& bytes) const {
        QFile file(pathOf(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    QString writeImage(const QString& name, const QImage& image, const char* format,
                       int quality = -1, bool progressive = false) const {
        QImageWriter writer(pathOf(name), format);
        writer.setQuality(quality);
        writer.setProgressiveScanWrite(progressive);
        EXPECT_TRUE(writer.write(image)) << qPrintable(writer.errorString());
        return pathOf(name);
    }

    QByteArray bytesOf(const QString& path) const {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    QTemporaryDir m_dir;
};

using Bytes = std::array<int, 4>;

Bytes pixelBytes(const QImage& image, int x, int y) {
    const uchar* px = image.constScanLine(y) + 4 * x;
    return {px[0], px[1], px[2], px[3]};
}

::testing::AssertionResult near(const Bytes& actual, QRgb expected, int tolerance) {
    const Bytes wanted{qRed(expected), qGreen(expected), qBlue(expected), qAlpha(expected)};
    for (std::size_t i = 0; i < 4; ++i) {
        if (std::abs(actual[i] - wanted[i]) > tolerance) {
            return ::testing::AssertionFailure()
                   << ::testing::PrintToString(actual) << " is not within " << tolerance << " of "
                   << ::testing::PrintToString(wanted);
        }
    }
    return ::testing::AssertionSuccess();
}

Bytes bytesOfHex(const QString& hex) {
    const uint value = hex.mid(1).toUInt(nullptr, 16);
    return {static_cast<int>(value >> 16), static_cast<int>((value >> 8) & 0xFF),
            static_cast<int>(value & 0xFF), 255};
}

// --- Cases ---------------------------------------------------------------------------------

TEST_F(ThumbnailFiles, EveryFormatGivesTheSamePictureAndColours) {
    struct Case {
        const char* name;
        QString path;
        int tolerance;
    };
    const QImage picture = halves();
    const Case cases[] = {
        {"png", writeImage(u"p.png"_s, picture, "png"), 0},
        {"jpeg", writeImage(u"p.jpg"_s, picture, "jpeg", 90), 4},
        {"progressive jpeg", writeImage(u"pp.jpg"_s, picture, "jpeg", 90, true), 4},
        {"gif", writeBytes(u"p.gif"_s, handMadeGif(picture)), 0},
        {"webp", writeImage(u"p.webp"_s, picture, "webp", 100), 0},
        {"tiff", writeImage(u"p.tiff"_s, picture, "tiff"), 0},
        {"bmp", writeImage(u"p.bmp"_s, picture, "bmp"), 0},
        {"cmyk jpeg", dataFile("halves-cmyk.jpg"), 4},
        {"heic", dataFile("halves.heic"), 4},
        {"heic with a thumbnail", dataFile("halves-with-thumbnail.heic"), 4},
        {"png named as jpeg", writeBytes(u"png.jpg"_s, bytesOf(pathOf(u"p.png"_s))), 0},
        {"jpeg without a name", writeBytes(u"jpeg"_s, bytesOf(pathOf(u"p.jpg"_s))), 4},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::optional<QImage> thumbnail = ImageThumbnailReader::read(c.path);
        ASSERT_TRUE(thumbnail);
        EXPECT_EQ(thumbnail->size(), QSize(50, 50));
        EXPECT_EQ(thumbnail->format(), QImage::Format_RGBA8888_Premultiplied);
        EXPECT_TRUE(near(pixelBytes(*thumbnail, 10, 25), kOrange, c.tolerance));
        EXPECT_TRUE(near(pixelBytes(*thumbnail, 40, 25), kBlue, c.tolerance));

        ExtractionRandom random(7);
        const auto colors = ImageColorExtractor::extractColors(c.path, 6, random);
        ASSERT_TRUE(colors);
        ASSERT_EQ(colors->size(), 2) << qPrintable(colors->join(u' '));
        const Bytes first = bytesOfHex(colors->at(0));
        const Bytes second = bytesOfHex(colors->at(1));
        const bool orangeFirst = near(first, kOrange, c.tolerance);
        EXPECT_TRUE(near(orangeFirst ? first : second, kOrange, c.tolerance));
        EXPECT_TRUE(near(orangeFirst ? second : first, kBlue, c.tolerance));
    }
    ExtractionRandom random(1); // no colours asked means nothing, even for a good file
    EXPECT_FALSE(ImageColorExtractor::extractColors(cases[0].path, 0, random));
}

TEST_F(ThumbnailFiles, GreyscaleJpegComesOutAsGreys) {
    QImage grey(160, 120, QImage::Format_Grayscale8);
    grey.fill(128);
    QPainter(&grey).fillRect(0, 0, 80, 120, QColor(40, 40, 40));
    const auto thumbnail = ImageThumbnailReader::read(writeImage(u"grey.jpg"_s, grey, "jpeg", 95));
    ASSERT_TRUE(thumbnail);
    EXPECT_TRUE(near(pixelBytes(*thumbnail, 10, 25), qRgb(40, 40, 40), 2));
    EXPECT_TRUE(near(pixelBytes(*thumbnail, 40, 25), qRgb(128, 128, 128), 2));
}

TEST_F(ThumbnailFiles, PngAndJpegOfOnePhotoGiveNearlyOneThumbnail) {
    // Large photos are decoded at an eighth, small ones at the least reduction that keeps 50
    // pixels each way. At small sizes JPEG's own losses at sharp edges dominate: decoding the
    // small ones at an eighth too would leave a mean difference of about 8.
    struct Case {
        QSize size;
        int largest;
        double mean;
    };
    const Case cases[] = {{{1200, 800}, 8, 1.0}, {{64, 64}, 64, 3.0}, {{52, 400}, 64, 3.0}};
    for (const Case& c : cases) {
        const QSize size = c.size;
        SCOPED_TRACE(size.width() * 10000 + size.height());
        const QImage photo = photoLike(size.width(), size.height());
        const auto png = ImageThumbnailReader::read(writeImage(u"photo.png"_s, photo, "png"));
        const auto jpeg = ImageThumbnailReader::read(writeImage(u"photo.jpg"_s, photo, "jpeg", 90));
        ASSERT_TRUE(png);
        ASSERT_TRUE(jpeg);
        int largest = 0;
        long total = 0;
        for (int y = 0; y < 50; ++y) {
            for (int x = 0; x < 50; ++x) {
                const Bytes a = pixelBytes(*png, x, y);
                const Bytes b = pixelBytes(*jpeg, x, y);
                for (std::size_t i = 0; i < 4; ++i) {
                    largest = std::max(largest, std::abs(a[i] - b[i]));
                    total += std::abs(a[i] - b[i]);
                }
            }
        }
        EXPECT_LE(largest, c.largest);
        EXPECT_LT(static_cast<double>(total) / (50 * 50 * 4), c.mean);
    }
}

TEST_F(ThumbnailFiles, NonSquarePicturesAreStretchedNotLetterboxed) {
    struct Case {
        const char* name;
        QSize size;
        const char* format;
    };
    const Case cases[] = {
        {"wide png", {200, 50}, "png"},
        {"tall tiff", {50, 200}, "tiff"},
    };
    const QRgb red = qRgb(255, 0, 0);
    const QRgb blue = qRgb(0, 0, 255);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const bool wide = c.size.width() > c.size.height();
        // Red over the first three quarters of the long side: 150 pixels, 37.5 thumbnail
        // pixels, so thumbnail pixel 37 is half of each.
        QImage image(c.size, QImage::Format_ARGB32);
        image.fill(blue);
        QPainter(&image).fillRect(wide ? QRect(0, 0, 150, 50) : QRect(0, 0, 50, 150), red);
        const auto thumbnail = ImageThumbnailReader::read(
            writeImage(QString::fromUtf8(c.name).replace(u' ', u'-'), image, c.format));
        ASSERT_TRUE(thumbnail);
        const auto at = [&](int along, int across) {
            return wide ? pixelBytes(*thumbnail, along, across)
                        : pixelBytes(*thumbnail, across, along);
        };
        for (const int across : {0, 25, 49}) {
            EXPECT_TRUE(near(at(0, across), red, 0));
            EXPECT_TRUE(near(at(36, across), red, 0));
            EXPECT_TRUE(near(at(37, across), qRgb(128, 0, 128), 0));
            EXPECT_TRUE(near(at(38, across), blue, 0));
            EXPECT_TRUE(near(at(49, across), blue, 0));
        }
    }
}

TEST_F(ThumbnailFiles, TransparentPixelsLendNoColour) {
    // Opaque red and fully transparent green, column by column: averaged straight, they would
    // make olive; averaged premultiplied they make red at half alpha.
    QImage stripes(100, 10, QImage::Format_ARGB32);
    for (int x = 0; x < 100; ++x) {
        for (int y = 0; y < 10; ++y) {
            stripes.setPixel(x, y, x % 2 == 0 ? qRgba(255, 0, 0, 255) : qRgba(0, 255, 0, 0));
        }
    }
    const QString paths[] = {
        writeImage(u"s.png"_s, stripes, "png"),
        writeImage(u"s.tiff"_s, stripes, "tiff"),
        writeImage(u"s.webp"_s, stripes, "webp", 100),
        writeBytes(u"s.gif"_s, handMadeGif(stripes)),
    };
    for (const QString& path : paths) {
        SCOPED_TRACE(qPrintable(path));
        const auto thumbnail = ImageThumbnailReader::read(path);
        ASSERT_TRUE(thumbnail);
        EXPECT_TRUE(near(pixelBytes(*thumbnail, 0, 0), qRgba(128, 0, 0, 128), 0));
        EXPECT_TRUE(near(pixelBytes(*thumbnail, 33, 41), qRgba(128, 0, 0, 128), 0));
        ExtractionRandom random(3);
        EXPECT_EQ(ImageColorExtractor::extractColors(path, 6, random), QStringList{u"#FF0000"_s});
    }
}

TEST_F(ThumbnailFiles, InterlacedPngGivesTheSameThumbnailAsPlain) {
    const QSize sizes[] = {{1, 1}, {1, 9}, {7, 5}, {13, 17}, {100, 37}, {203, 64}};
    quint32 seed = 1;
    for (const QSize& size : sizes) {
        SCOPED_TRACE(size.width() * 1000 + size.height());
        const QImage picture = noise(size.width(), size.height(), seed++);
        const auto plain = ImageThumbnailReader::read(
            writeBytes(u"plain.png"_s, handMadePng(rgbPng(picture, false))));
        const auto interlaced = ImageThumbnailReader::read(
            writeBytes(u"adam7.png"_s, handMadePng(rgbPng(picture, true))));
        const auto bmp = ImageThumbnailReader::read(writeImage(u"same.bmp"_s, picture, "bmp"));
        ASSERT_TRUE(plain);
        ASSERT_TRUE(interlaced);
        ASSERT_TRUE(bmp);
        EXPECT_EQ(*interlaced, *plain);
        EXPECT_EQ(*bmp, *plain);
    }
}

TEST_F(ThumbnailFiles, PngColourTypesAndDepths) {
    struct Case {
        const char* name;
        int colorType;
        int bitDepth;
        std::vector<int> samples;
        QByteArray palette;
        QByteArray transparency;
        QRgb expected; // premultiplied
    };
    const QByteArray palette("\x0A\x14\x1E\xC8\x64\x32", 6);
    const QByteArray secondClear("\xFF\x00", 2);
    const Case cases[] = {
        {"grey", 0, 8, {100}, {}, {}, qRgba(100, 100, 100, 255)},
        {"grey 16 rounded", 0, 16, {0x40F0}, {}, {}, qRgba(65, 65, 65, 255)},
        {"grey 1 bit", 0, 1, {1}, {}, {}, qRgba(255, 255, 255, 255)},
        {"grey and alpha", 4, 8, {200, 51}, {}, {}, qRgba(40, 40, 40, 51)},
        {"rgb 16", 2, 16, {0xFFFF, 0, 0x8080}, {}, {}, qRgba(255, 0, 128, 255)},
        {"rgba", 6, 8, {255, 0, 0, 128}, {}, {}, qRgba(128, 0, 0, 128)},
        {"rgb with a transparent colour", 2, 8, {0, 0, 0}, {}, QByteArray(6, '\0'), 0},
        {"palette", 3, 2, {0}, palette, secondClear, qRgba(10, 20, 30, 255)},
        {"palette, transparent entry", 3, 2, {1}, palette, secondClear, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PngSpec spec{9,           6,
                     c.colorType, c.bitDepth,
                     false,       [&c](int, int) { return c.samples; },
                     c.palette,   c.transparency};
        const auto thumbnail =
            ImageThumbnailReader::read(writeBytes(u"kind.png"_s, handMadePng(spec)));
        ASSERT_TRUE(thumbnail);
        EXPECT_TRUE(near(pixelBytes(*thumbnail, 25, 25), c.expected, 0));
    }
}

TEST_F(ThumbnailFiles, LimitsRefuseBeforeDecoding) {
    struct Case {
        const char* name;
        QString path;
        ThumbnailLimits limits;
        bool readable;
    };
    const QImage square = halves(100, 100);
    const QString png = writeImage(u"l.png"_s, square, "png");
    const QString jpeg = writeImage(u"l.jpg"_s, square, "jpeg", 90);
    const QString bmp = writeImage(u"l.bmp"_s, square, "bmp");
    const QString heic = dataFile("halves.heic");
    const QString heicWithThumbnail = dataFile("halves-with-thumbnail.heic");
    const Case cases[] = {
        {"png over the pixels", png, {9'999, 1 << 30}, false},
        {"png at the pixels", png, {10'000, 1 << 30}, true},
        {"jpeg over the pixels", jpeg, {9'999, 1 << 30}, false},
        {"jpeg at the pixels", jpeg, {10'000, 1 << 30}, true},
        {"bmp over the bytes", bmp, {1 << 30, 39'999}, false},
        {"bmp at the bytes", bmp, {1 << 30, 40'000}, true},
        {"heic over the bytes", heic, {1 << 30, 102'399}, false},
        {"heic at the bytes", heic, {1 << 30, 102'400}, true},
        // Its 64 by 64 thumbnail is decoded instead of the 160 by 160 picture.
        {"heic thumbnail within the bytes", heicWithThumbnail, {1 << 30, 16'384}, true},
        {"heic thumbnail over the bytes", heicWithThumbnail, {1 << 30, 16'383}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(ImageThumbnailReader::read(c.path, c.limits).has_value(), c.readable);
    }
}

TEST_F(ThumbnailFiles, DamagedAndHostileFilesGiveNothing) {
    const QByteArray photoPng = bytesOf(writeImage(u"d.png"_s, photoLike(640, 480), "png"));
    const QByteArray photoJpeg = bytesOf(writeImage(u"d.jpg"_s, photoLike(640, 480), "jpeg", 90));
    const QByteArray progressiveJpeg =
        bytesOf(writeImage(u"dp.jpg"_s, photoLike(640, 480), "jpeg", 90, true));
    const QByteArray heic = bytesOf(dataFile("halves.heic"));
    QDir(m_dir.path()).mkdir(u"folder.png"_s);

    struct Case {
        const char* name;
        QString path;
    };
    const Case cases[] = {
        {"missing", pathOf(u"nothing-here.png"_s)},
        {"directory", pathOf(u"folder.png"_s)},
        {"zero bytes", writeBytes(u"empty.png"_s, {})},
        {"png cut in half", writeBytes(u"half.png"_s, photoPng.left(photoPng.size() / 2))},
        {"png cut after its header", writeBytes(u"header.png"_s, photoPng.left(40))},
        {"png signature, then noise",
         writeBytes(u"noise.png"_s, QByteArray("\x89PNG\r\n\x1A\n", 8) + randomBytes(5000, 1))},
        {"png claiming 100000 x 100000",
         writeBytes(u"huge.png"_s, pngHeader(100'000, 100'000, 8, 6, false) +
                                       pngChunk("IDAT", qCompress(QByteArray(1000, '\0')).mid(4)))},
        {"png wider than any row allowed",
         writeBytes(u"wide.png"_s, pngHeader(2'000'000, 1, 8, 2, false) + pngChunk("IEND", {}))},
        {"jpeg cut in half", writeBytes(u"half.jpg"_s, photoJpeg.left(photoJpeg.size() / 2))},
        {"progressive jpeg cut in half",
         writeBytes(u"halfp.jpg"_s, progressiveJpeg.left(progressiveJpeg.size() / 2))},
        {"progressive jpeg cut before its last scan",
         writeBytes(u"scansp.jpg"_s,
                    progressiveJpeg.left(progressiveJpeg.lastIndexOf("\xFF\xDA")))},
        {"progressive jpeg cut near its end",
         writeBytes(u"mostp.jpg"_s, progressiveJpeg.left(progressiveJpeg.size() * 9 / 10))},
        {"jpeg signature, then noise",
         writeBytes(u"noise.jpg"_s, QByteArray("\xFF\xD8\xFF", 3) + randomBytes(5000, 2))},
        {"jpeg claiming 65535 x 65535", writeBytes(u"huge.jpg"_s, jpegHeader(65535, 65535))},
        {"jpeg claiming 60000 x 60000", writeBytes(u"big.jpg"_s, jpegHeader(60000, 60000))},
        {"bmp claiming 100000 x 100000", writeBytes(u"huge.bmp"_s, bmpHeader(100'000, 100'000))},
        {"heic cut in half", writeBytes(u"half.heic"_s, heic.left(heic.size() / 2))},
        {"heic cut near its end", writeBytes(u"most.heic"_s, heic.left(heic.size() * 9 / 10))},
        {"heic with its coded picture overwritten",
         writeBytes(u"scrambled.heic"_s, scrambledAfter(heic, "mdat"))},
        {"heic header, then noise",
         writeBytes(u"noise.heic"_s, heic.left(32) + randomBytes(2000, 3))},
        {"text", writeBytes(u"notes.png"_s, "Not a picture at all, just words.\n")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_FALSE(ImageThumbnailReader::read(c.path));
        ExtractionRandom random(1);
        EXPECT_FALSE(ImageColorExtractor::extractColors(c.path, 6, random));
    }
}

TEST_F(ThumbnailFiles, CompleteDataWithoutTheEndMarkerIsRead) {
    const QByteArray png = bytesOf(writeImage(u"e.png"_s, halves(), "png"));
    const QByteArray jpeg = bytesOf(writeImage(u"e.jpg"_s, halves(), "jpeg", 90));
    ASSERT_TRUE(png.endsWith(pngChunk("IEND", {})));
    ASSERT_TRUE(jpeg.endsWith("\xFF\xD9"));
    const QString paths[] = {
        writeBytes(u"no-iend.png"_s, png.chopped(12)),
        writeBytes(u"no-eoi.jpg"_s, jpeg.chopped(2)),
    };
    for (const QString& path : paths) {
        SCOPED_TRACE(qPrintable(path));
        const auto thumbnail = ImageThumbnailReader::read(path);
        ASSERT_TRUE(thumbnail);
        EXPECT_TRUE(near(pixelBytes(*thumbnail, 40, 49), kBlue, 4));
    }
}

} // namespace
