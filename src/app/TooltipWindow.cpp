#include "app/TooltipWindow.h"

#include "app/BarTooltipPlacement.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWidget>

namespace hueshelf::app {

// The rounded label itself, a window of its own.
class TooltipLabel final : public QWidget {
public:
    TooltipLabel()
        : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                               Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus) {
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_TranslucentBackground);
        setFocusPolicy(Qt::NoFocus);
        QFont labelFont = font();
        labelFont.setPointSizeF(TooltipWindow::kPointSize);
        setFont(labelFont);
    }

    const QString& text() const { return m_text; }
    void setText(const QString& text) {
        m_text = text;
        setAccessibleName(text);
        update();
    }

    QSize sizeHint() const override {
        const QFontMetrics metrics(font());
        const QSize fitting(metrics.horizontalAdvance(m_text) + 2 * TooltipWindow::kPaddingX,
                            metrics.height() + 2 * TooltipWindow::kPaddingY);
        return fitting.isEmpty() ? TooltipWindow::kFallbackSize : fitting;
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::ToolTipBase));
        painter.drawRoundedRect(QRectF(rect()), TooltipWindow::kCornerRadius,
                                TooltipWindow::kCornerRadius);
        painter.setPen(palette().color(QPalette::ToolTipText));
        painter.drawText(rect().adjusted(TooltipWindow::kPaddingX, TooltipWindow::kPaddingY,
                                         -TooltipWindow::kPaddingX, -TooltipWindow::kPaddingY),
                         Qt::AlignCenter | Qt::TextSingleLine, m_text);
    }

private:
    QString m_text;
};

TooltipWindow::TooltipWindow() = default;
TooltipWindow::~TooltipWindow() = default;

void TooltipWindow::present(const QString& text, const QPoint& pointer) {
    if (!m_label)
        m_label = std::make_unique<TooltipLabel>();
    m_label->setText(text);
    const QSize size = m_label->sizeHint();
    std::optional<QRect> visibleFrame;
    if (const QScreen* screen = QGuiApplication::screenAt(pointer))
        visibleFrame = screen->availableGeometry();
    m_label->setGeometry(QRect(BarTooltipPlacement::topLeft(pointer, size, visibleFrame), size));
    m_label->show();
    m_label->raise();
}

void TooltipWindow::dismiss() {
    if (m_label)
        m_label->hide();
}

QWidget* TooltipWindow::window() const {
    return m_label.get();
}

QString TooltipWindow::text() const {
    return m_label ? m_label->text() : QString();
}

bool TooltipWindow::isVisible() const {
    return m_label && m_label->isVisible();
}

} // namespace hueshelf::app
