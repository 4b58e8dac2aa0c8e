#include "app/GroupNameField.h"

namespace hueshelf::app {

bool GroupNameField::beginEditing() {
    if (!canEdit) {
        if (onRefused)
            onRefused();
        return false;
    }
    m_draft = name;
    m_isEditing = true;
    m_focused = true;
    return true;
}

void GroupNameField::setDraft(const QString& text) {
    if (m_isEditing)
        m_draft = text;
}

void GroupNameField::commit() {
    if (!m_isEditing)
        return;
    m_isEditing = false;
    m_focused = false;
    if (m_draft != name && onCommit)
        onCommit(m_draft);
}

void GroupNameField::cancel() {
    m_isEditing = false;
    m_focused = false;
    m_draft = name;
}

} // namespace hueshelf::app
