#include "cli/Invocation.h"
#include "exchange/LinkImport.h"
#include "exchange/PaletteImport.h"
#include "exchange/PaletteLink.h"
#include "model/StoreSession.h"
#include "model/TemplateJson.h"
#include "util/Clock.h"
#include "util/QtScheduler.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

// Whether the argument is meant as a link rather than a file: a link of either form, or a bare
// payload. A name of an existing file always means the file.
bool looksLikeLink(const QString& text) {
    if (QFileInfo::exists(text))
        return false;
    return LinkImport::isOwnSchemeLink(text) || LinkImport::isWebLink(text) ||
           text.startsWith(u"#1;"_s) || text.startsWith(u"1;"_s);
}

int report(Invocation& call, StoreSession& session, const PaletteImportOutcome& outcome) {
    if (outcome.kind == PaletteImportOutcome::Kind::failed) {
        // The bar's alert may hold a paragraph break; a command says it on one line.
        QString message = outcome.message;
        message.replace(u"\n\n"_s, u" "_s);
        return call.fail(message.simplified());
    }
    session.close();
    if (call.json()) {
        QJsonObject object{{u"message"_s, outcome.message},
                           {u"imported"_s, outcome.kind == PaletteImportOutcome::Kind::imported}};
        for (const ColorTemplate& palette : session.storage().templates()) {
            if (outcome.templateId && palette.id == *outcome.templateId)
                object.insert(u"palette"_s, TemplateJson::templateToJson(palette));
        }
        call.printJson(object);
    } else {
        call.out() << outcome.message << u'\n';
    }
    return ExitStatus::success;
}

int runImport(Invocation& call) {
    const QString& argument = call.positionals().constFirst();
    if (looksLikeLink(argument)) {
        const PaletteLink::Result<PaletteLink::Palette> palette = PaletteLink::decode(argument);
        if (!palette)
            return call.fail(LinkImport::openFailureText);
        StoreSession session(StoreSession::Access::readWrite);
        return report(call, session,
                      LinkImport::addDecodedPalette(session.storage(), *palette,
                                                    SystemClock::instance().nowMs()));
    }

    StoreSession session(StoreSession::Access::readWrite);
    // The importer posts the bar's toast on the next turn; a command has no bar and prints the
    // outcome instead, so the posted toast simply never runs.
    QtScheduler scheduler;
    return report(call, session,
                  PaletteImport::importPaletteFile(argument, false, session.storage(), scheduler,
                                                   SystemClock::instance()));
}

} // namespace

Command importCommand() {
    return Command{
        .name = u"import"_s,
        .summary = u"Add a palette from a .hueshelf file or a palette link"_s,
        .usage = u"import FILE|LINK [--json]"_s,
        .description =
            u"Adds the palette of a palette file or a palette link (either form, or the part\n"
            u"after its \"#\") as the bar does when one is dropped or opened: a new palette,\n"
            u"made active, named with \" (1)\", \" (2)\"... when its name is taken. When the\n"
            u"same palette is already stored, that one becomes active instead and nothing is\n"
            u"added. Prints \"Imported \\\"NAME\\\"\" or \"You already have this palette.\"; a\n"
            u"file or link that can't be read exits 1 with the bar's message.\n"
            u"\n"
            u"JSON: {\"message\", \"imported\", \"palette\"}, the palette's stored record.\n"_s,
        .options = {},
        .minPositionals = 1,
        .maxPositionals = 1,
        .takesJson = true,
        .handler = &runImport,
    };
}

} // namespace hueshelf::cli
