#include "cli/ColorArguments.h"
#include "cli/Invocation.h"
#include "cli/TextTable.h"
#include "color/ColorUtils.h"
#include "color/ColorVisionSimulation.h"

#include <QJsonValue>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

using ColorVisionSimulation::SimulationType;

// The three dichromat types, in the order of the lens menu; normal vision would only repeat
// the canonical code.
QList<SimulationType> simulatedTypes() {
    QList<SimulationType> types;
    for (const SimulationType type : ColorVisionSimulation::allSimulationTypes()) {
        if (type != SimulationType::normal)
            types << type;
    }
    return types;
}

QJsonObject jsonOf(const QString& input, const std::optional<QString>& hex) {
    QJsonObject object{{u"input"_s, input}};
    if (!hex) {
        object.insert(u"hex"_s, QJsonValue::Null);
        return object;
    }
    object.insert(u"hex"_s, *hex);
    for (const SimulationType type : simulatedTypes()) {
        object.insert(ColorVisionSimulation::identifier(type),
                      ColorVisionSimulation::simulated(*hex, type));
    }
    return object;
}

QString textOf(const QString& input, const std::optional<QString>& hex) {
    TextTable rows(u"  "_s);
    if (!hex) {
        rows.addRow({u"not a color code"_s});
        return input + u'\n' + rows.render();
    }
    rows.addRow({u"hex"_s, *hex});
    for (const SimulationType type : simulatedTypes()) {
        rows.addRow({ColorVisionSimulation::identifier(type),
                     ColorVisionSimulation::simulated(*hex, type),
                     ColorVisionSimulation::lensLabel(type)});
    }
    return input + u'\n' + rows.render();
}

int runSimulate(Invocation& call) {
    return ColorArguments::reportEachCode(call, [](const QString& input) {
        const auto hex = ColorUtils::parseColorCode(input);
        return ColorArguments::CodeReport{hex.has_value(), jsonOf(input, hex), textOf(input, hex)};
    });
}

} // namespace

Command simulateCommand() {
    return Command{
        .name = u"simulate"_s,
        .summary = u"Show how colors look with each kind of color blindness"_s,
        .usage = u"simulate CODE... [--json]"_s,
        .description =
            u"Reads each CODE as a pasted code and prints its canonical code (#RRGGBB) and the\n"
            u"code it takes on for a viewer with protanopia or deuteranopia (red-green) or\n"
            u"tritanopia (blue-yellow), as the bar's lens draws it.\n"
            u"\n"
            u"JSON: an array, one object per CODE:\n"
            u"  {\"input\", \"hex\", \"protanopia\", \"deuteranopia\", \"tritanopia\"}\n"
            u"A CODE that isn't a color gives {\"input\", \"hex\": null}; after all of them were\n"
            u"printed the exit status is 1.\n"_s,
        .options = {},
        .minPositionals = 1,
        .maxPositionals = -1,
        .takesJson = true,
        .handler = &runSimulate,
    };
}

} // namespace hueshelf::cli
