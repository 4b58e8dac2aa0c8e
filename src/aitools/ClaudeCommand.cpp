#include "aitools/AIToolConnector.h"

#include <QFileInfo>
#include <QProcess>
#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace hueshelf {

namespace {

std::optional<QString> firstExecutable(const QStringList& candidates) {
    for (const QString& candidate : candidates) {
        const QFileInfo info(candidate);
        if (info.isFile() && info.isExecutable())
            return candidate;
    }
    return std::nullopt;
}

QString decodedOrEmpty(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    return decoder.hasError() ? QString() : text;
}

} // namespace

AIToolFailure AIToolConnector::runClaude(const QStringList& arguments) const {
    const std::optional<QString> program = firstExecutable(claudeCandidates);
    if (!program)
        return ConnectorError::claudeCLINotFound();

    QProcess process;
    process.setProgram(*program);
    process.setArguments(arguments);
    // Nobody reads its output, and a full pipe would stall the command.
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start();
    if (!process.waitForStarted(-1))
        return PlatformError{u"Couldn't start "_s + *program + u": "_s + process.errorString()};
    process.waitForFinished(-1);
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return std::nullopt;
    return ConnectorError::claudeCLIFailed(decodedOrEmpty(process.readAllStandardError()));
}

} // namespace hueshelf
