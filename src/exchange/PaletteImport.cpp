#include "exchange/PaletteImport.h"

#include "exchange/PaletteFile.h"
#include "exchange/PaletteFileTexts.h"
#include "exchange/PaletteIdentity.h"

#include <QFile>
#include <QFileInfo>
#include <QPointer>

namespace hueshelf::PaletteImport {

namespace {

PaletteImportOutcome failure(const QString& message) {
    return PaletteImportOutcome{PaletteImportOutcome::Kind::failed, message, std::nullopt};
}

// The toast waits for the next turn, when whatever dropped the file has finished.
void announceLater(ColorStorage& storage, Scheduler& scheduler, const QString& message) {
    scheduler.scheduleAfter(0.0, [guard = QPointer<ColorStorage>(&storage), message] {
        if (guard)
            guard->announce(message, PaletteFileTexts::importIcon);
    });
}

QStringList templateNames(const QList<ColorTemplate>& templates) {
    QStringList names;
    names.reserve(templates.size());
    for (const ColorTemplate& palette : templates)
        names.append(palette.name);
    return names;
}

} // namespace

QString uniqueImportedName(const QString& name, const QStringList& existingNames) {
    if (!existingNames.contains(name, Qt::CaseSensitive))
        return name;
    for (qsizetype number = 1;; ++number) {
        QString candidate = name + QStringLiteral(" (") + QString::number(number) + u')';
        if (!existingNames.contains(candidate, Qt::CaseSensitive))
            return candidate;
    }
}

PaletteImportOutcome importPaletteFile(const QString& path, bool isOneOfSeveral,
                                       ColorStorage& storage, Scheduler& scheduler, Clock& clock) {
    // Asked before reading, so a huge file costs nothing. A size that can't be told lets the
    // reading decide.
    const QFileInfo info(path);
    if (info.exists() && info.size() > PaletteFile::maxFileSize)
        return failure(PaletteFile::tooLargeMessage());

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure(PaletteFileTexts::readFailurePrefix + file.errorString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return failure(PaletteFileTexts::readFailurePrefix + file.errorString());
    file.close();

    const PaletteFileResult result = PaletteFile::parsePaletteFile(bytes);
    if (result.errorMessage || !result.name)
        return failure(result.errorMessage.value_or(PaletteFile::notAPaletteMessage()));

    if (const std::optional<QUuid> existing =
            findIdenticalPalette(*result.name, result.colors, storage.templates())) {
        storage.selectTemplate(*existing);
        const QString message = isOneOfSeveral ? PaletteFileTexts::alreadyHaveOneOfSeveral
                                               : PaletteFileTexts::alreadyHave;
        announceLater(storage, scheduler, message);
        return PaletteImportOutcome{PaletteImportOutcome::Kind::alreadyHave, message, existing};
    }

    const QString name = uniqueImportedName(*result.name, templateNames(storage.templates()));
    const ColorTemplate palette = ColorTemplate::makeNew(name, result.colors, clock.nowMs());
    storage.addTemplate(palette);
    const QString message = PaletteFileTexts::importedAnnouncement(name, isOneOfSeveral);
    announceLater(storage, scheduler, message);
    return PaletteImportOutcome{PaletteImportOutcome::Kind::imported, message, palette.id};
}

} // namespace hueshelf::PaletteImport
