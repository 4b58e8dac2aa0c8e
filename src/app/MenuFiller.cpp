#include "app/MenuFiller.h"

#include <QAction>
#include <QMenu>

namespace hueshelf::app {

namespace {

// A lone "&" would mark a mnemonic and vanish from a palette's name.
QString menuText(const QString& title) {
    QString text = title;
    return text.replace(u'&', QStringLiteral("&&"));
}

} // namespace

void fillMenu(QMenu& menu, const QList<MenuEntry>& entries) {
    menu.clear();
    const auto oldSubmenus = menu.findChildren<QMenu*>(Qt::FindDirectChildrenOnly);
    for (QMenu* submenu : oldSubmenus)
        submenu->deleteLater();

    for (const MenuEntry& entry : entries) {
        switch (entry.kind) {
        case MenuEntry::Kind::separator:
            menu.addSeparator();
            break;
        case MenuEntry::Kind::submenu: {
            auto* submenu = new QMenu(menuText(entry.title), &menu);
            fillMenu(*submenu, entry.children);
            menu.addMenu(submenu);
            break;
        }
        case MenuEntry::Kind::action: {
            QAction* action = menu.addAction(menuText(entry.title));
            action->setCheckable(entry.isCheckable);
            action->setChecked(entry.isChecked);
            action->setShortcut(entry.shortcut);
            if (entry.onTrigger)
                QObject::connect(action, &QAction::triggered, action,
                                 [trigger = entry.onTrigger] { trigger(); });
            break;
        }
        }
    }
}

} // namespace hueshelf::app
