#include "exchange/PaletteFile.h"
#include "model/TemplateNaming.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <string_view>

using namespace Qt::StringLiterals;

namespace hueshelf::PaletteFile {

namespace {

bool isRefusedInFileNames(QChar c) {
    static constexpr char16_t refused[] = u"/\\:*?\"<>|";
    for (const char16_t r : std::u16string_view(refused))
        if (c.unicode() == r)
            return true;
    return false;
}

bool isTrimmedFromFileNames(QChar c) {
    return c == u'-' || c == u'\t' || c.category() == QChar::Separator_Space;
}

// Where the extension of a path's last component begins (the index of its dot), or -1. A
// leading dot marks a hidden file rather than an extension, and a trailing one starts nothing.
qsizetype extensionDot(const QString& path) {
    const qsizetype nameStart = path.lastIndexOf(u'/') + 1;
    const qsizetype dot = path.lastIndexOf(u'.');
    if (dot <= nameStart || dot == path.size() - 1)
        return -1;
    return dot;
}

QString extensionOf(const QString& path) {
    const qsizetype dot = extensionDot(path);
    return dot < 0 ? QString() : path.mid(dot + 1);
}

QJsonObject colorObject(const ColorItem& color) {
    QJsonObject object{{u"hex"_s, color.hex}, {u"name"_s, color.name}};
    if (color.dividerBefore) {
        object.insert(u"dividerBefore"_s, true);
        if (!color.dividerLabel.isEmpty())
            object.insert(u"dividerLabel"_s, color.dividerLabel);
    }
    return object;
}

} // namespace

QJsonObject exportDictionary(const QString& name, const QList<ColorItem>& colors,
                             const QDateTime& date) {
    QJsonArray colorArray;
    for (const ColorItem& color : colors)
        colorArray.append(colorObject(color));
    // Qt::ISODate leaves the milliseconds out and marks UTC with "Z".
    const QString exportedAt = date.toUTC().toString(Qt::ISODate);
    return QJsonObject{
        {u"colors"_s, colorArray},
        {u"exportedAt"_s, exportedAt},
        {u"name"_s, name},
        {u"version"_s, fileVersion},
    };
}

QByteArray exportBytes(const QString& name, const QList<ColorItem>& colors, const QDateTime& date) {
    // QJsonObject keeps its keys sorted, so the indented text comes out in key order.
    return QJsonDocument(exportDictionary(name, colors, date)).toJson(QJsonDocument::Indented);
}

QString suggestedFileName(const QString& paletteName) {
    QString fileName = paletteName;
    for (QChar& c : fileName) {
        if (isRefusedInFileNames(c))
            c = u'-';
    }
    qsizetype begin = 0;
    qsizetype end = fileName.size();
    while (begin < end && isTrimmedFromFileNames(fileName.at(begin)))
        ++begin;
    while (end > begin && isTrimmedFromFileNames(fileName.at(end - 1)))
        --end;
    fileName = fileName.mid(begin, end - begin);
    return fileName.isEmpty() ? u"Palette"_s : fileName;
}

QString saveDialogFileName(const QString& paletteName) {
    const QString suggested = suggestedFileName(paletteName);
    const QString suffix = u'.' + fileExtension;
    return suggested.endsWith(suffix) ? suggested : suggested + suffix;
}

QString withFileExtension(const QString& chosenPath) {
    if (extensionOf(chosenPath).toLower() == fileExtension)
        return chosenPath;
    const qsizetype dot = extensionDot(chosenPath);
    const QString base = dot < 0 ? chosenPath : chosenPath.left(dot);
    return base + u'.' + fileExtension;
}

bool isPaletteFilePath(const QString& path) {
    return extensionOf(path).toLower() == fileExtension;
}

} // namespace hueshelf::PaletteFile
