#include "cli/Invocation.h"
#include "cli/PaletteLookup.h"
#include "exchange/LinkImport.h"
#include "exchange/LinkShare.h"
#include "exchange/PaletteLink.h"
#include "model/StoreSession.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

// "tooManyColors: Links hold up to 40 colors": the case for scripts, the words for people. The
// limits have the share action's words either way; a link that can't be read otherwise gets
// the words the bar shows when it can't open one.
QString refusal(PaletteLink::LinkError error, bool decoding) {
    using PaletteLink::LinkError;
    const bool limit = error == LinkError::tooManyColors ||
                       error == LinkError::paletteNameTooLong ||
                       error == LinkError::colorNameTooLong;
    const QString words =
        decoding && !limit ? LinkImport::openFailureText : LinkShare::errorMessage(error);
    return PaletteLink::caseName(error) + u": "_s + words;
}

int decodeLink(Invocation& call, const QString& text) {
    const PaletteLink::Result<PaletteLink::Palette> palette = PaletteLink::decode(text);
    if (!palette)
        return call.fail(refusal(palette.error(), true));
    if (call.json()) {
        QJsonArray colors;
        for (const PaletteLink::Color& color : palette->colors) {
            colors.append(QJsonObject{{u"name"_s, color.name},
                                      {u"hex"_s, color.hex},
                                      {u"dividerBefore"_s, color.dividerBefore},
                                      {u"dividerLabel"_s, color.dividerLabel}});
        }
        call.printJson(QJsonObject{{u"name"_s, palette->name}, {u"colors"_s, colors}});
        return ExitStatus::success;
    }
    call.out() << palette->name << u'\n';
    for (const PaletteLink::Color& color : palette->colors) {
        if (color.dividerBefore)
            call.out() << (color.dividerLabel.isEmpty() ? u"  --"_s
                                                        : QString(u"  -- "_s + color.dividerLabel))
                       << u'\n';
        call.out() << u"  "_s << color.hex << u"  "_s << color.name << u'\n';
    }
    return ExitStatus::success;
}

int runLink(Invocation& call) {
    if (call.arguments().has(u"decode"_s)) {
        if (!call.positionals().isEmpty())
            return call.usageError(u"--decode takes the link, not a palette"_s);
        return decodeLink(call, call.arguments().value(u"decode"_s));
    }

    const StoreSession session(StoreSession::Access::readOnly);
    const std::optional<QString> wanted = call.firstPositional();
    const std::optional<ColorTemplate> palette = PaletteLookup::resolve(session.storage(), wanted);
    if (!palette)
        return call.fail(PaletteLookup::notFoundMessage(wanted));
    const PaletteLink::Result<QString> link = PaletteLink::encode(*palette);
    if (!link)
        return call.fail(refusal(link.error(), false));
    if (call.json())
        call.printJson(QJsonObject{{u"link"_s, *link}});
    else
        call.out() << *link << u'\n';
    return ExitStatus::success;
}

} // namespace

Command linkCommand() {
    return Command{
        .name = u"link"_s,
        .summary = u"Print a palette's link, or read one"_s,
        .usage = u"link [PALETTE] [--json]\nlink --decode TEXT [--json]"_s,
        .description =
            u"Prints the link that carries the palette (the active one by default) whole: its\n"
            u"name, its colors and their names, and its groups, all in the link itself. Anyone\n"
            u"can open it in HueShelf. A link holds up to 40 colors, names of up to 60 (palette)\n"
            u"and 40 (colors, group labels) characters, and 2000 characters in all.\n"
            u"\n"
            u"With --decode, reads a link (or the part after its \"#\") and prints its palette.\n"
            u"A refused link, or a palette that can't be a link, exits 1 with the reason's name\n"
            u"and words, such as \"tooManyColors: Links hold up to 40 colors\".\n"
            u"\n"
            u"JSON: {\"link\"}; with --decode {\"name\", \"colors\": [{\"name\", \"hex\",\n"
            u"\"dividerBefore\", \"dividerLabel\"}]}.\n"_s,
        .options = {OptionSpec{.name = u"decode"_s,
                               .shortName = {},
                               .arity = OptionArity::value,
                               .valueName = u"TEXT"_s,
                               .help = u"read this link instead"_s}},
        .minPositionals = 0,
        .maxPositionals = 1,
        .takesJson = true,
        .handler = &runLink,
    };
}

} // namespace hueshelf::cli
