#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace hueshelf::app {

// The program names its pictures by symbol names ("lock.fill", "eye.slash", ...) everywhere,
// and this is the one place that knows which drawing stands for each. The drawings are
// single-colour outlines painted in the given colour, so they follow light and dark looks.
// An unknown name gives a null icon.
QIcon symbolIcon(const QString& symbolName, const QColor& color);

// The resource path of the drawing behind a symbol name; empty for an unknown name.
QString symbolIconPath(const QString& symbolName);

} // namespace hueshelf::app
