#include "cli/Invocation.h"
#include "cli/PaletteLookup.h"
#include "cli/TextTable.h"
#include "cli/TimeText.h"
#include "model/StoreSession.h"
#include "model/TemplateJson.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

QString textOf(const ColorTemplate& palette, bool isActive) {
    QStringList marks;
    if (isActive)
        marks << u"active"_s;
    if (palette.isLocked)
        marks << u"locked"_s;
    QString text = palette.name;
    if (!marks.isEmpty())
        text += u"  ("_s + marks.join(u", "_s) + u')';
    text += u'\n';

    TextTable facts;
    facts.addRow({u"id"_s, uuidText(palette.id)});
    facts.addRow({u"colors"_s, QString::number(palette.colors.size())});
    facts.addRow({u"revision"_s, QString::number(palette.revision)});
    facts.addRow({u"updated"_s, timeText(palette.updatedAt)});
    text += facts.render();

    // A group's heading sits on its own line above its first colour, as the bar draws it, and
    // stays out of the colours' columns.
    TextTable colors(u"  "_s);
    for (const ColorItem& color : palette.colors)
        colors.addRow({color.hex, color.name, color.isLocked ? u"locked"_s : QString()});
    QStringList colorLines = colors.render().split(u'\n');
    colorLines.removeLast(); // after the last row's line end
    if (!colorLines.isEmpty())
        text += u'\n';
    for (qsizetype i = 0; i < colorLines.size(); ++i) {
        const ColorItem& color = palette.colors.at(i);
        if (color.dividerBefore)
            text += color.dividerLabel.isEmpty() ? u"  --\n"_s
                                                 : QString(u"  -- "_s + color.dividerLabel + u'\n');
        text += colorLines.at(i) + u'\n';
    }
    return text;
}

int runShow(Invocation& call) {
    const StoreSession session(StoreSession::Access::readOnly);
    const std::optional<QString> wanted = call.firstPositional();
    const std::optional<ColorTemplate> palette = PaletteLookup::resolve(session.storage(), wanted);
    if (!palette)
        return call.fail(PaletteLookup::notFoundMessage(wanted));

    if (call.json())
        call.printJson(TemplateJson::templateToJson(*palette));
    else
        call.out() << textOf(*palette, palette->id == session.storage().activeTemplateId());
    return ExitStatus::success;
}

} // namespace

Command showCommand() {
    return Command{
        .name = u"show"_s,
        .summary = u"Show one stored palette with its colors"_s,
        .usage = u"show [PALETTE] [--json]"_s,
        .description =
            u"Prints the palette named by PALETTE (its exact name, else its id), or the active\n"
            u"palette when none is named: its id, revision, last change and its colors with\n"
            u"their groups. Nothing is written.\n"
            u"\n"
            u"JSON: the palette's stored record in its JSON form\n"
            u"({\"id\", \"name\", \"colors\": [{\"id\", \"name\", \"hex\", \"isAutoNamed\",\n"
            u"\"isLocked\", \"dividerBefore\", \"dividerLabel\"}], \"createdAt\", \"updatedAt\",\n"
            u"\"revision\", \"contentHash\", \"isLocked\"}, and \"updatedByDeviceId\" when set).\n"_s,
        .options = {},
        .minPositionals = 0,
        .maxPositionals = 1,
        .takesJson = true,
        .handler = &runShow,
    };
}

} // namespace hueshelf::cli
