#pragma once

#include "mcp/JsonSchema.h"
#include "mcp/PaletteSnapshot.h"
#include "mcp/ToolArguments.h"
#include "model/ColorTemplate.h"

#include <optional>

namespace hueshelf::mcp {

// The "id" and "name" arguments by which a tool names one palette.
namespace PaletteArgument {

JsonSchema::Properties properties();

// The palette the arguments name: by id when one is given, else by name (exact, then in any
// case). Without either, the chosen palette when `fallBackToChosen`, else a mistake. None, with
// the mistake recorded in `arguments`, when nothing fits.
std::optional<ColorTemplate> resolve(ToolArguments& arguments, const PaletteSnapshot& snapshot,
                                     bool fallBackToChosen);

// The sentence for a store without any palette.
QString noPalettesSentence();

} // namespace PaletteArgument
} // namespace hueshelf::mcp
