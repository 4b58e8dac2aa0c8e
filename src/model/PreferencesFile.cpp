#include "model/PreferencesFile.h"

#include "model/PreferencesKeys.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

#include <cstring>

namespace hueshelf::PreferencesFile {

std::optional<QJsonObject> read(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return document.object();
}

bool write(const QString& path, const QJsonObject& object) {
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray bytes = QJsonDocument(object).toJson(QJsonDocument::Indented);
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

std::optional<QByteArray> templatesData(const QJsonObject& file) {
    const QJsonValue value = file.value(PreferencesKeys::templates);
    if (!value.isArray())
        return std::nullopt;
    return QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact);
}

qint64 dataHash(const QByteArray& templatesData) {
    // Collisions would make a real change look like this run's own write; 64 bits of a
    // cryptographic digest make that a non-event, and it costs little next to the file read.
    const QByteArray digest =
        QCryptographicHash::hash(templatesData, QCryptographicHash::Sha256).left(8);
    qint64 value = 0;
    std::memcpy(&value, digest.constData(), sizeof value);
    return value;
}

} // namespace hueshelf::PreferencesFile
