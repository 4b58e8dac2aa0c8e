#pragma once

#include "color/ExtractedSwatch.h"
#include "color/ImageExtractionJob.h"
#include "util/Scheduler.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace hueshelf {
class ColorStorage;
} // namespace hueshelf

namespace hueshelf::app {

namespace ExtractPaletteTexts {
using namespace Qt::StringLiterals;
inline const QString title = u"Extract colors"_s;
inline const QString nameFieldLabel = u"Palette name"_s;
inline const QString defaultTemplateName = u"Extracted palette"_s;
inline const QString renameHint = u"Click a name to rename it"_s;
inline const QString cancelButton = u"Cancel"_s;
inline const QString createButton = u"Create palette"_s;
inline const QString createTint = u"#3B8077"_s;

inline const QString infoTitle = u"How it works"_s;
inline const QStringList infoLines = {
    u"Drop any image onto the color bar and HueShelf will pick out the most distinct colors to "
    u"build a new palette."_s,
    u"Tip: Images with a few bold colors work best. Photos with lots of gradients may produce "
    u"similar shades."_s,
    u"Supports PNG, JPEG, HEIC, and TIFF"_s,
    u"Extracts up to 6 dominant colors"_s,
    u"Click any color name to rename it"_s,
};

inline const QString failureMessage = u"Could not extract colors"_s;
inline const QString failureIcon = u"exclamationmark.triangle"_s;
inline constexpr double failureToastSeconds = 2.0;
} // namespace ExtractPaletteTexts

// From a dropped image to a new palette, without the popover's window: the extraction off the
// main thread, the swatches and palette name the popover edits, and "Create palette". The
// working copy lives only until the popover closes.
class ExtractPaletteModel final : public QObject {
    Q_OBJECT
public:
    // The popover opens this long after the result arrives, so that the drop can end first.
    static constexpr double openDelaySeconds = 0.1;

    ExtractPaletteModel(ColorStorage& storage, Scheduler& scheduler, QObject* parent = nullptr);
    ~ExtractPaletteModel() override;

    // Extracts up to six colours from the image file; the result comes to `present`.
    void start(const QString& path);
    // A result on the main thread. Nothing found (absent or empty): the failure toast and
    // nothing else. Otherwise fresh swatches under their automatic names, the default palette
    // name, and the popover opens after openDelaySeconds.
    void present(const std::optional<QStringList>& colors);

    // --- State ---------------------------------------------------------------------------------

    bool isOpen() const { return m_isOpen; }
    const QList<ExtractedSwatch>& swatches() const { return m_swatches; }
    const QString& paletteName() const { return m_paletteName; }

    // --- Edits ---------------------------------------------------------------------------------

    // False for an id that isn't among the swatches. The name is kept as typed until confirm.
    bool renameSwatch(const QUuid& id, const QString& name);
    void setPaletteName(const QString& name);

    // "Create palette" does something only with a name that isn't all blanks.
    bool canConfirm() const;
    // Adds the swatches as a new palette under a unique name, makes it current, announces it
    // and closes. False, and nothing happens, when canConfirm is false.
    bool confirm();
    // "Cancel": closes without touching the store.
    void cancel();

Q_SIGNALS:
    // Something the popover draws changed.
    void changed();
    // The popover should open now.
    void openRequested();
    // The popover should close, after "Create palette" or "Cancel".
    void closed();
    // A result was handled, found or not.
    void extractionFinished();

private:
    void close();

    ColorStorage& m_storage;
    Scheduler& m_scheduler;
    ImageExtractionJob m_job;

    bool m_isOpen = false;
    QList<ExtractedSwatch> m_swatches;
    QString m_paletteName;
    TaskHandle m_openTask;
};

} // namespace hueshelf::app
