#include "model/ColorItem.h"
#include "sync/SyncFolder.h"

#include <QDir>
#include <QJsonDocument>

namespace hueshelf::SyncFolder {

using namespace Qt::StringLiterals;

QString templateFileName(const QUuid& id) {
    return uuidText(id) + u".json"_s;
}

QString manifestPath(const QString& syncFolder) {
    return QDir(syncFolder).filePath(manifestFileName);
}

QString settingsPath(const QString& syncFolder) {
    return QDir(syncFolder).filePath(settingsFileName);
}

QString templatesFolderPath(const QString& syncFolder) {
    return QDir(syncFolder).filePath(templatesFolderName);
}

QString templateFilePath(const QString& templatesFolder, const QUuid& id) {
    return QDir(templatesFolder).filePath(templateFileName(id));
}

QByteArray encode(const QJsonObject& object) {
    // QJsonObject keeps its keys sorted, and Qt writes every finite number in the shortest form
    // that reads back to the same double, so time stamps survive bit for bit. (Minus zero is
    // written as 0; it compares equal, and no clock gives it.)
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

} // namespace hueshelf::SyncFolder
