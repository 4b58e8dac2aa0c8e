#pragma once

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

    static MenuEntry separator() { return MenuEntry{Kind::separator, {}, false, false, {}, {}}; }
};

} // namespace hueshelf::app
