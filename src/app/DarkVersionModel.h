#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <optional>

namespace hueshelf {
class ColorStorage;
} // namespace hueshelf

namespace hueshelf::app {

namespace DarkVersionTexts {
using namespace Qt::StringLiterals;
inline const QString title = u"Make a dark version"_s;
inline const QString subtitle = u"Here's your palette adjusted for dark backgrounds."_s;
inline const QString originalLabel = u"Original"_s;
inline const QString darkLabel = u"Dark"_s;
inline const QString arrowIcon = u"arrow.right"_s;
inline const QString nameLabel = u"Palette name"_s;
inline const QString createButton = u"Create palette"_s;
inline const QString createTint = u"#3B8077"_s;
inline const QString cancelButton = u"Cancel"_s;
} // namespace DarkVersionTexts

// One colour before and after, as the preview shows it.
struct DarkPreviewRow {
    QString originalHex;
    QString darkHex;

    friend bool operator==(const DarkPreviewRow&, const DarkPreviewRow&) = default;
};

// The dark version popover without its window. Only the name field is its own; the preview is
// derived from the active palette each time it is asked for, so an edit made meanwhile shows.
class DarkVersionModel final : public QObject {
    Q_OBJECT
public:
    explicit DarkVersionModel(ColorStorage& storage, QObject* parent = nullptr);

    // Fills the name field from the active palette.
    void open();
    // "Cancel": closes without touching the store.
    void cancel();

    const QString& templateName() const { return m_templateName; }
    void setTemplateName(const QString& name);

    // The first colours of the active palette and their dark counterparts.
    QList<DarkPreviewRow> previewRows() const;
    // "+N more color(s) not shown", absent when every colour has a row.
    std::optional<QString> morePreviewLine() const;

    bool canCreate() const;
    // Adds the dark version of the active palette as a new palette, made active and saved, and
    // closes. The source palette is left as it was. False (and nothing happens) while the name
    // is blank or there is no active palette to start from.
    bool createDarkPalette();

Q_SIGNALS:
    void changed();
    // The popover should close, after "Create palette" or "Cancel".
    void closed();

private:
    ColorStorage& m_storage;
    QString m_templateName;
};

} // namespace hueshelf::app
