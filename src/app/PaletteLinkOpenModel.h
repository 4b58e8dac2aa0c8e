#pragma once

#include "exchange/LinkImport.h"
#include "exchange/PaletteImport.h"
#include "exchange/PaletteLink.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <optional>

namespace hueshelf {
class Clock;
class ColorStorage;
class Scheduler;
} // namespace hueshelf

namespace hueshelf::app {

namespace PaletteLinkOpenTexts {
// The alert's title and button are those of a palette file that can't be opened.
inline const QString alertText = LinkImport::openFailureText;
inline const QString previewTitle = QStringLiteral("Open in HueShelf");
inline const QString heading = QStringLiteral("Someone shared a palette");
inline const QString note = QStringLiteral(
    "Adding it makes a new palette in your HueShelf. Your existing palettes aren't changed.");
inline const QString cancelButton = QStringLiteral("Cancel");
inline const QString addButton = QStringLiteral("Add to HueShelf");
inline constexpr int previewWidth = 380;
inline constexpr int previewHeight = 300;

// "1 color", "12 colors".
QString colorCountText(qsizetype count);
} // namespace PaletteLinkOpenTexts

// The one alert for every link that can't be read: the user never learns which rule it broke.
struct LinkAlert {
    QString title;
    QString text;
    QString button;

    friend bool operator==(const LinkAlert&, const LinkAlert&) = default;
};

// What the preview window draws.
struct LinkPreview {
    QString title;
    QString heading;
    QString paletteName;
    QString countText;
    QList<PaletteLink::Color> swatches;
    QString note;
    QString cancelButton;
    QString addButton;
};

// Palette links handed to the application (hueshelf://import#1;...), without the windows: the
// check of the scheme, the decoding, the alert, the preview and its "Add to HueShelf".
class PaletteLinkOpenModel final : public QObject {
    Q_OBJECT
public:
    enum class OpenResult {
        ignored,   // not a link of ours; nothing is said
        refused,   // the alert was asked for
        previewed, // the preview opens
        dropped,   // a preview was already up: it comes to the front, this link is forgotten
    };

    PaletteLinkOpenModel(ColorStorage& storage, Clock& clock, Scheduler& scheduler,
                         QObject* parent = nullptr);

    // Scheme "hueshelf" and host "import", in any letter case.
    static bool accepts(const QUrl& url);

    // A URL as the desktop handed it over (links arrive as command-line text). The text itself
    // is decoded, not QUrl's rewriting of it, which would escape an invalid escape ("%zz" to
    // "%25zz") or a "#" inside the payload and so change what the link says.
    OpenResult open(const QString& urlText);

    bool isPreviewVisible() const { return m_palette.has_value(); }
    // The palette on show, while the preview is visible.
    const std::optional<PaletteLink::Palette>& previewedPalette() const { return m_palette; }
    std::optional<LinkPreview> preview() const;

    // "Add to HueShelf": closes the preview, then makes the identical palette already stored
    // active (its toast follows on the next turn) or adds the link's palette as a new one.
    // Either way the bar is shown. Nothing without a visible preview.
    std::optional<PaletteImportOutcome> add();
    // "Cancel", or the preview window closed: the link is forgotten.
    void cancel();

Q_SIGNALS:
    // The bar's window may become key while the alert stands, and loses that right afterwards.
    void alertRequested(const hueshelf::app::LinkAlert& alert);
    // Open the preview window, centred, above the floating level, and activate the application.
    void previewOpened();
    // The preview is up already: bring it to the front.
    void previewRaised();
    void previewClosed();
    void barShowRequested();

private:
    void closePreview();

    ColorStorage& m_storage;
    Clock& m_clock;
    Scheduler& m_scheduler;
    std::optional<PaletteLink::Palette> m_palette;
};

} // namespace hueshelf::app
