#include "aitools/ForeignFiles.h"

#include <QFile>
#include <QStringDecoder>

namespace hueshelf::ForeignFiles {

std::optional<QByteArray> readBytes(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    return bytes;
}

std::optional<QString> readUtf8Text(const QString& path) {
    const std::optional<QByteArray> bytes = readBytes(path);
    if (!bytes)
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom |
                                                     QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(*bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

std::optional<ForeignJson> readJsonObject(const QString& path) {
    const std::optional<QByteArray> bytes = readBytes(path);
    if (!bytes)
        return std::nullopt;
    std::optional<ForeignJson> root = ForeignJson::parse(*bytes);
    if (!root || !root->isObject())
        return std::nullopt;
    return root;
}

} // namespace hueshelf::ForeignFiles
