#include "app/SymbolIconEngine.h"

#include <QImage>
#include <QPaintDevice>
#include <QPainter>
#include <QSvgRenderer>

#include <utility>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

namespace {

// How strongly a disabled symbol still shows: enough to read, clearly not clickable.
constexpr qreal disabledOpacity = 0.38;

quint64 cacheKey(const QSize& size, QIcon::Mode mode) {
    return (quint64(quint32(size.width())) << 32) | (quint64(quint16(size.height())) << 16) |
           quint64(mode);
}

} // namespace

SymbolIconEngine::SymbolIconEngine(QByteArray svg, QColor color)
    : m_svg(std::move(svg)), m_color(color) {}

void SymbolIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
                             QIcon::State state) {
    const qreal scale = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    const QSize deviceSize = (QSizeF(rect.size()) * scale).toSize();
    painter->drawPixmap(rect, scaledPixmap(deviceSize, mode, state, scale));
}

QPixmap SymbolIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) {
    return rendered(size, mode);
}

QPixmap SymbolIconEngine::scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State,
                                       qreal scale) {
    QPixmap result = rendered(size, mode);
    result.setDevicePixelRatio(scale);
    return result;
}

QSize SymbolIconEngine::actualSize(const QSize& size, QIcon::Mode, QIcon::State) {
    return size;
}

QIconEngine* SymbolIconEngine::clone() const {
    return new SymbolIconEngine(m_svg, m_color);
}

QString SymbolIconEngine::key() const {
    return u"hueshelf.symbol"_s;
}

bool SymbolIconEngine::isNull() {
    return m_svg.isEmpty();
}

QPixmap SymbolIconEngine::rendered(const QSize& deviceSize, QIcon::Mode mode) {
    if (deviceSize.isEmpty() || m_svg.isEmpty())
        return QPixmap();
    const quint64 key = cacheKey(deviceSize, mode);
    if (const auto found = m_cache.constFind(key); found != m_cache.constEnd())
        return *found;

    QImage image(deviceSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        QSvgRenderer renderer(m_svg);
        // The drawings are square; a non-square request gets the largest centred square.
        const int side = qMin(deviceSize.width(), deviceSize.height());
        const QRectF target((deviceSize.width() - side) / 2.0, (deviceSize.height() - side) / 2.0,
                            side, side);
        renderer.render(&painter, target);
        QColor fill = m_color;
        if (mode == QIcon::Disabled)
            fill.setAlphaF(float(fill.alphaF() * disabledOpacity));
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), fill);
    }
    QPixmap result = QPixmap::fromImage(std::move(image));
    m_cache.insert(key, result);
    return result;
}

} // namespace hueshelf::app
