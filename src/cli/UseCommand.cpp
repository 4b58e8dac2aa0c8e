#include "cli/Invocation.h"
#include "cli/PaletteLookup.h"
#include "cli/PaletteSummary.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/StoreSession.h"
#include "model/TemplateJson.h"
#include "util/Clock.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

// The file already names this palette as active, in its canonical text, beside a list that
// holds it. Saving again would only move the stamp and send every running bar to look at a
// file in which nothing changed.
bool fileAlreadyUses(const QString& path, const QUuid& id) {
    const std::optional<QJsonObject> file = PreferencesFile::read(path);
    if (!file || file->value(PreferencesKeys::activeTemplateId) != QJsonValue(uuidText(id)))
        return false;
    const std::optional<QByteArray> data = PreferencesFile::templatesData(*file);
    if (!data)
        return false;
    const std::optional<QList<ColorTemplate>> templates =
        TemplateJson::decodeTemplates(*data, SystemClock::instance());
    return templates && std::any_of(templates->begin(), templates->end(),
                                    [&](const ColorTemplate& palette) { return palette.id == id; });
}

int runUse(Invocation& call) {
    StoreSession session(StoreSession::Access::readWrite);
    ColorStorage& storage = session.storage();
    const QString& wanted = call.positionals().constFirst();
    const std::optional<ColorTemplate> found = PaletteLookup::find(storage.templates(), wanted);
    if (!found)
        return call.fail(PaletteLookup::notFoundMessage(wanted));

    const bool alreadyActive = storage.activeTemplateId() == found->id &&
                               fileAlreadyUses(session.locations().preferencesFile, found->id);
    if (!alreadyActive) {
        // The same road as a click in the gallery: the save merges whatever another process
        // wrote since the load, and close() waits until it is in the file.
        storage.selectTemplate(found->id);
        session.close();
    }

    // The palette as the file now holds it, after any merge.
    const ColorTemplate palette =
        PaletteLookup::byId(storage.templates(), found->id).value_or(*found);
    if (call.json())
        call.printJson(PaletteSummary::toJson(palette, storage.activeTemplateId() == palette.id));
    else
        call.out() << (alreadyActive ? u"Already the active palette: "_s : u"Active palette: "_s)
                   << palette.name << u'\n';
    return ExitStatus::success;
}

} // namespace

Command useCommand() {
    return Command{
        .name = u"use"_s,
        .summary = u"Make a stored palette the active one"_s,
        .usage = u"use PALETTE [--json]"_s,
        .description =
            u"Makes the palette named by PALETTE (its exact name, else its id) the active\n"
            u"palette, saved to the preferences file the way the bar saves it. A running bar\n"
            u"merges the file as it merges any other process's write, and keeps its own\n"
            u"active palette while that still exists. When the file already names the palette\n"
            u"as active, nothing is written.\n"
            u"\n"
            u"JSON: {\"id\", \"name\", \"colorCount\", \"isActive\", \"isLocked\", \"revision\",\n"
            u"\"updatedAt\"} of the palette, as \"palettes\" lists it.\n"_s,
        .options = {},
        .minPositionals = 1,
        .maxPositionals = 1,
        .takesJson = true,
        .handler = &runUse,
    };
}

} // namespace hueshelf::cli
