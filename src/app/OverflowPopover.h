#pragma once

#include "app/BarSwatch.h"
#include "model/PaletteGroups.h"

#include <QList>
#include <QPointer>
#include <QSet>
#include <QUuid>
#include <QWidget>

#include <functional>
#include <optional>

namespace hueshelf::app {

class CompactColorSwatch;

// The colours that don't fit on the bar, in sections by group, in a small window over or under
// the overflow button. Its swatches behave like the bar's; a click outside it dismisses it.
class OverflowPopover final : public QWidget {
    Q_OBJECT
public:
    // Makes a swatch wired like the bar's.
    using SwatchFactory = std::function<CompactColorSwatch*(const BarSwatch&, QWidget* parent)>;

    explicit OverflowPopover(SwatchFactory factory, QWidget* parent = nullptr);
    ~OverflowPopover() override;

    void setContent(const QList<PaletteGroups::OverflowSection>& sections,
                    const QList<BarSwatch>& swatches);
    // Under the anchor (global frame) where the screen has room, otherwise over it.
    void showAt(const QRect& anchor);
    QList<CompactColorSwatch*> swatchWidgets() const { return m_swatches; }

Q_SIGNALS:
    void pointerInsideChanged(bool inside);
    // A section's group is under the pointer, or none.
    void hoveredGroupChanged(const std::optional<QSet<QUuid>>& ids);
    // A press outside the list, at this global point.
    void dismissed(const QPoint& global);

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    SwatchFactory m_factory;
    QList<CompactColorSwatch*> m_swatches;
    QList<QPair<QWidget*, QSet<QUuid>>> m_sections;
    int m_columns = 2;
};

} // namespace hueshelf::app
