#include "app/ShrinkAnimation.h"

#include <QPainter>
#include <QVariantAnimation>

#include <cmath>

namespace hueshelf::app {

namespace {

int between(int from, int to, double progress) {
    return int(std::lround(from + (to - from) * progress));
}

QRect rectBetween(const QRect& from, const QRect& to, double progress) {
    return {between(from.x(), to.x(), progress), between(from.y(), to.y(), progress),
            std::max(1, between(from.width(), to.width(), progress)),
            std::max(1, between(from.height(), to.height(), progress))};
}

} // namespace

QRect ShrinkAnimation::frameAtIcon(QSize barSize, const QRect& icon) {
    const int width = std::max(1, int(std::lround(barSize.width() * iconScale)));
    const int height = std::max(1, int(std::lround(barSize.height() * iconScale)));
    const QPointF centre = QRectF(icon).center();
    return {int(std::lround(centre.x() - width / 2.0)), int(std::lround(centre.y() - height / 2.0)),
            width, height};
}

ShrinkAnimation::ShrinkAnimation(const QPixmap& snapshot)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput |
                           Qt::NoDropShadowWindowHint),
      m_snapshot(snapshot) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_DeleteOnClose);
}

void ShrinkAnimation::run(const QRect& from, const QRect& to, double fromOpacity, double toOpacity,
                          std::function<void()> finished) {
    setGeometry(from);
    setWindowOpacity(fromOpacity);
    show();
    m_animation = new QVariantAnimation(this);
    m_animation->setDuration(durationMs);
    m_animation->setStartValue(0.0);
    m_animation->setEndValue(1.0);
    m_animation->setEasingCurve(QEasingCurve::InOutQuad);
    connect(m_animation, &QVariantAnimation::valueChanged, this,
            [this, from, to, fromOpacity, toOpacity](const QVariant& value) {
                const double progress = value.toDouble();
                setGeometry(rectBetween(from, to, progress));
                setWindowOpacity(fromOpacity + (toOpacity - fromOpacity) * progress);
            });
    connect(m_animation, &QVariantAnimation::finished, this,
            [this, finished = std::move(finished)] {
                close();
                if (finished)
                    finished();
            });
    m_animation->start();
}

void ShrinkAnimation::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(rect(), m_snapshot);
}

} // namespace hueshelf::app
