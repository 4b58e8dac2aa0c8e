#pragma once

#include "cli/CommandLine.h"
#include "model/StorageLocations.h"

#include <QJsonDocument>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTextStream>

namespace hueshelf::testing {

// One in-process run of the command line, with what it wrote.
struct CliOutcome {
    int status = -1;
    QString out;
    QString err;
    QJsonDocument json() const { return QJsonDocument::fromJson(out.toUtf8()); }
};

inline CliOutcome runCli(const QStringList& arguments) {
    CliOutcome outcome;
    QTextStream out(&outcome.out);
    QTextStream err(&outcome.err);
    outcome.status = cli::run(arguments, out, err);
    out.flush();
    err.flush();
    return outcome;
}

// One run of the built executable, with what it wrote.
struct BinaryRun {
    bool finished = false; // exited normally, neither crashed nor hung
    int status = -1;
    QByteArray out;
    QByteArray err;
    QJsonDocument json() const { return QJsonDocument::fromJson(out); }
};

// The environment of a script whose home (and configuration) is `home`.
inline QProcessEnvironment
homeEnvironment(const QString& home,
                QProcessEnvironment env = QProcessEnvironment::systemEnvironment()) {
    env.insert(QStringLiteral("HOME"), home);
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), home + u"/.config");
    env.insert(QStringLiteral("XDG_DATA_HOME"), home + u"/.local/share");
    env.remove(StorageLocations::isolationVariable);
    return env;
}

// Runs the executable as a script would, with no display: the platform plugin is one that
// doesn't exist, so any attempt to start the GUI aborts the run instead of quietly working.
inline BinaryRun runBinary(const QStringList& arguments, QProcessEnvironment env) {
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("no-such-platform"));
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(HUESHELF_BINARY), arguments);
    BinaryRun outcome;
    if (!process.waitForStarted(10'000))
        return outcome;
    if (!process.waitForFinished(20'000)) {
        process.kill();
        process.waitForFinished(5'000);
        return outcome;
    }
    outcome.finished = process.exitStatus() == QProcess::NormalExit;
    outcome.status = process.exitCode();
    outcome.out = process.readAllStandardOutput();
    outcome.err = process.readAllStandardError();
    return outcome;
}

} // namespace hueshelf::testing
