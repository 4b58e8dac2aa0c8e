#include "app/WindowStyle.h"

#include <QLabel>
#include <QPalette>
#include <QPushButton>

namespace hueshelf::app::WindowStyle {

QColor accent() {
    return QColor(0x3B, 0x80, 0x77);
}

QColor warning() {
    return QColor(0xE0, 0x7B, 0x1A);
}

void makeSecondary(QLabel& label, double fontScale) {
    QPalette palette = label.palette();
    QColor text = palette.color(QPalette::WindowText);
    text.setAlphaF(0.6f);
    palette.setColor(QPalette::WindowText, text);
    label.setPalette(palette);
    if (fontScale != 1.0) {
        QFont font = label.font();
        font.setPointSizeF(font.pointSizeF() * fontScale);
        label.setFont(font);
    }
}

void makeWarning(QLabel& label) {
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, warning());
    label.setPalette(palette);
}

void makeBold(QLabel& label, double pointSize) {
    QFont font = label.font();
    font.setBold(true);
    if (pointSize > 0)
        font.setPointSizeF(pointSize);
    label.setFont(font);
}

QPushButton* linkButton(const QString& text, QWidget* parent) {
    auto* button = new QPushButton(text, parent);
    button->setFlat(true);
    button->setCursor(Qt::PointingHandCursor);
    QPalette palette = button->palette();
    palette.setColor(QPalette::ButtonText, palette.color(QPalette::Link));
    button->setPalette(palette);
    return button;
}

QLabel* wrappedLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace hueshelf::app::WindowStyle
