#include "cli/ColorArguments.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli::ColorArguments {

QString unreadableMessage(const QStringList& inputs) {
    QStringList quoted;
    for (const QString& input : inputs)
        quoted << u'"' + input + u'"';
    return u"Not a color code: "_s + quoted.join(u", "_s);
}

} // namespace hueshelf::cli::ColorArguments
