#pragma once

#include <QString>

#include <functional>

namespace hueshelf::app {

// The editable name of one group in the groups popover, without its widget: what it shows, and
// the small edit cycle of begin, type, commit or cancel.
class GroupNameField {
public:
    static inline const QString unnamedText = QStringLiteral("Unnamed");
    static inline const QString unnamedSymbol = QStringLiteral("pencil");
    static inline const QString help = QStringLiteral("Rename this group");
    static inline const QString unnamedAccessibleLabel = QStringLiteral("Unnamed group. Rename");

    QString name;
    // False in a locked palette: a click then refuses instead of editing.
    bool canEdit = true;
    std::function<void()> onRefused;
    std::function<void(const QString&)> onCommit;

    bool isEditing() const { return m_isEditing; }
    bool focused() const { return m_focused; }
    const QString& draft() const { return m_draft; }
    bool isHovered = false;

    // Starts editing with the current name as draft, or calls onRefused and stays as it is.
    bool beginEditing();
    void setDraft(const QString& text);
    // Ends editing; onCommit hears the draft only when it differs from the name, so that a
    // click in and out saves nothing.
    void commit();
    void cancel();

    // What the field shows while not editing: the name, or "Unnamed" with the pencil.
    QString displayText() const { return name.isEmpty() ? unnamedText : name; }
    bool showsPencil() const { return name.isEmpty(); }
    QString accessibleLabel() const { return name.isEmpty() ? unnamedAccessibleLabel : name; }

private:
    bool m_isEditing = false;
    bool m_focused = false;
    QString m_draft;
};

} // namespace hueshelf::app
