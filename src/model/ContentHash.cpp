#include "model/ContentHash.h"

#include <QCryptographicHash>

namespace hueshelf {

namespace {
QLatin1StringView boolText(bool value) {
    return value ? QLatin1StringView("true") : QLatin1StringView("false");
}
} // namespace

QString contentHashText(const QString& name, const QList<ColorItem>& colors) {
    QString text = name;
    for (const ColorItem& color : colors) {
        text += u'|' + uuidText(color.id) + u':' + color.name + u':' + color.hex + u':' +
                boolText(color.isAutoNamed) + u':' + boolText(color.isLocked);
        // A label left behind on a colour that no longer starts a group must not count.
        if (color.dividerBefore) {
            if (color.dividerLabel.isEmpty())
                text += u"|d";
            else
                text += u"|d:" + color.dividerLabel;
        }
    }
    return text;
}

QString computeContentHash(const QString& name, const QList<ColorItem>& colors) {
    const QByteArray digest = QCryptographicHash::hash(contentHashText(name, colors).toUtf8(),
                                                       QCryptographicHash::Sha256);
    return QString::fromLatin1(digest.left(8).toHex());
}

} // namespace hueshelf
