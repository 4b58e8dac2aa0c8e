#include "aitools/AIToolConnector.h"
#include "aitools/ForeignFiles.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace hueshelf {

std::optional<QHash<QString, double>> AIToolConnector::lastUsedTimes() const {
    return readLastUsedFile(lastUsedPath);
}

std::optional<QHash<QString, double>> AIToolConnector::readLastUsedFile(const QString& path) {
    const std::optional<QByteArray> bytes = ForeignFiles::readBytes(path);
    if (!bytes)
        return std::nullopt;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(*bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    QHash<QString, double> times;
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end(); ++it) {
        // One value of another kind makes the whole file suspect.
        if (!it.value().isDouble())
            return std::nullopt;
        times.insert(it.key(), it.value().toDouble());
    }
    return times;
}

} // namespace hueshelf
