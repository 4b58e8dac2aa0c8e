#pragma once

#include "model/ColorTemplate.h"
#include "util/Clock.h"

#include <QList>

namespace hueshelf {

// The two palettes a store starts with when nothing is stored anywhere: "Starter" (to be made
// active) and "Example". Ids are fresh on every call; each palette reads the clock itself.
QList<ColorTemplate> firstLaunchTemplates(const Clock& clock);

} // namespace hueshelf
