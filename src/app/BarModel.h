#pragma once

#include "app/BarSwatch.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUuid>

#include <optional>

class QSettings;

namespace hueshelf {
class ColorStorage;
class Platform;
} // namespace hueshelf

namespace hueshelf::app {

// What the bar shows and what its clicks do, without any widget: the active palette's name and
// colours as plain records, and the copy gesture.
class BarModel final : public QObject {
    Q_OBJECT
public:
    BarModel(ColorStorage& storage, Platform& platform, QSettings& settings,
             QObject* parent = nullptr);

    // The active palette's name, or "Select" while no palette is active.
    QString paletteName() const;
    QList<BarSwatch> swatches() const;

    // Puts the colour's code on the clipboard in the user's copy format and answers the text.
    // Copying is allowed in locked palettes too: locks guard changes only. A colour that is no
    // longer in the active palette copies nothing.
    std::optional<QString> copyColor(const QUuid& colorId);

Q_SIGNALS:
    // The palette name or its colours may have changed; the bar lays itself out again.
    void changed();

private:
    ColorStorage& m_storage;
    Platform& m_platform;
    QSettings& m_settings;
};

} // namespace hueshelf::app
