#include "sync/SyncDefaults.h"

#include "model/ColorItem.h"
#include "sync/SyncUuidText.h"

#include <QJsonDocument>
#include <QStringList>
#include <QVariant>

#include <algorithm>

namespace hueshelf::SyncDefaults {

std::optional<SyncConfiguration> loadConfiguration(const QSettings& settings) {
    const QVariant value = settings.value(configurationKey);
    QByteArray json;
    switch (value.typeId()) {
    case QMetaType::QString:
        json = value.toString().toUtf8();
        break;
    case QMetaType::QByteArray:
        json = value.toByteArray();
        break;
    default:
        return std::nullopt;
    }
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return SyncConfiguration::fromJson(document.object());
}

void storeConfiguration(QSettings& settings, const SyncConfiguration& configuration) {
    const QByteArray json = QJsonDocument(configuration.toJson()).toJson(QJsonDocument::Compact);
    settings.setValue(configurationKey, QString::fromUtf8(json));
}

QSet<QUuid> loadPendingTemplateChanges(const QSettings& settings) {
    // The INI form can't tell a list of one from a text, and gives nothing at all for a list of
    // none; both come back here as what they were.
    const QVariant value = settings.value(pendingChangesKey);
    QStringList texts;
    if (value.typeId() == QMetaType::QStringList || value.typeId() == QMetaType::QVariantList)
        texts = value.toStringList();
    else if (value.typeId() == QMetaType::QString)
        texts.append(value.toString());
    QSet<QUuid> ids;
    for (const QString& text : std::as_const(texts)) {
        if (const std::optional<QUuid> id = parseCanonicalUuid(text.trimmed()))
            ids.insert(*id);
    }
    return ids;
}

void storePendingTemplateChanges(QSettings& settings, const QSet<QUuid>& ids) {
    QStringList texts;
    texts.reserve(ids.size());
    for (const QUuid& id : ids)
        texts.append(uuidText(id));
    std::sort(texts.begin(), texts.end());
    settings.setValue(pendingChangesKey, texts);
}

} // namespace hueshelf::SyncDefaults
