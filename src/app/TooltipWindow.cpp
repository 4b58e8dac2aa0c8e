#include "app/TooltipWindow.h"

#include "app/BarTooltipPlacement.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWidget>

namespace hueshelf::app {

namespace {

// Where the card's parts stand, worked out once for its size and again for its drawing.
struct CardGeometry {
    QRectF dot;
    QRect title;
    QRect detail;
    std::optional<QRect> lastSynced;
    QSize size;
};

QFont withPointSize(QFont font, double pointSize, QFont::Weight weight) {
    font.setPointSizeF(pointSize);
    font.setWeight(weight);
    return font;
}

QFont titleFont(const QFont& base) {
    return withPointSize(base, TooltipWindow::kPointSize, QFont::DemiBold);
}

QFont lastSyncedFont(const QFont& base) {
    return withPointSize(base, SyncStatusCard::lastSyncedPointSize, QFont::Normal);
}

// The height of `text` wrapped at `width` in `font`.
int wrappedHeight(const QFont& font, int width, const QString& text) {
    return QFontMetrics(font)
        .boundingRect(QRect(0, 0, width, 10'000), Qt::TextWordWrap, text)
        .height();
}

CardGeometry cardGeometry(const SyncStatusCard& card, const QFont& base) {
    constexpr int pad = TooltipWindow::kCardPadding;
    constexpr int inner = SyncStatusCard::width - 2 * pad;
    CardGeometry geometry;
    const int titleHeight = QFontMetrics(titleFont(base)).height();
    constexpr int titleLeft = pad + TooltipWindow::kDotDiameter + TooltipWindow::kDotGap;
    geometry.dot = QRectF(pad, pad + (titleHeight - TooltipWindow::kDotDiameter) / 2.0,
                          TooltipWindow::kDotDiameter, TooltipWindow::kDotDiameter);
    geometry.title = QRect(titleLeft, pad, SyncStatusCard::width - pad - titleLeft, titleHeight);
    int y = geometry.title.bottom() + 1 + TooltipWindow::kCardLineGap;
    geometry.detail = QRect(pad, y, inner, wrappedHeight(base, inner, card.detail));
    y = geometry.detail.bottom() + 1;
    if (card.lastSynced) {
        y += TooltipWindow::kCardLineGap;
        geometry.lastSynced =
            QRect(pad, y, inner, wrappedHeight(lastSyncedFont(base), inner, *card.lastSynced));
        y = geometry.lastSynced->bottom() + 1;
    }
    geometry.size = QSize(SyncStatusCard::width, y + pad);
    return geometry;
}

} // namespace

// The rounded label itself, a window of its own: one line of text, or the sync card.
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

    const TooltipContent& content() const { return m_content; }
    void setContent(const TooltipContent& content) {
        m_content = content;
        if (const auto* card = std::get_if<SyncStatusCard>(&m_content)) {
            setAccessibleName(card->title);
            setAccessibleDescription(card->lastSynced ? card->detail + u'\n' + *card->lastSynced
                                                      : card->detail);
        } else {
            setAccessibleName(std::get<QString>(m_content));
            setAccessibleDescription(QString());
        }
        update();
    }

    QSize sizeHint() const override {
        if (const auto* card = std::get_if<SyncStatusCard>(&m_content))
            return cardGeometry(*card, font()).size;
        const QString& text = std::get<QString>(m_content);
        const QFontMetrics metrics(font());
        const QSize fitting(metrics.horizontalAdvance(text) + 2 * TooltipWindow::kPaddingX,
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
        if (const auto* card = std::get_if<SyncStatusCard>(&m_content)) {
            paintCard(painter, *card);
            return;
        }
        painter.setPen(palette().color(QPalette::ToolTipText));
        painter.drawText(rect().adjusted(TooltipWindow::kPaddingX, TooltipWindow::kPaddingY,
                                         -TooltipWindow::kPaddingX, -TooltipWindow::kPaddingY),
                         Qt::AlignCenter | Qt::TextSingleLine, std::get<QString>(m_content));
    }

private:
    void paintCard(QPainter& painter, const SyncStatusCard& card) {
        const CardGeometry geometry = cardGeometry(card, font());
        painter.setPen(Qt::NoPen);
        painter.setBrush(card.dotColor);
        painter.drawEllipse(geometry.dot);

        const QColor ink = palette().color(QPalette::ToolTipText);
        painter.setPen(ink);
        painter.setFont(titleFont(font()));
        painter.drawText(
            geometry.title, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
            painter.fontMetrics().elidedText(card.title, Qt::ElideRight, geometry.title.width()));
        painter.setFont(font());
        painter.drawText(geometry.detail, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                         card.detail);
        if (geometry.lastSynced) {
            QColor secondary = ink;
            secondary.setAlphaF(0.65f);
            painter.setPen(secondary);
            painter.setFont(lastSyncedFont(font()));
            painter.drawText(*geometry.lastSynced, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                             *card.lastSynced);
        }
    }

    TooltipContent m_content;
};

TooltipWindow::TooltipWindow() = default;
TooltipWindow::~TooltipWindow() = default;

void TooltipWindow::present(const QString& text, const QPoint& pointer) {
    presentContent(text, pointer);
}

void TooltipWindow::presentCard(const SyncStatusCard& card, const QPoint& pointer) {
    presentContent(card, pointer);
}

void TooltipWindow::presentContent(const TooltipContent& content, const QPoint& pointer) {
    if (!m_label)
        m_label = std::make_unique<TooltipLabel>();
    m_label->setContent(content);
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
    if (!m_label)
        return QString();
    const auto* text = std::get_if<QString>(&m_label->content());
    return text ? *text : QString();
}

std::optional<SyncStatusCard> TooltipWindow::card() const {
    if (!m_label)
        return std::nullopt;
    const auto* card = std::get_if<SyncStatusCard>(&m_label->content());
    return card ? std::optional(*card) : std::nullopt;
}

bool TooltipWindow::isVisible() const {
    return m_label && m_label->isVisible();
}

} // namespace hueshelf::app
