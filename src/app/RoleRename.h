#pragma once

#include <QList>
#include <QString>
#include <QUuid>

namespace hueshelf::app {

// One colour renamed by "Name every color by its role", with what undo needs to put back.
struct RoleRename {
    QUuid id;
    QString from;
    QString to;
    bool wasAutoNamed = false;

    friend bool operator==(const RoleRename&, const RoleRename&) = default;
};

// "Renamed 2 colors: Sky → Primary, Snow → Background"
QString roleRenameSummary(const QList<RoleRename>& renames);

} // namespace hueshelf::app
