#pragma once

#include "app/CheckRow.h"
#include "color/ColorVisionSimulation.h"
#include "color/PaletteCheck.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace hueshelf::app {

// The first page: one sentence, or a count with the first rows.
struct CheckVerdictPage {
    enum class State { addColorsFirst, looksGood, issues };
    State state = State::addColorsFirst;
    QString message; // the sentence of the first two states
    QString title;   // fixCountText, in the issues state
    QList<CheckRow> rows;
    std::optional<QString> moreRowsText;
    QString detailsButton;
};

// One strip of "How others see it".
struct VisionStripSwatch {
    QUuid colorId;
    QString hex;           // as the strip's reader sees it
    bool isMarked = false; // the colour takes part in a look-alike issue
};
struct VisionStrip {
    ColorVisionSimulation::SimulationType type = ColorVisionSimulation::SimulationType::normal;
    QString label;
    QString accessibleText;
    QList<VisionStripSwatch> swatches;
};

// What "Name every color by its role" did, while it can still be undone.
struct RoleRenameNotice {
    QString icon;
    QString text;
    QString undoButton;
};

struct WorthKnowingSection {
    QString title;
    QStringList lines;
    bool offersRoleNaming = false;
    QString roleNamingButton;
    QString roleNamingHelp;
    std::optional<RoleRenameNotice> renamed;
    std::optional<QString> nothingToAdd;
};

struct CheckDetailsPage {
    QString backButton;
    QString title;
    QString countText;
    QList<CheckRow> rows;

    QString everyPairTitle;
    PaletteCheck::PairGrid grid;
    bool gridOpen = false;
    std::optional<QString> gridToggle; // absent while the grid is empty

    QString othersSeeTitle;
    QList<VisionStrip> strips;

    WorthKnowingSection worthKnowing;
};

} // namespace hueshelf::app
