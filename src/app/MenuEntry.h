#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

#include <functional>

namespace hueshelf::app {

// One line of a menu as plain data, so the rules for what a menu holds can be tested without
// any widget. Titles are the user's words as they should read; the widget layer escapes them.
struct MenuEntry {
    enum class Kind { action, separator, submenu };

    Kind kind = Kind::action;
    QString title;
    bool isCheckable = false;
    bool isChecked = false;
    std::function<void()> onTrigger;
    QList<MenuEntry> children;
    // Shown beside the title; the key works while the menu is open.
    QKeySequence shortcut;

    static MenuEntry separator() {
        MenuEntry entry;
        entry.kind = Kind::separator;
        return entry;
    }
    static MenuEntry action(const QString& title, std::function<void()> onTrigger,
                            const QKeySequence& shortcut = {}) {
        MenuEntry entry;
        entry.title = title;
        entry.onTrigger = std::move(onTrigger);
        entry.shortcut = shortcut;
        return entry;
    }
    static MenuEntry checkable(const QString& title, bool isChecked,
                               std::function<void()> onTrigger) {
        MenuEntry entry = action(title, std::move(onTrigger));
        entry.isCheckable = true;
        entry.isChecked = isChecked;
        return entry;
    }
    static MenuEntry submenu(const QString& title, QList<MenuEntry> children) {
        MenuEntry entry;
        entry.kind = Kind::submenu;
        entry.title = title;
        entry.children = std::move(children);
        return entry;
    }
};

} // namespace hueshelf::app
