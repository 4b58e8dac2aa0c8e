#pragma once

#include <QImage>
#include <QtGlobal>

#include <array>
#include <cstdint>
#include <vector>

namespace hueshelf {

// Shrinks (or stretches) a picture fed row by row into the 50 by 50 thumbnail, each thumbnail
// pixel the exact area average of the source pixels it covers, weighted by how much of each it
// covers, in premultiplied space so that transparent pixels lend no colour. Whatever decoder
// feeds it, the same picture gives the same thumbnail. It keeps the thumbnail's sums and one
// row's, never the picture.
class ThumbnailAccumulator {
public:
    enum class Alpha { straight, premultiplied };

    static constexpr int side = 50;

    // Both at least 1.
    ThumbnailAccumulator(int sourceWidth, int sourceHeight);

    // `count` RGBA pixels, 4 bytes each, of source row `y` at columns firstX, firstX + stepX,
    // and so on (a step above 1 serves interlaced passes). Rows may come in any order; each
    // source pixel should come once. Pixels outside the source are ignored.
    void addRow(int y, const uchar* rgba, int count, Alpha alpha, int firstX = 0, int stepX = 1);

    // The thumbnail as Format_RGBA8888_Premultiplied.
    QImage image() const;

private:
    qint64 m_width;
    qint64 m_height;
    // Sums in units of byte x byte: a source pixel weighs `side` along each axis, a thumbnail
    // pixel covers m_width by m_height of those units.
    std::vector<std::uint64_t> m_sums;
    std::array<std::uint64_t, side * 4> m_rowSums{};
};

} // namespace hueshelf
