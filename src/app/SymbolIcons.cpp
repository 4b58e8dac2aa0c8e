#include "app/SymbolIcons.h"

#include "app/SymbolIconEngine.h"
#include "app/SymbolIconTable.h"

#include <QFile>
#include <QHash>

#include <algorithm>

// The resources live in a static library: naming them here keeps the linker from dropping them
// and registers them before the first lookup. It must stand outside any namespace.
static void initSymbolIconResources() {
    Q_INIT_RESOURCE(resources);
}

namespace hueshelf::app {

namespace {

const SymbolIconEntry* findEntry(const QString& symbolName) {
    const auto less = [](const SymbolIconEntry& entry, const QString& name) {
        const QLatin1StringView symbol(entry.symbol.data(), qsizetype(entry.symbol.size()));
        return QString::compare(symbol, name, Qt::CaseSensitive) < 0;
    };
    const auto* found =
        std::lower_bound(symbolIconTable.begin(), symbolIconTable.end(), symbolName, less);
    if (found == symbolIconTable.end() ||
        QLatin1StringView(found->symbol.data(), qsizetype(found->symbol.size())) != symbolName)
        return nullptr;
    return found;
}

void ensureResources() {
    static const bool registered = [] {
        initSymbolIconResources();
        return true;
    }();
    Q_UNUSED(registered);
}

struct IconKey {
    QString name;
    QRgb rgba;
    friend bool operator==(const IconKey&, const IconKey&) = default;
};

size_t qHash(const IconKey& key, size_t seed = 0) {
    return qHashMulti(seed, key.name, key.rgba);
}

} // namespace

QString symbolIconPath(const QString& symbolName) {
    const SymbolIconEntry* entry = findEntry(symbolName);
    if (!entry)
        return QString();
    return QLatin1StringView(entry->path.data(), qsizetype(entry->path.size()));
}

QIcon symbolIcon(const QString& symbolName, const QColor& color) {
    const QString path = symbolIconPath(symbolName);
    if (path.isEmpty())
        return QIcon();
    ensureResources();

    // Icons are made on the interface thread only, like every other QIcon of the program.
    static QHash<IconKey, QIcon> cache;
    const IconKey key{symbolName, color.rgba()};
    if (const auto found = cache.constFind(key); found != cache.constEnd())
        return *found;

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QIcon();
    QIcon icon(new SymbolIconEngine(file.readAll(), color));
    cache.insert(key, icon);
    return icon;
}

} // namespace hueshelf::app
