#pragma once

#include "color/ColorUtils.h"
#include "color/SchemeGenerator.h"
#include "util/Scheduler.h"

#include <QList>
#include <QObject>
#include <QString>

namespace hueshelf {
class ColorStorage;
} // namespace hueshelf

namespace hueshelf::app {

namespace SchemeGeneratorTexts {
using namespace Qt::StringLiterals;
inline const QString title = u"Generate a color scheme"_s;
inline const QString startingColorLabel = u"Starting color"_s;
inline const QString startingColorPlaceholder = u"#RRGGBB"_s;
inline const QString defaultTemplateName = u"My color scheme"_s;
inline const QString createButton = u"Create palette"_s;
inline const QString cancelButton = u"Cancel"_s;
} // namespace SchemeGeneratorTexts

// The verdict under the swatches: a symbol, a sentence and their colour.
struct ReadabilityLine {
    QString icon;
    QString text;
    ColorUtils::DisplayColor color;
};

// The scheme generator popover without its window. Its state is a working copy that lives only
// while the popover is open; nothing reaches the store until "Create palette".
class SchemeGeneratorModel final : public QObject {
    Q_OBJECT
public:
    SchemeGeneratorModel(ColorStorage& storage, Scheduler& scheduler, QObject* parent = nullptr);
    ~SchemeGeneratorModel() override;

    // Starts afresh from the active palette's first colour and generates.
    void open();
    // "Cancel": closes without touching the store.
    void cancel();

    // --- State ---------------------------------------------------------------------------------

    // Also the starting colour field's text.
    const QString& primaryHex() const { return m_primaryHex; }
    SchemeGenerator::SchemeStyle style() const { return m_style; }
    const QString& templateName() const { return m_templateName; }
    const QList<SchemeGenerator::GeneratedColor>& generatedColors() const {
        return m_generatedColors;
    }
    bool allReadable() const { return m_allReadable; }
    // False right after each generate; true again on the next turn of the event loop, so the
    // swatches fade in afresh.
    bool swatchesVisible() const { return m_swatchesVisible; }

    ReadabilityLine readabilityLine() const;
    static ReadabilityLine readabilityLine(bool allReadable);

    // --- Edits ---------------------------------------------------------------------------------

    void setStyle(SchemeGenerator::SchemeStyle style);
    // One change of the starting colour field: a pasted code becomes its hex, six digits stay
    // as typed, unreadable text stays in the field and leaves the preview as it was.
    void setStartingText(const QString& text);
    void setTemplateName(const QString& name);

    // Reads the state afresh; an unreadable starting colour leaves everything as it was.
    void generate();

    // --- Create --------------------------------------------------------------------------------

    bool canCreate() const;
    // Adds the scheme as a new palette, announces it and closes; false (and nothing happens)
    // while the button would be disabled.
    bool createPalette();

Q_SIGNALS:
    // Something the popover draws changed.
    void changed();
    // The popover should close, after "Create palette" or "Cancel".
    void closed();

private:
    void revealSwatches();

    ColorStorage& m_storage;
    Scheduler& m_scheduler;

    QString m_primaryHex = SchemeGenerator::defaultPrimaryHex;
    SchemeGenerator::SchemeStyle m_style = SchemeGenerator::SchemeStyle::warm;
    QString m_templateName = SchemeGeneratorTexts::defaultTemplateName;
    QList<SchemeGenerator::GeneratedColor> m_generatedColors;
    bool m_allReadable = false;
    bool m_swatchesVisible = false;
    TaskHandle m_reveal;
};

} // namespace hueshelf::app
