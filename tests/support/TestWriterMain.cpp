// A second process of the product for the multi-process tests. It opens the palette store over
// the home its environment names, exactly as a store command does, makes one scripted edit,
// saves, waits for the write and exits:
//
//   hueshelf_test_writer add NAME HEX...           appends a palette (not made active), prints its
//   id hueshelf_test_writer rename PALETTE NAME hueshelf_test_writer recolor PALETTE INDEX HEX
//   hueshelf_test_writer delete PALETTE
//   hueshelf_test_writer loop
//
// `loop` keeps one palette named "Loop N" and saves N+1, N+2, ... as fast as it can, putting a
// large "Ballast" palette in on odd counts and taking it out on even ones so that the file's
// size keeps changing. It prints "writing" before the first save and "saved N" once save N is
// in the file, and goes on until it is killed (or, should nobody kill it, for 30 seconds).
//
// Exit status: 0 done, 1 no such palette, 2 usage.

#include "cli/PaletteLookup.h"
#include "model/ColorItem.h"
#include "model/ColorTemplate.h"
#include "model/StoreSession.h"
#include "util/Clock.h"

#include <QDeadlineTimer>
#include <QStringList>

#include <cstdio>
#include <optional>

using namespace Qt::StringLiterals;
using hueshelf::ColorItem;
using hueshelf::ColorStorage;
using hueshelf::ColorTemplate;
using hueshelf::StoreSession;
using hueshelf::cli::PaletteLookup::find;

namespace {

constexpr int kUsage = 2;
constexpr int kNotFound = 1;
constexpr int kBallastColors = 40;
constexpr int kLoopLimitMs = 30'000;

void printLine(const QString& line) {
    // Straight to the pipe: a test that kills this process reads what was printed before.
    std::fputs((line + u'\n').toUtf8().constData(), stdout);
    std::fflush(stdout);
}

QList<ColorItem> colorsOf(const QStringList& codes) {
    QList<ColorItem> colors;
    for (qsizetype i = 0; i < codes.size(); ++i)
        colors.append(ColorItem::make(u"Color "_s + QString::number(i + 1), codes.at(i), false));
    return colors;
}

int add(StoreSession& session, const QStringList& arguments) {
    if (arguments.size() < 2)
        return kUsage;
    ColorStorage& storage = session.storage();
    const ColorTemplate palette = ColorTemplate::makeNew(
        arguments.at(0), colorsOf(arguments.mid(1)), hueshelf::SystemClock::instance().nowMs());
    // Appended the way another process of the product adds one: the active palette stays.
    QList<ColorTemplate> templates = storage.templates();
    templates.append(palette);
    storage.setTemplates(templates);
    storage.saveTemplates();
    session.close();
    printLine(hueshelf::uuidText(palette.id));
    return 0;
}

int rename(StoreSession& session, const QStringList& arguments) {
    if (arguments.size() != 2)
        return kUsage;
    const std::optional<ColorTemplate> palette = find(session.storage().templates(), arguments[0]);
    if (!palette)
        return kNotFound;
    session.storage().editTemplate(palette->id,
                                   [&](ColorTemplate& edited) { edited.name = arguments[1]; });
    session.storage().saveTemplates();
    session.close();
    return 0;
}

int recolor(StoreSession& session, const QStringList& arguments) {
    if (arguments.size() != 3)
        return kUsage;
    const std::optional<ColorTemplate> palette = find(session.storage().templates(), arguments[0]);
    bool isNumber = false;
    const qsizetype index = arguments[1].toLongLong(&isNumber);
    if (!isNumber)
        return kUsage;
    if (!palette || index < 0 || index >= palette->colors.size())
        return kNotFound;
    session.storage().editTemplate(
        palette->id, [&](ColorTemplate& edited) { edited.colors[index].hex = arguments[2]; });
    session.storage().saveTemplates();
    session.close();
    return 0;
}

int remove(StoreSession& session, const QStringList& arguments) {
    if (arguments.size() != 1)
        return kUsage;
    const std::optional<ColorTemplate> palette = find(session.storage().templates(), arguments[0]);
    if (!palette)
        return kNotFound;
    session.storage().deleteTemplate(palette->id);
    session.storage().saveTemplates();
    session.close();
    return 0;
}

// The count in the name of the loop's palette, if there is one.
std::optional<qint64> loopCount(const ColorTemplate& palette) {
    if (!palette.name.startsWith(u"Loop "_s))
        return std::nullopt;
    bool isNumber = false;
    const qint64 count = palette.name.mid(5).toLongLong(&isNumber);
    return isNumber ? std::optional<qint64>(count) : std::nullopt;
}

int loop(StoreSession& session) {
    ColorStorage& storage = session.storage();
    const double now = hueshelf::SystemClock::instance().nowMs();
    QList<ColorTemplate> templates = storage.templates();
    qsizetype loopIndex = -1;
    for (qsizetype i = 0; i < templates.size(); ++i) {
        if (loopCount(templates.at(i)))
            loopIndex = i;
    }
    if (loopIndex < 0) {
        templates.append(ColorTemplate::makeNew(u"Loop 0"_s, colorsOf({u"#336699"_s}), now));
        loopIndex = templates.size() - 1;
    }
    const QUuid loopId = templates.at(loopIndex).id;
    qint64 count = *loopCount(templates.at(loopIndex));
    QStringList ballastCodes;
    for (int i = 0; i < kBallastColors; ++i)
        ballastCodes << u"#%1"_s.arg(i * 0x060504, 6, 16, QChar(u'0')).toUpper();
    const ColorTemplate ballast = ColorTemplate::makeNew(u"Ballast"_s, colorsOf(ballastCodes), now);

    printLine(u"writing"_s);
    const QDeadlineTimer limit(kLoopLimitMs);
    while (!limit.hasExpired()) {
        ++count;
        templates.removeIf([](const ColorTemplate& palette) { return palette.name == u"Ballast"; });
        for (ColorTemplate& palette : templates) {
            if (palette.id == loopId)
                palette.name = u"Loop "_s + QString::number(count);
        }
        if (count % 2 == 1)
            templates.append(ballast);
        storage.setTemplates(templates);
        storage.saveTemplates();
        session.close();
        printLine(u"saved "_s + QString::number(count));
        // The store stamped what changed; go on from its list.
        templates = storage.templates();
    }
    return 0;
}

} // namespace

int main(int argc, char* argv[]) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    if (arguments.isEmpty())
        return kUsage;
    const QString command = arguments.takeFirst();

    StoreSession session(StoreSession::Access::readWrite);
    if (command == u"add")
        return add(session, arguments);
    if (command == u"rename")
        return rename(session, arguments);
    if (command == u"recolor")
        return recolor(session, arguments);
    if (command == u"delete")
        return remove(session, arguments);
    if (command == u"loop" && arguments.isEmpty())
        return loop(session);
    return kUsage;
}
