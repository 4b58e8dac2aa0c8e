#include "TempHome.h"

#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/StorageLocations.h"
#include "model/TemplateJson.h"

#include <QDir>
#include <QJsonObject>
#include <QProcess>

namespace hueshelf::testing {

TempHome::TempHome() {
    const QString home = m_dir.path();
    m_paths = AppPaths::forHome(home, home + u"/.config", home + u"/.local/share");
    QDir().mkpath(m_paths.configDir);
    QDir().mkpath(m_paths.dataDir);
}

QProcessEnvironment childEnvironment(const QString& home) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), home);
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), home + u"/.config");
    env.insert(QStringLiteral("XDG_DATA_HOME"), home + u"/.local/share");
    env.remove(StorageLocations::isolationVariable);
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("no-such-platform"));
    return env;
}

ChildRun runChild(const QString& program, const QStringList& arguments, const QString& home,
                  const QByteArray& input) {
    QProcess process;
    process.setProcessEnvironment(childEnvironment(home));
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool finished = process.waitForFinished(30'000);
    if (!finished) {
        process.kill();
        process.waitForFinished(5'000);
    }
    return {finished && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput(), process.readAllStandardError()};
}

bool seedPreferences(const QString& path, const QList<ColorTemplate>& templates,
                     const QJsonValue& active) {
    QJsonObject object{{PreferencesKeys::lastModified, 1'700'000'000'000.0},
                       {PreferencesKeys::schemaVersion, 2},
                       {PreferencesKeys::templates, TemplateJson::templatesToJson(templates)},
                       {QStringLiteral("helperState"), true}};
    if (!active.isUndefined())
        object.insert(PreferencesKeys::activeTemplateId, active);
    return PreferencesFile::write(path, object);
}

} // namespace hueshelf::testing
