#pragma once

#include "app/BarPosition.h"

#include <QPoint>

class QSettings;

namespace hueshelf::app {

// The bar's remembered origin under "HueShelfPosition": a map of the floats "x" and "y" in the
// global screen coordinates of BarPosition (y downward, the window's top-left corner). An
// isolated run reads and forgets the key but never writes it.
class BarPositionStore final {
public:
    BarPositionStore(QSettings& settings, bool isIsolatedRun)
        : m_settings(settings), m_isIsolatedRun(isIsolatedRun) {}

    // What can be read: a coordinate that is missing, not a number or not finite is absent, and
    // anything that is not a map leaves both absent.
    BarPosition::StoredPosition load() const;
    // On each move of the window and at the end of a drag.
    void save(QPoint origin);
    // The reset forgets the place; the move it causes stores the new one.
    void remove();

    bool isIsolatedRun() const { return m_isIsolatedRun; }

private:
    QSettings& m_settings;
    bool m_isIsolatedRun;
};

} // namespace hueshelf::app
