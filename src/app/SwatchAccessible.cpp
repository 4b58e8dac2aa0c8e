#include "app/SwatchAccessible.h"

#include "app/CompactColorSwatch.h"

namespace hueshelf::app {

using namespace Qt::StringLiterals;

namespace {

QAccessibleInterface* swatchFactory(const QString& className, QObject* object) {
    if (className != QLatin1StringView(CompactColorSwatch::staticMetaObject.className()))
        return nullptr;
    return new SwatchAccessible(static_cast<CompactColorSwatch*>(object));
}

} // namespace

SwatchAccessible::SwatchAccessible(CompactColorSwatch* swatch)
    : QAccessibleWidget(swatch, QAccessible::Button) {}

CompactColorSwatch* SwatchAccessible::swatch() const {
    return static_cast<CompactColorSwatch*>(widget());
}

QString SwatchAccessible::editAction() const {
    return u"Edit "_s + swatch()->swatch().name;
}

QStringList SwatchAccessible::actionNames() const {
    return {pressAction(), editAction()};
}

void SwatchAccessible::doAction(const QString& actionName) {
    if (actionName == pressAction())
        Q_EMIT swatch()->copyRequested();
    else if (actionName == editAction())
        Q_EMIT swatch()->editRequested();
}

void SwatchAccessible::install() {
    static const bool installed = [] {
        QAccessible::installFactory(swatchFactory);
        return true;
    }();
    Q_UNUSED(installed);
}

} // namespace hueshelf::app
