#include "aitools/AIToolConfigWriter.h"
#include "aitools/ForeignFiles.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace hueshelf::AIToolConfigWriter {

ForeignJson makeEntry(AIToolRegistry::EntryStyle style, const QString& command,
                      const QString& clientId) {
    ForeignJson entry = ForeignJson::object();
    entry.set(u"args"_s, ForeignJson::array(
                             {ForeignJson::string(u"--client"_s), ForeignJson::string(clientId)}));
    entry.set(u"command"_s, ForeignJson::string(command));
    switch (style) {
    case AIToolRegistry::EntryStyle::standard:
        break;
    case AIToolRegistry::EntryStyle::vscode:
        entry.set(u"type"_s, ForeignJson::string(u"stdio"_s));
        break;
    case AIToolRegistry::EntryStyle::zed:
        entry.set(u"source"_s, ForeignJson::string(u"custom"_s));
        break;
    }
    return entry;
}

AIToolFailure mergeJSONEntry(const QString& path, const QString& topKey, const QString& name,
                             const ForeignJson& entry) {
    ForeignJson root = ForeignJson::object();
    const std::optional<QByteArray> bytes = ForeignFiles::readBytes(path);
    // A file that is there but can't be read (no permission, a folder) is someone's settings
    // all the same, and is not written over.
    if (!bytes && QFileInfo::exists(path))
        return PlatformError{u"The file exists but can't be read"_s};
    // A missing or empty file counts as new: there is nothing to keep.
    if (bytes && !bytes->isEmpty()) {
        std::optional<ForeignJson> parsed = ForeignJson::parse(*bytes);
        if (!parsed || !parsed->isObject())
            return WriteError::fileNotParseable();
        root = std::move(*parsed);
        if (AIToolFailure failure = backupOnce(path))
            return failure;
    }

    const ForeignJson* existing = root.find(topKey);
    ForeignJson servers = existing && existing->isObject() ? *existing : ForeignJson::object();
    servers.set(name, entry);
    root.set(topKey, std::move(servers));
    return writeAtomically(root.prettyPrinted(), path);
}

AIToolFailure removeJSONEntry(const QString& path, const QString& topKey, const QString& name) {
    const std::optional<QByteArray> bytes = ForeignFiles::readBytes(path);
    if (!bytes)
        return std::nullopt;
    // Unlike the merge, an empty file is no JSON here.
    std::optional<ForeignJson> root = ForeignJson::parse(*bytes);
    if (!root || !root->isObject())
        return WriteError::fileNotParseable();

    const ForeignJson* existing = root->find(topKey);
    if (!existing || !existing->isObject() || !existing->contains(name))
        return std::nullopt;
    ForeignJson servers = *existing;
    servers.remove(name);
    root->set(topKey, std::move(servers));

    if (AIToolFailure failure = backupOnce(path))
        return failure;
    return writeAtomically(root->prettyPrinted(), path);
}

} // namespace hueshelf::AIToolConfigWriter
