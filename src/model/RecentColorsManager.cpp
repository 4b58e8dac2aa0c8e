#include "model/RecentColorsManager.h"

#include "model/PreferencesKeys.h"

#include <QSettings>

namespace hueshelf {

namespace {

QString withoutHashes(const QString& text) {
    QString stripped = text.trimmed();
    stripped.remove(u'#');
    return stripped;
}

bool isSixHexDigits(const QString& text) {
    if (text.size() != 6)
        return false;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        const bool hex =
            (u >= u'0' && u <= u'9') || (u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F');
        if (!hex)
            return false;
    }
    return true;
}

} // namespace

RecentColorsManager::RecentColorsManager(QSettings& settings, QObject* parent)
    : QObject(parent), m_settings(settings) {
    // The load neither truncates nor writes back: a long list written by another version stays
    // as it is until the next record.
    const QStringList stored = m_settings.value(PreferencesKeys::recentColors).toStringList();
    for (const QString& entry : stored) {
        if (isSixHexDigits(withoutHashes(entry)))
            m_recentHexes.append(normalized(entry));
    }
}

QString RecentColorsManager::normalized(const QString& hex) {
    return u'#' + withoutHashes(hex).toUpper();
}

void RecentColorsManager::record(const QString& hex) {
    const QString entry = normalized(hex);
    QStringList updated = m_recentHexes;
    updated.removeAll(entry);
    updated.prepend(entry);
    if (updated.size() > limit)
        updated.resize(limit);
    m_recentHexes = updated;
    Q_EMIT recentHexesChanged();
    m_settings.setValue(PreferencesKeys::recentColors, m_recentHexes);
}

} // namespace hueshelf
