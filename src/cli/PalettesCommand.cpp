#include "cli/Invocation.h"
#include "cli/PaletteSummary.h"
#include "cli/TextTable.h"
#include "model/StoreSession.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

int runPalettes(Invocation& call) {
    const StoreSession session(StoreSession::Access::readOnly);
    const ColorStorage& storage = session.storage();
    const QUuid active = storage.activeTemplateId();

    if (call.json()) {
        QJsonArray array;
        for (const ColorTemplate& palette : storage.templates())
            array.append(PaletteSummary::toJson(palette, palette.id == active));
        call.printJson(array);
        return ExitStatus::success;
    }
    if (storage.templates().isEmpty()) {
        call.out() << u"No palettes\n"_s;
        return ExitStatus::success;
    }
    TextTable rows;
    for (const ColorTemplate& palette : storage.templates())
        rows.addRow(PaletteSummary::textCells(palette, palette.id == active));
    call.out() << rows.render();
    return ExitStatus::success;
}

} // namespace

Command palettesCommand() {
    return Command{
        .name = u"palettes"_s,
        .summary = u"List the stored palettes in gallery order, the active one marked"_s,
        .usage = u"palettes [--json]"_s,
        .description =
            u"Reads the palettes as the bar loads them and lists them in gallery order: the\n"
            u"active one marked \"*\", then name, number of colors, lock and id. Nothing is\n"
            u"written.\n"
            u"\n"
            u"JSON: an array of {\"id\", \"name\", \"colorCount\", \"isActive\", \"isLocked\",\n"
            u"\"revision\", \"updatedAt\"}; updatedAt in milliseconds since 1970.\n"_s,
        .options = {},
        .minPositionals = 0,
        .maxPositionals = 0,
        .takesJson = true,
        .handler = &runPalettes,
    };
}

} // namespace hueshelf::cli
