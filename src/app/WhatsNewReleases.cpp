#include "app/WhatsNewReleases.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

// The resources live in a static library: naming them here keeps the linker from dropping them
// and registers them before the notes are read. It must stand outside any namespace.
static void initWhatsNewResources() {
    Q_INIT_RESOURCE(resources);
}

using namespace Qt::StringLiterals;

namespace hueshelf::app {

namespace {

bool readString(const QJsonObject& object, const QString& key, QString* out) {
    const QJsonValue value = object.value(key);
    if (!value.isString())
        return false;
    *out = value.toString();
    return true;
}

std::optional<WhatsNewItem> readItem(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    WhatsNewItem item;
    if (!readString(object, u"icon"_s, &item.icon) ||
        !readString(object, u"title"_s, &item.title) ||
        !readString(object, u"description"_s, &item.description))
        return std::nullopt;
    return item;
}

std::optional<WhatsNewRelease> readRelease(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    WhatsNewRelease release;
    if (!readString(object, u"version"_s, &release.version) ||
        !readString(object, u"date"_s, &release.date) || !object.value(u"items"_s).isArray())
        return std::nullopt;
    for (const QJsonValue& itemValue : object.value(u"items"_s).toArray()) {
        const std::optional<WhatsNewItem> item = readItem(itemValue);
        if (!item)
            return std::nullopt;
        release.items.append(*item);
    }
    return release;
}

} // namespace

WhatsNewReleases WhatsNewReleases::fromJson(const QByteArray& json) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return {};
    const QJsonValue releases = document.object().value(u"releases"_s);
    if (!releases.isArray())
        return {};
    QList<WhatsNewRelease> list;
    for (const QJsonValue& value : releases.toArray()) {
        const std::optional<WhatsNewRelease> release = readRelease(value);
        if (!release)
            return {};
        list.append(*release);
    }
    return WhatsNewReleases(std::move(list));
}

WhatsNewReleases WhatsNewReleases::fromFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return fromJson(file.readAll());
}

const WhatsNewReleases& WhatsNewReleases::bundled() {
    static const WhatsNewReleases releases = [] {
        initWhatsNewResources();
        return fromFile(resourcePath());
    }();
    return releases;
}

QString WhatsNewReleases::resourcePath() {
    return u":/WhatsNew.json"_s;
}

std::optional<WhatsNewRelease> WhatsNewReleases::entry(const QString& version) const {
    for (const WhatsNewRelease& release : m_releases) {
        if (versionsEqual(release.version, version))
            return release;
    }
    return std::nullopt;
}

QList<WhatsNewRelease> WhatsNewReleases::shown(const QString& runningVersion) const {
    QList<WhatsNewRelease> list;
    for (const WhatsNewRelease& release : m_releases) {
        if (compareVersions(release.version, runningVersion) <= 0)
            list.append(release);
    }
    return list;
}

QList<int> WhatsNewReleases::versionNumbers(const QString& version) {
    QList<int> numbers;
    for (const QString& part : version.split(u'.'))
        numbers.append(part.toInt()); // 0 when not a number
    return numbers;
}

bool WhatsNewReleases::versionsEqual(const QString& a, const QString& b) {
    return versionNumbers(a) == versionNumbers(b);
}

int WhatsNewReleases::compareVersions(const QString& a, const QString& b) {
    const QList<int> left = versionNumbers(a);
    const QList<int> right = versionNumbers(b);
    for (qsizetype i = 0; i < 3; ++i) {
        const int l = left.value(i, 0);
        const int r = right.value(i, 0);
        if (l != r)
            return l < r ? -1 : 1;
    }
    return 0;
}

} // namespace hueshelf::app
