#pragma once

#include <QString>
#include <QStringList>

namespace hueshelf::app {

// What the desktop hands the program on its command line (or a second launch hands over):
// palette links to preview and palette files to import. Anything else is set aside.
struct LaunchArguments {
    // Each in the program's own scheme (hueshelf://import#...); a web link arrives converted.
    QStringList links;
    // Absolute paths of *.hueshelf files, in the order given.
    QStringList files;
    // Everything else, as it was given.
    QStringList ignored;

    // `workingDir` resolves relative paths: that of the process the arguments came from.
    static LaunchArguments classify(const QStringList& arguments, const QString& workingDir);

    // The accepted arguments as another instance can open them: links, then absolute paths.
    QStringList handOver() const;
    bool isEmpty() const { return links.isEmpty() && files.isEmpty(); }

    // The line written to standard error for an argument that was set aside.
    static QString ignoredMessage(const QString& argument);
};

} // namespace hueshelf::app
