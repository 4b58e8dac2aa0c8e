#include "app/PaletteLinkOpenModel.h"

#include "exchange/LinkImport.h"
#include "exchange/PaletteFileTexts.h"
#include "model/ColorStorage.h"
#include "util/Clock.h"
#include "util/Scheduler.h"

#include <QPointer>

namespace hueshelf::app {

QString PaletteLinkOpenTexts::colorCountText(qsizetype count) {
    return QString::number(count) +
           (count == 1 ? QStringLiteral(" color") : QStringLiteral(" colors"));
}

PaletteLinkOpenModel::PaletteLinkOpenModel(ColorStorage& storage, Clock& clock,
                                           Scheduler& scheduler, QObject* parent)
    : QObject(parent), m_storage(storage), m_clock(clock), m_scheduler(scheduler) {}

bool PaletteLinkOpenModel::accepts(const QUrl& url) {
    return LinkImport::isOwnSchemeLink(url.toString());
}

PaletteLinkOpenModel::OpenResult PaletteLinkOpenModel::open(const QString& urlText) {
    if (!LinkImport::isOwnSchemeLink(urlText))
        return OpenResult::ignored;
    const PaletteLink::Result<PaletteLink::Palette> decoded = PaletteLink::decode(urlText);
    if (!decoded) {
        Q_EMIT alertRequested(LinkAlert{PaletteFileTexts::openAlertTitle,
                                        PaletteLinkOpenTexts::alertText,
                                        PaletteFileTexts::alertButton});
        return OpenResult::refused;
    }
    if (isPreviewVisible()) {
        Q_EMIT previewRaised();
        return OpenResult::dropped;
    }
    m_palette = *decoded;
    Q_EMIT previewOpened();
    return OpenResult::previewed;
}

std::optional<LinkPreview> PaletteLinkOpenModel::preview() const {
    if (!m_palette)
        return std::nullopt;
    namespace Texts = PaletteLinkOpenTexts;
    return LinkPreview{Texts::previewTitle, Texts::heading,
                       m_palette->name,     Texts::colorCountText(m_palette->colors.size()),
                       m_palette->colors,   Texts::note,
                       Texts::cancelButton, Texts::addButton};
}

std::optional<PaletteImportOutcome> PaletteLinkOpenModel::add() {
    if (!m_palette)
        return std::nullopt;
    const PaletteLink::Palette palette = *m_palette;
    closePreview();
    const PaletteImportOutcome outcome =
        LinkImport::addDecodedPalette(m_storage, palette, m_clock.nowMs());
    Q_EMIT barShowRequested();
    // A new palette speaks for itself on the bar; only finding one already there gets a toast,
    // once the window that asked has gone.
    if (outcome.kind == PaletteImportOutcome::Kind::alreadyHave) {
        m_scheduler.scheduleAfter(
            0.0, [guard = QPointer<ColorStorage>(&m_storage), message = outcome.message] {
                if (guard)
                    guard->announce(message, PaletteFileTexts::importIcon);
            });
    }
    return outcome;
}

void PaletteLinkOpenModel::cancel() {
    closePreview();
}

void PaletteLinkOpenModel::closePreview() {
    if (!m_palette)
        return;
    m_palette.reset();
    Q_EMIT previewClosed();
}

} // namespace hueshelf::app
