#include "cli/Invocation.h"

#include "cli/HelpText.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {

Invocation::Invocation(const Command& command, ParsedArguments arguments, QTextStream& out,
                       QTextStream& err)
    : m_command(command), m_arguments(std::move(arguments)), m_out(out), m_err(err) {}

int Invocation::usageError(const QString& message) {
    m_err << HelpText::usageError(m_command, message);
    return ExitStatus::usage;
}

int Invocation::fail(const QString& message) {
    m_err << message << '\n';
    return ExitStatus::unusableInput;
}

void Invocation::printJson(const QJsonArray& document) {
    // QJsonDocument writes doubles in their shortest round-trip form, which is what scripts
    // need to get back the exact values.
    m_out << QString::fromUtf8(QJsonDocument(document).toJson(QJsonDocument::Indented));
}

void Invocation::printJson(const QJsonObject& document) {
    m_out << QString::fromUtf8(QJsonDocument(document).toJson(QJsonDocument::Indented));
}

} // namespace hueshelf::cli
