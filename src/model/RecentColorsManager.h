#pragma once

#include <QObject>
#include <QStringList>

class QSettings;

namespace hueshelf {

// The colours the user last copied or picked, across palettes and runs, most recent first, for
// the swatch editor's strip. It stands beside the palette store and never touches palettes.
class RecentColorsManager final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList recentHexes READ recentHexes NOTIFY recentHexesChanged)

public:
    static constexpr qsizetype limit = 8;

    // Loads at once from the settings store; entries that aren't six hex digits are dropped.
    explicit RecentColorsManager(QSettings& settings, QObject* parent = nullptr);

    const QStringList& recentHexes() const { return m_recentHexes; }

    // Puts a colour at the front. It is not validated here: text that isn't a colour stays
    // until the next load drops it.
    void record(const QString& hex);

    // "#" and the text without blanks or "#"s, upper-cased.
    static QString normalized(const QString& hex);

Q_SIGNALS:
    void recentHexesChanged();

private:
    QSettings& m_settings;
    QStringList m_recentHexes;
};

} // namespace hueshelf
