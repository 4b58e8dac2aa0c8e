#include "app/FloatingHueShelfView.h"

#include "app/AddSwatchButton.h"
#include "app/BarModel.h"
#include "app/BarTooltip.h"
#include "app/CompactButton.h"
#include "app/CompactColorSwatch.h"
#include "app/OverflowButton.h"
#include "app/OverflowPopover.h"
#include "app/PaletteChip.h"
#include "app/ShakeMotion.h"
#include "app/SwatchGutter.h"
#include "app/WindowDragView.h"
#include "color/PaletteCheck.h"
#include "exchange/PaletteFileTexts.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QVariantAnimation>
#include <QWidgetAction>

namespace hueshelf::app {

using namespace Qt::StringLiterals;

namespace {

// The bar's words at 11 points.
void useBarFont(QWidget& widget, QFont::Weight weight) {
    QFont font = widget.font();
    font.setPointSizeF(11);
    font.setWeight(weight);
    widget.setFont(font);
}

QWidget* separator(QWidget* parent) {
    auto* line = new QWidget(parent);
    line->setFixedSize(1, 20);
    line->setAutoFillBackground(true);
    line->setBackgroundRole(QPalette::Mid);
    return line;
}

// The brand word is part of the handle: what the pointer does on it, the grip does.
class HandleForwarder final : public QObject {
public:
    HandleForwarder(WindowDragView* grip, QObject* parent) : QObject(parent), m_grip(grip) {}

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseMove:
        case QEvent::MouseButtonRelease: {
            auto* mouse = static_cast<QMouseEvent*>(event);
            QMouseEvent forwarded(mouse->type(), m_grip->mapFromGlobal(mouse->globalPosition()),
                                  mouse->globalPosition(), mouse->button(), mouse->buttons(),
                                  mouse->modifiers());
            QCoreApplication::sendEvent(m_grip, &forwarded);
            return true;
        }
        default:
            return false;
        }
    }

private:
    WindowDragView* m_grip;
};

} // namespace

FloatingHueShelfView::FloatingHueShelfView(BarModel& model, QWidget* parent)
    : QWidget(parent), m_model(model) {
    m_row = new QHBoxLayout(this);
    m_row->setContentsMargins(6, 0, 10, 0);
    m_row->setSpacing(0);

    m_dragView = new WindowDragView(this);
    m_row->addWidget(m_dragView);
    m_brand = new QLabel(BarLayout::brand, this);
    useBarFont(*m_brand, QFont::Medium);
    m_brand->setForegroundRole(QPalette::PlaceholderText);
    m_brand->setCursor(Qt::OpenHandCursor);
    BarTooltip::attach(m_brand, BarLayout::brandTooltip);
    m_brand->installEventFilter(new HandleForwarder(m_dragView, m_brand));
    m_row->addWidget(m_brand);
    m_row->addSpacing(12);

    m_strip = new QWidget(this);
    m_row->addWidget(m_strip);
    m_row->addSpacing(BarLayout::swatchGap);
    m_overflowButton = new OverflowButton(this);
    connect(m_overflowButton, &OverflowButton::clicked, this,
            [this] { m_model.hover().overflowButtonClicked(); });
    m_row->addWidget(m_overflowButton);
    m_row->addSpacing(BarLayout::swatchGap);
    m_addButton = new AddSwatchButton(this);
    connect(m_addButton, &AddSwatchButton::clicked, this, [this] { m_model.addColor(); });
    m_row->addWidget(m_addButton);
    m_row->addSpacing(10);
    m_row->addWidget(separator(this));
    m_row->addSpacing(8);

    m_chip = new PaletteChip(this);
    connect(m_chip, &PaletteChip::clicked, this, &FloatingHueShelfView::galleryRequested);
    m_row->addWidget(m_chip);
    m_row->addSpacing(8);

    auto addTool = [this](const QString& symbol, const QString& label, auto onClick) {
        if (!m_tools.isEmpty())
            m_row->addSpacing(BarLayout::toolSpacing);
        auto* button = new CompactButton(symbol, label, this);
        connect(button, &CompactButton::clicked, this, onClick);
        m_row->addWidget(button);
        m_tools.append(button);
        return button;
    };
    m_lockButton = addTool(u"lock.open"_s, BarLayout::lockButtonLabel(false),
                           [this] { m_model.toggleLock(); });
    addTool(u"rectangle.3.group"_s, BarLayout::groupsLabel, [this] { Q_EMIT groupsRequested(); });
    m_checkButton = addTool(u"checkmark.circle.fill"_s, m_model.checkLabel(),
                            [this] { Q_EMIT checkRequested(); });
    m_lensButton = addTool(u"eye"_s, m_model.lensTooltip(), [this] { openLensMenu(); });
    m_eyedropperButton = addTool(u"eyedropper"_s, BarLayout::eyedropperLabel,
                                 [this] { m_model.eyedropper().click(); });
    addTool(u"link"_s, BarLayout::shareLabel,
            [this] { m_model.share(globalFrame(tool(u"link"_s))); });
    addTool(u"square.and.arrow.down"_s, BarLayout::saveLabel, [this] { saveAsFile(); });

    m_row->addSpacing(10);
    m_row->addWidget(separator(this));
    m_syncSeparator = new QWidget(this);
    auto* syncBox = new QHBoxLayout(m_syncSeparator);
    syncBox->setContentsMargins(8, 0, 0, 0);
    m_syncButton = new CompactButton(u"cloud"_s, QString(), m_syncSeparator);
    // The card is made when the hover starts, so "Last synced" counts to that moment.
    BarTooltip::attachCard(m_syncButton, [this] { return m_model.syncCard(); });
    connect(m_syncButton, &CompactButton::clicked, this, [this] { m_model.syncNow(); });
    syncBox->addWidget(m_syncButton);
    m_row->addWidget(m_syncSeparator);
    m_row->addSpacing(8);

    const QString hotKey =
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_B).toString(QKeySequence::NativeText);
    addTool(u"minus"_s, BarLayout::minimizeLabel(hotKey), [this] { Q_EMIT minimizeRequested(); });
    m_row->addStretch(1);

    m_overflow = new OverflowPopover(
        [this](const BarSwatch& swatch, QWidget* owner) {
            return makeSwatch(swatch, CompactColorSwatch::listWidth, owner);
        },
        this);
    connect(m_overflow, &OverflowPopover::pointerInsideChanged, this,
            [this](bool inside) { m_model.hover().pointerInOverflowChanged(inside); });
    connect(
        m_overflow, &OverflowPopover::hoveredGroupChanged, this,
        [this](const std::optional<QSet<QUuid>>& ids) { m_model.hover().setHoveredGroup(ids); });
    connect(m_overflow, &OverflowPopover::dismissed, this, [this](const QPoint& global) {
        m_model.hover().pressedOutsideList(globalFrame(m_overflowButton).contains(global));
    });

    connect(&m_model, &BarModel::changed, this, &FloatingHueShelfView::rebuild);
    connect(&m_model, &BarModel::shakeRequested, this, &FloatingHueShelfView::shake);
    connect(&m_model, &BarModel::editorRequested, this, [this](const QUuid& id) {
        if (CompactColorSwatch* swatch = swatchWidgetFor(id))
            Q_EMIT editorRequested(id, swatch);
    });
    connect(&m_model.hover(), &OverflowHoverMachine::changed, this, [this] {
        updateHighlight();
        updateOverflow();
    });
    connect(&m_model.swatchActions(), &SwatchActions::copiedFeedbackChanged, this,
            [this](const QUuid& id) {
                const bool showing = m_model.swatchActions().showsCopiedFeedback(id);
                for (CompactColorSwatch* swatch : m_swatches + m_listSwatches) {
                    if (swatch->swatch().id == id)
                        swatch->setCopiedFeedback(showing);
                }
            });
    connect(&m_model.eyedropper(), &BarEyedropper::isPickingChanged, this,
            &FloatingHueShelfView::updateTools);
    rebuild();
}

FloatingHueShelfView::~FloatingHueShelfView() = default;

CompactButton* FloatingHueShelfView::tool(const QString& symbol) const {
    for (CompactButton* button : m_tools + QList<CompactButton*>{m_syncButton}) {
        if (button->symbol() == symbol)
            return button;
    }
    return nullptr;
}

QRect FloatingHueShelfView::globalFrame(const QWidget* widget) const {
    return QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size());
}

void FloatingHueShelfView::rebuild() {
    m_chip->setPaletteName(m_model.paletteName());
    rebuildSwatches();
    updateTools();
    updateHighlight();
    updateOverflow();
}

CompactColorSwatch* FloatingHueShelfView::makeSwatch(const BarSwatch& swatch, int width,
                                                     QWidget* parent) {
    auto* widget = new CompactColorSwatch(swatch, width, parent);
    const auto colors = m_model.colors();
    if (swatch.index < colors.size())
        widget->setDraggable(m_model.swatchActions().canDrag(colors.at(swatch.index)));
    widget->setReduceMotion(m_model.reduceMotion());
    widget->setCopiedFeedback(m_model.swatchActions().showsCopiedFeedback(swatch.id));
    connect(widget, &CompactColorSwatch::copyRequested, this, [this, widget] {
        m_model.swatchActions().copyColor(widget->swatch().id, globalFrame(widget));
    });
    connect(widget, &CompactColorSwatch::editRequested, this,
            [this, widget] { Q_EMIT editorRequested(widget->swatch().id, widget); });
    widget->setDropHandler([this, widget](const QStringList& items) {
        return m_model.swatchActions().handleSwatchDrop(widget->swatch().index, items,
                                                        globalFrame(widget));
    });
    return widget;
}

void FloatingHueShelfView::rebuildSwatches() {
    // A click may be on its way through an old swatch, so old ones go once it has passed.
    for (QWidget* old : m_strip->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        old->hide();
        old->deleteLater();
    }
    m_swatches.clear();
    m_gutters.clear();

    const QList<BarSwatch> all = m_model.swatches();
    const int shown = m_model.visibleCount();
    const int pitch = BarLayout::swatchSide + BarLayout::swatchGap;
    const int stripWidth = shown == 0 ? 0 : shown * pitch - BarLayout::swatchGap;
    m_strip->setFixedSize(stripWidth, rowHeight);
    for (int i = 0; i < shown; ++i) {
        const BarSwatch& swatch = all.at(i);
        CompactColorSwatch* widget = makeSwatch(swatch, CompactColorSwatch::barWidth, m_strip);
        widget->move(i * pitch, (rowHeight - CompactColorSwatch::height) / 2);
        widget->show();
        m_swatches.append(widget);
    }
    // Gutters go on top: where a group starts, their hit area reaches over the neighbours.
    for (int i = 1; i < shown; ++i) {
        const BarSwatch& swatch = all.at(i);
        auto* gutter =
            new SwatchGutter(swatch.id, swatch.showsDivider, swatch.dividerLabel, m_strip);
        const QSize hit = gutter->hitSize();
        const int gapCentre = i * pitch - BarLayout::swatchGap / 2;
        gutter->move(gapCentre - hit.width() / 2, (rowHeight - hit.height()) / 2);
        connect(gutter, &SwatchGutter::hovered, this, [this](const QUuid& id, bool hovering) {
            m_model.hover().hoverGutter(id, hovering);
        });
        gutter->show();
        gutter->raise();
        m_gutters.append(gutter);
    }

    const int hidden = m_model.overflowCount();
    m_overflowButton->setVisible(hidden > 0);
    m_overflowButton->setHiddenCount(hidden);
    m_addButton->setPaletteLocked(m_model.isLocked());

    // The list is filled when it opens: a palette of hundreds would otherwise rebuild all its
    // hidden swatches on every edit.
    m_overflowStale = true;
    if (m_overflow->isVisible())
        refreshOverflowContent();
}

void FloatingHueShelfView::refreshOverflowContent() {
    m_overflowStale = false;
    m_overflow->setContent(
        PaletteGroups::overflowSections(m_model.colors(), BarLayout::maxVisibleSwatches),
        m_model.swatches());
    m_listSwatches = m_overflow->swatchWidgets();
    updateHighlight();
}

void FloatingHueShelfView::updateTools() {
    const bool locked = m_model.isLocked();
    const BarLayout::LockLook lock = BarLayout::lockLook(locked);
    m_lockButton->setSymbol(lock.symbol, lock.tint);
    m_lockButton->setBackdrop(lock.backdrop);
    m_lockButton->setLabel(BarLayout::lockButtonLabel(locked));

    const int issues = m_model.issueCount();
    const PaletteCheck::CheckButtonIcon icon = PaletteCheck::checkButtonIcon(issues);
    m_checkButton->setSymbol(icon.symbol, QColor::fromRgbF(static_cast<float>(icon.color.red),
                                                           static_cast<float>(icon.color.green),
                                                           static_cast<float>(icon.color.blue)));
    m_checkButton->setLabel(m_model.checkLabel());

    m_lensButton->setSymbol(m_model.lensSymbol());
    m_lensButton->setLabel(m_model.lensTooltip());
    m_lensButton->setAccessibleDescription(
        ColorVisionSimulation::lensAccessibleValue(m_model.lens()));

    m_eyedropperButton->setLabel(m_model.eyedropper().tooltip());
    m_eyedropperButton->setDimmed(m_model.eyedropper().isPicking());

    const bool sync = m_model.syncEnabled();
    m_syncSeparator->setVisible(sync);
    const SyncStatus::Kind kind = m_model.syncKind();
    m_syncButton->setSymbol(BarLayout::syncSymbol(kind));
    m_syncButton->setAccessibleName(BarLayout::syncLabel(kind));
}

void FloatingHueShelfView::updateHighlight() {
    const OverflowHoverMachine& hover = m_model.hover();
    for (CompactColorSwatch* swatch : m_swatches + m_listSwatches) {
        const QUuid& id = swatch->swatch().id;
        swatch->setGroupHighlight(hover.isDimmed(id), hover.isEmphasized(id));
    }
    m_overflowButton->setEmphasis(hover.overflowButtonEmphasis());
}

void FloatingHueShelfView::updateOverflow() {
    const bool show = m_model.hover().showingOverflow();
    if (show && !m_overflow->isVisible()) {
        if (m_overflowStale)
            refreshOverflowContent();
        m_overflow->showAt(globalFrame(m_overflowButton));
    } else if (!show && m_overflow->isVisible())
        m_overflow->hide();
}

CompactColorSwatch* FloatingHueShelfView::swatchWidgetFor(const QUuid& id) const {
    for (CompactColorSwatch* swatch : m_swatches + m_listSwatches) {
        if (swatch->swatch().id == id)
            return swatch;
    }
    return nullptr;
}

void FloatingHueShelfView::openLensMenu() {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addSection(ColorVisionSimulation::lensMenuTitle());
    for (const BarModel::LensRow& row : m_model.lensRows()) {
        QAction* action = menu->addAction(row.label);
        action->setCheckable(true);
        action->setChecked(row.isCurrent);
        connect(action, &QAction::triggered, this,
                [this, type = row.type] { m_model.setLens(type); });
    }
    menu->addSeparator();
    QAction* note = menu->addAction(ColorVisionSimulation::lensMenuNote());
    note->setEnabled(false);
    menu->popup(m_lensButton->mapToGlobal(QPoint(0, m_lensButton->height())));
}

void FloatingHueShelfView::saveAsFile() {
    if (!m_model.hasActivePalette())
        return;
    QString path;
    if (m_savePathPrompt) {
        path = m_savePathPrompt(m_model.suggestedFileName());
    } else {
        path = QFileDialog::getSaveFileName(window(), PaletteFileTexts::savePanelTitle,
                                            m_model.suggestedFileName(),
                                            u"HueShelf palette (*.hueshelf)"_s);
    }
    if (path.isEmpty())
        return;
    if (const auto failure =
            m_model.saveActivePalette(path, globalFrame(tool(u"square.and.arrow.down"_s))))
        Q_EMIT saveFailed(*failure);
}

void FloatingHueShelfView::shake() {
    if (m_shakeAnimation)
        m_shakeAnimation->stop();
    auto* animation = new QVariantAnimation(this);
    animation->setStartValue(0.0);
    animation->setEndValue(ShakeMotion::duration);
    animation->setDuration(static_cast<int>(ShakeMotion::duration * 1000));
    connect(animation, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        // The whole row moves inside the window's chrome, which stays put.
        move(qRound(ShakeMotion::offset(value.toDouble())), y());
    });
    connect(animation, &QVariantAnimation::finished, this, [this] { move(0, y()); });
    m_shakeAnimation = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

} // namespace hueshelf::app
