#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <functional>

namespace hueshelf::cli {

class Invocation;

// Wording shared by the commands that read colour arguments.
namespace ColorArguments {

// The one stderr line for arguments that aren't colour codes: Not a color code: "a", "b"
QString unreadableMessage(const QStringList& inputs);

// What a per-code command says of one argument, for machines and for people.
struct CodeReport {
    bool isReadable = false;
    QJsonObject json;
    QString text;
};

// Runs a command that describes each argument on its own: all of them are printed (a JSON
// array, or text blocks), and only then are the unreadable ones reported, together, so a
// script sees which of several codes failed. Answers the exit status.
int reportEachCode(Invocation& call, const std::function<CodeReport(const QString&)>& describe);

} // namespace ColorArguments
} // namespace hueshelf::cli
