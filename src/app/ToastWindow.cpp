#include "app/ToastWindow.h"

#include "app/PopoverPlacement.h"
#include "app/SymbolIcons.h"
#include "app/ToastManager.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

#include <algorithm>

namespace hueshelf::app {

namespace {

constexpr int kIconSide = 14;
constexpr int kCornerRadius = 8;
constexpr int kPaddingX = 10;
constexpr int kPaddingY = 6;

} // namespace

ToastWindow::ToastWindow(ToastManager& manager, QWidget* parent)
    : QWidget(parent, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                          Qt::WindowDoesNotAcceptFocus),
      m_manager(manager) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground);
    setFocusPolicy(Qt::NoFocus);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(kPaddingX, kPaddingY, kPaddingX, kPaddingY);
    row->setSpacing(6);
    m_icon = new QLabel(this);
    m_icon->setFixedSize(kIconSide, kIconSide);
    m_text = new QLabel(this);
    m_text->setTextFormat(Qt::PlainText);
    row->addWidget(m_icon);
    row->addWidget(m_text);

    connect(&m_manager, &ToastManager::currentChanged, this, &ToastWindow::follow);
    follow();
}

QString ToastWindow::text() const {
    return m_text->text();
}

void ToastWindow::follow() {
    const std::optional<Toast>& toast = m_manager.current();
    if (!toast) {
        hide();
        return;
    }
    m_text->setText(toast->message);
    setAccessibleName(toast->message);
    m_iconName = toast->icon;
    refreshIcon();
    adjustSize();

    const QRect source = toast->sourceRect;
    move(placement(source, size(), PopoverPlacement::visibleAreaAt(source.center())));
    show();
    raise();
}

void ToastWindow::refreshIcon() {
    if (!m_icon)
        return;
    const QIcon icon = m_iconName.isEmpty()
                           ? QIcon()
                           : symbolIcon(m_iconName, palette().color(QPalette::WindowText));
    m_icon->setVisible(!icon.isNull());
    m_icon->setPixmap(icon.isNull() ? QPixmap()
                                    : icon.pixmap(QSize(kIconSide, kIconSide), devicePixelRatio()));
}

QPoint ToastWindow::placement(const QRect& source, const QSize& size,
                              const std::optional<QRect>& screen) {
    const int sourceBottom = source.y() + source.height();
    int x = source.x() + (source.width() - size.width()) / 2;
    int y = source.y() - kGap - size.height();
    if (!screen)
        return {x, y};
    const int left = screen->x() + kScreenMargin;
    const int right = screen->x() + screen->width() - kScreenMargin;
    const int top = screen->y() + kScreenMargin;
    const int bottom = screen->y() + screen->height() - kScreenMargin;
    // Under the source when there's no room above; a source as tall as the screen leaves room
    // nowhere, and then the toast stays on screen over it.
    if (y < top)
        y = std::max(top, std::min(sourceBottom + kGap, bottom - size.height()));
    x = std::min(std::max(x, left), right - size.width());
    return {x, y};
}

void ToastWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor border = palette().color(QPalette::Mid);
    border.setAlpha(120);
    painter.setPen(QPen(border, 1.0));
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCornerRadius,
                            kCornerRadius);
}

void ToastWindow::changeEvent(QEvent* event) {
    // The symbol is painted in the text colour, so a switch between light and dark repaints it.
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        refreshIcon();
    QWidget::changeEvent(event);
}

} // namespace hueshelf::app
