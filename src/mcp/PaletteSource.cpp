#include "mcp/PaletteSource.h"

#include "aitools/AIToolSettingsKeys.h"
#include "model/StoreSession.h"

using namespace Qt::StringLiterals;

namespace hueshelf::mcp {

PaletteSource::PaletteSource(AppPaths paths, QProcessEnvironment env)
    : m_paths(std::move(paths)), m_env(std::move(env)) {}

PaletteSnapshot PaletteSource::read() const {
    StoreSession session(StoreSession::Access::readOnly, m_paths, m_env);
    PaletteSnapshot snapshot;
    snapshot.templates = session.storage().templates();
    snapshot.activeId = session.storage().activeTemplateId();
    // The panel writes upper-case UUID text; anything else that reads as an id is taken too.
    const QString stored =
        session.settings().value(AIToolSettingsKeys::brandTemplateId).toString().trimmed();
    const QUuid brand = QUuid::fromString(stored);
    if (!brand.isNull())
        snapshot.brandId = brand;
    return snapshot;
}

ColorTemplate PaletteSource::create(const QString& wantedName,
                                    const QList<ColorItem>& colors) const {
    StoreSession session(StoreSession::Access::readWrite, m_paths, m_env);
    const ColorTemplate added = session.storage().createTemplate(wantedName, colors);
    session.close();
    // After the merge with whatever another process wrote meanwhile. By id alone: another
    // palette may well be named like this one's id.
    for (const ColorTemplate& palette : session.storage().templates()) {
        if (palette.id == added.id)
            return palette;
    }
    return added;
}

} // namespace hueshelf::mcp
