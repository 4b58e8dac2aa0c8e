#include "app/HiddenToastWindow.h"

#include <QApplication>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPropertyAnimation>
#include <QScreen>

namespace hueshelf::app {

namespace {

constexpr int kSidePadding = 14;
constexpr int kBottomPadding = 9;
constexpr double kPointSize = 12.0;
constexpr double kBorderWidth = 0.5;
constexpr double kCornerRadius = 10.0;
const QRect kFallbackFrame(0, 0, 1440, 900);

} // namespace

HiddenToastWindow::HiddenToastWindow(Scheduler& scheduler)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput),
      m_scheduler(scheduler) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_DeleteOnClose);
    QFont font = QApplication::font();
    font.setPointSizeF(kPointSize);
    setFont(font);

    const QFontMetrics metrics(font);
    const int labelHeight = metrics.height();
    // As tall as the label with the same room above it as below.
    resize(metrics.horizontalAdvance(message) + 2 * kSidePadding, labelHeight + 2 * kBottomPadding);
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRect frame = screen ? screen->availableGeometry() : kFallbackFrame;
    move(frame.x() + (frame.width() - width()) / 2, frame.y());
    // Without a compositor translucent corners show black; the mask cuts them off.
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect()), kCornerRadius, kCornerRadius);
    setMask(QRegion(shape.toFillPolygon().toPolygon()));
}

// A toast replaced or closed early must not reach its window after it is gone.
HiddenToastWindow::~HiddenToastWindow() {
    m_stay.cancel();
}

void HiddenToastWindow::present() {
    setWindowOpacity(0.0);
    show();
    fadeTo(1.0, [] {});
    m_stay = m_scheduler.scheduleAfter((fadeMs + stayMs) / 1000.0, [this] {
        m_leaving = true;
        fadeTo(0.0, [this] { close(); });
    });
}

void HiddenToastWindow::fadeTo(double opacity, std::function<void()> then) {
    auto* animation = new QPropertyAnimation(this, "windowOpacity", this);
    animation->setDuration(fadeMs);
    animation->setEndValue(opacity);
    connect(animation, &QPropertyAnimation::finished, this, std::move(then));
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void HiddenToastWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF outline = QRectF(rect()).adjusted(kBorderWidth / 2, kBorderWidth / 2,
                                                   -kBorderWidth / 2, -kBorderWidth / 2);
    painter.setPen(QPen(palette().color(QPalette::Mid), kBorderWidth));
    painter.setBrush(palette().color(QPalette::ToolTipBase));
    painter.drawRoundedRect(outline, kCornerRadius, kCornerRadius);
    painter.setPen(palette().color(QPalette::ToolTipText));
    const QFontMetrics metrics(font());
    const QRect label(kSidePadding, height() - kBottomPadding - metrics.height(),
                      width() - 2 * kSidePadding, metrics.height());
    painter.drawText(label, Qt::AlignCenter, message);
}

} // namespace hueshelf::app
