#pragma once

#include "aitools/AITool.h"
#include "aitools/AIToolConnector.h"
#include "aitools/AIToolRegistry.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <optional>

class QSettings;

namespace hueshelf {
class Clock;
class ColorStorage;
class Platform;
} // namespace hueshelf

namespace hueshelf::app {

// One checkbox of the panel as drawn.
struct AIToolRowFace {
    QString id;
    QString name;
    bool checked = false;
    // "Needs attention" (a warning) or "Last used ..." (secondary); at most one.
    std::optional<QString> note;
    bool noteIsWarning = false;

    friend bool operator==(const AIToolRowFace&, const AIToolRowFace&) = default;
};

// One entry of the palette picker.
struct BrandPaletteChoice {
    QString id; // upper-case UUID text, the value stored under "brandTemplateId"
    QString name;

    friend bool operator==(const BrandPaletteChoice&, const BrandPaletteChoice&) = default;
};

// The "Connect Your AI Tools" panel without its widgets: the rows, what ticking, unticking,
// "Copy setup snippet" and "Disconnect all" do, the one status line, the notes, and the palette
// the tools are given. Every file change goes through the connector, on the calling thread.
class AIToolsPanelModel final : public QObject {
    Q_OBJECT
public:
    // `toolTable` builds the eight tools anew (production: the registry over the real home).
    AIToolsPanelModel(ColorStorage& storage, AIToolConnector connector,
                      std::function<QList<AITool>()> toolTable, QSettings& settings,
                      Platform& platform, const Clock& clock, QObject* parent = nullptr);

    // The settings key of the chosen palette, read by the companion server too.
    static QString brandTemplateKey();

    // The panel came on screen: tools and rows found anew, entries healed (which may take a
    // while if the `claude` command is slow), the ticks read back, and a palette chosen.
    void appear();

    // A row's checkbox changed to `on`.
    void setRowChecked(const QString& rowId, bool on);
    void copySetupSnippet();
    void disconnectAll();
    // The picker's choice, stored at once.
    void chooseBrandPalette(const QString& templateId);

    // --- What the panel draws ------------------------------------------------------------------

    const QList<AITool>& tools() const { return m_tools; }
    const QList<AIToolRegistry::DisplayRow>& rows() const { return m_rows; }
    const QSet<QString>& connected() const { return m_connected; }
    const QString& brandTemplateId() const { return m_brandTemplateId; }
    const std::optional<QString>& statusMessage() const { return m_statusMessage; }
    bool statusIsWarning() const { return m_statusIsWarning; }
    const QMap<QString, QString>& attention() const { return m_attention; }

    // The rows with their ticks and notes; the last-used file is read anew on every call.
    QList<AIToolRowFace> rowFaces() const;
    QList<BrandPaletteChoice> paletteChoices() const;

Q_SIGNALS:
    void changed();

private:
    void readConnected();
    void copySnippetToClipboard();
    void setStatus(const QString& message, bool isWarning);

    ColorStorage& m_storage;
    AIToolConnector m_connector;
    std::function<QList<AITool>()> m_toolTable;
    QSettings& m_settings;
    Platform& m_platform;
    const Clock& m_clock;

    QList<AITool> m_tools;
    QList<AIToolRegistry::DisplayRow> m_rows;
    QSet<QString> m_connected;
    QString m_brandTemplateId;
    std::optional<QString> m_statusMessage;
    bool m_statusIsWarning = false;
    QMap<QString, QString> m_attention;
};

} // namespace hueshelf::app
