#pragma once

#include "mcp/McpTool.h"

namespace hueshelf::mcp {

class PaletteSource;

// The tools, one maker each. Those that read palettes hold the source by reference; it
// outlives the table.
namespace ToolCatalog {

McpTool getBrandColors(const PaletteSource& source);
McpTool listPalettes(const PaletteSource& source);
McpTool getPalette(const PaletteSource& source);
McpTool checkPalette(const PaletteSource& source);
McpTool checkContrast();
McpTool convertColor();
McpTool createPalette(const PaletteSource& source);

} // namespace ToolCatalog
} // namespace hueshelf::mcp
