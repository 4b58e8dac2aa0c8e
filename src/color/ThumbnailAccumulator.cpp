#include "color/ThumbnailAccumulator.h"

#include <algorithm>

namespace hueshelf {

ThumbnailAccumulator::ThumbnailAccumulator(int sourceWidth, int sourceHeight)
    : m_width(std::max(sourceWidth, 1)), m_height(std::max(sourceHeight, 1)),
      m_sums(static_cast<std::size_t>(side * side * 4), 0) {}

void ThumbnailAccumulator::addRow(int y, const uchar* rgba, int count, Alpha alpha, int firstX,
                                  int stepX) {
    if (y < 0 || y >= m_height || count <= 0 || firstX < 0 || stepX < 1) {
        return;
    }
    m_rowSums.fill(0);

    // Along the row: source column x spans [side * x, side * (x + 1)), thumbnail column j spans
    // [W * j, W * (j + 1)); a pixel adds to every column it overlaps, by the overlap.
    qint64 column = 0;
    qint64 columnEnd = m_width;
    for (int i = 0; i < count; ++i) {
        const qint64 x = firstX + qint64{i} * stepX;
        if (x >= m_width) {
            break;
        }
        const uchar* px = rgba + 4 * static_cast<qsizetype>(i);
        const std::uint64_t a = px[3];
        const std::uint64_t scale = alpha == Alpha::straight ? a : 255;
        const std::uint64_t values[4] = {px[0] * scale, px[1] * scale, px[2] * scale, a * 255};

        qint64 position = x * side;
        const qint64 end = position + side;
        while (columnEnd <= position) {
            ++column;
            columnEnd += m_width;
        }
        while (position < end) {
            const qint64 stop = std::min(end, columnEnd);
            const auto weight = static_cast<std::uint64_t>(stop - position);
            std::uint64_t* sums = m_rowSums.data() + 4 * column;
            sums[0] += weight * values[0];
            sums[1] += weight * values[1];
            sums[2] += weight * values[2];
            sums[3] += weight * values[3];
            position = stop;
            if (position == columnEnd) {
                ++column;
                columnEnd += m_width;
            }
        }
    }

    // Down the picture, the same overlap rule for the row as a whole.
    qint64 position = qint64{y} * side;
    const qint64 end = position + side;
    qint64 row = position / m_height;
    qint64 rowEnd = (row + 1) * m_height;
    while (position < end) {
        const qint64 stop = std::min(end, rowEnd);
        const auto weight = static_cast<std::uint64_t>(stop - position);
        std::uint64_t* sums = m_sums.data() + row * side * 4;
        for (std::size_t k = 0; k < m_rowSums.size(); ++k) {
            sums[k] += weight * m_rowSums[k];
        }
        position = stop;
        ++row;
        rowEnd += m_height;
    }
}

QImage ThumbnailAccumulator::image() const {
    QImage thumbnail(side, side, QImage::Format_RGBA8888_Premultiplied);
    // Every thumbnail pixel has weighed W x H units, each a byte times 255.
    const auto total = static_cast<std::uint64_t>(m_width * m_height) * 255;
    for (int y = 0; y < side; ++y) {
        uchar* out = thumbnail.scanLine(y);
        const std::uint64_t* sums = m_sums.data() + static_cast<std::size_t>(y) * side * 4;
        for (int k = 0; k < side * 4; ++k) {
            out[k] = static_cast<uchar>((sums[k] + total / 2) / total);
        }
    }
    return thumbnail;
}

} // namespace hueshelf
