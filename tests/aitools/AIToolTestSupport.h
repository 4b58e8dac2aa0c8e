#pragma once

#include "aitools/AIToolConnector.h"
#include "aitools/AIToolRegistry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <ostream>

// Readable failure messages for QString in GoogleTest expectations.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace hueshelf::testing {

// A scratch directory in which tests lay out homes and whole machines.
class Scratch {
public:
    QString path(const QString& relative = {}) const {
        return relative.isEmpty() ? m_dir.path() : m_dir.path() + u'/' + relative;
    }
    void write(const QString& relative, const QByteArray& bytes) const {
        QDir().mkpath(QFileInfo(path(relative)).absolutePath());
        QFile file(path(relative));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << relative.toStdString();
        file.write(bytes);
    }
    // Nothing if the file can't be read, so that "absent" and "empty" differ.
    std::optional<QByteArray> read(const QString& relative) const {
        QFile file(path(relative));
        if (!file.open(QIODevice::ReadOnly))
            return std::nullopt;
        return file.readAll();
    }

private:
    QTemporaryDir m_dir;
};

// A stand-in for the `claude` command: notes each call's arguments as a line of "calls", keeps
// `statusFile` (the home's ".claude.json") as the real one would, fails with the text of a
// "fail-add" or "fail-remove" file, and changes nothing while a "frozen" file exists.
class FakeClaude {
public:
    FakeClaude(const Scratch& scratch, const QString& folder, const QString& statusFile)
        : m_folder(scratch.path(folder)) {
        const QByteArray status = scratch.path(statusFile).toUtf8();
        QDir().mkpath(QFileInfo(QString::fromUtf8(status)).absolutePath());
        scratch.write(folder + u"/claude", "#!/bin/sh\nd='" + m_folder.toUtf8() + "'\n" + R"(
echo "$*" >> "$d/calls"
if [ -e "$d/fail-$2" ]; then cat "$d/fail-$2" >&2; exit 3; fi
if [ -e "$d/frozen" ]; then exit 0; fi
if [ "$2" = add ]; then echo "{\"mcpServers\":{\"hueshelf\":{\"command\":\"$7\"}}}" > ')" +
                                               status + R"('; fi
if [ "$2" = remove ]; then echo '{}' > ')" + status +
                                               "'; fi\n");
        QFile::setPermissions(program(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QString program() const { return m_folder + u"/claude"; }
    void touch(const QString& name, const QByteArray& text = {}) const {
        QFile file(m_folder + u'/' + name);
        if (file.open(QIODevice::WriteOnly))
            file.write(text);
    }
    QStringList calls() const {
        QFile file(m_folder + u"/calls");
        return file.open(QIODevice::ReadOnly)
                   ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                   : QStringList();
    }

private:
    QString m_folder;
};

// A home under the Linux tool table, with a fake `claude` as the only candidate.
class ConnectorHome : public ::testing::Test {
protected:
    static inline const QString binary = QStringLiteral("/opt/hs/hueshelf-mcp");
    static inline const QString addCall =
        QStringLiteral("mcp add --scope user hueshelf -- /opt/hs/hueshelf-mcp --client ");
    static inline const QString removeCall = QStringLiteral("mcp remove --scope user hueshelf");

    const AITool& tool(const QString& id) const {
        return *std::find_if(tools.cbegin(), tools.cend(),
                             [&](const AITool& t) { return t.id == id; });
    }
    QString at(const QString& relative) const { return scratch.path(relative); }

    Scratch scratch;
    FakeClaude claude{scratch, QStringLiteral("bin"), QStringLiteral("home/.claude.json")};
    QList<AITool> tools =
        AIToolRegistry::linuxTools(at(QStringLiteral("home")), at(QStringLiteral("root")));
    AIToolConnector connector{binary,
                              at(QStringLiteral("last-used.json")),
                              at(QStringLiteral("home")),
                              {claude.program()}};
};

} // namespace hueshelf::testing
