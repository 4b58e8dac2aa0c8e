#pragma once

#include <QColor>
#include <QString>

class QLabel;
class QPushButton;
class QWidget;

namespace hueshelf::app {

// The few looks the auxiliary windows share: quieter secondary text, warnings, link buttons.
namespace WindowStyle {

// The accent tint of the interface.
QColor accent();
// Text that asks for attention without alarm.
QColor warning();

// Dimmed text; `fontScale` below 1 makes it smaller too.
void makeSecondary(QLabel& label, double fontScale = 1.0);
void makeWarning(QLabel& label);
void makeBold(QLabel& label, double pointSize = 0.0);
// A flat button that reads as a link.
QPushButton* linkButton(const QString& text, QWidget* parent);
QLabel* wrappedLabel(const QString& text, QWidget* parent);

} // namespace WindowStyle
} // namespace hueshelf::app
