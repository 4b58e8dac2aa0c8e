#include "app/RoleRename.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

QString roleRenameSummary(const QList<RoleRename>& renames) {
    QStringList changes;
    for (const RoleRename& rename : renames) {
        changes.append(rename.from + u" → "_s + rename.to);
    }
    const QString lead = renames.size() == 1
                             ? u"Renamed 1 color: "_s
                             : u"Renamed "_s + QString::number(renames.size()) + u" colors: "_s;
    return lead + changes.join(u", "_s);
}

} // namespace hueshelf::app
