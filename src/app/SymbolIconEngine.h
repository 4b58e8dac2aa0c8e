#pragma once

#include <QByteArray>
#include <QColor>
#include <QHash>
#include <QIconEngine>
#include <QPixmap>

namespace hueshelf::app {

// Draws one single-colour SVG symbol in a fixed colour at whatever size and pixel density is
// asked for, so a symbol is as sharp in a 16-point toolbar on a 2x screen as at 32 points on a
// plain one. The drawing's own colours are ignored: only its coverage counts, and that is
// filled with the colour. Disabled icons are drawn faded.
class SymbolIconEngine final : public QIconEngine {
public:
    SymbolIconEngine(QByteArray svg, QColor color);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override;
    QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override;
    QString key() const override;
    bool isNull() override;

private:
    // `deviceSize` is in device pixels.
    QPixmap rendered(const QSize& deviceSize, QIcon::Mode mode);

    QByteArray m_svg;
    QColor m_color;
    QHash<quint64, QPixmap> m_cache; // by device size and mode
};

} // namespace hueshelf::app
