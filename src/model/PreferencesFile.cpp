#include "model/PreferencesFile.h"

#include "model/PreferencesKeys.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHashFunctions>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QSaveFile>

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
    return writeBytes(path, serialise(object));
}

bool writeBytes(const QString& path, const QByteArray& bytes) {
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

QByteArray serialise(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

std::optional<QByteArray> templatesData(const QJsonObject& file) {
    const QJsonValue value = file.value(PreferencesKeys::templates);
    if (!value.isArray())
        return std::nullopt;
    return QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact);
}

qint64 dataHash(const QByteArray& templatesData) {
    // Collisions would make a real change look like this run's own write. 64 bits of a hash keyed
    // afresh in every process, so that no value can be aimed at from outside, make that a
    // non-event at a small fraction of the cost of a cryptographic digest of megabytes.
    static const size_t key = size_t(QRandomGenerator::system()->generate64());
    return qint64(qHashBits(templatesData.constData(), size_t(templatesData.size()), key));
}

} // namespace hueshelf::PreferencesFile
