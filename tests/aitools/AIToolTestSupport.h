#pragma once

#include "aitools/HealResult.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

// Readable failure messages for Qt text in GoogleTest expectations.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
    *out << '"' << bytes.toStdString() << '"';
}

namespace hueshelf {
inline void PrintTo(const HealResult& result, std::ostream* out) {
    static const char* const kinds[] = {"notConfigured", "upToDate", "leftAlone", "repaired",
                                        "needsAttention"};
    *out << kinds[int(result.kind)];
    if (result.previousCommand)
        *out << " from " << result.previousCommand->toStdString();
    if (!result.message.isEmpty())
        *out << ": " << result.message.toStdString();
}
} // namespace hueshelf

namespace hueshelf::testing {

// Names parameterised cases by their `label`.
struct ByLabel {
    template <class Param>
    std::string operator()(const ::testing::TestParamInfo<Param>& test) const {
        return test.param.label;
    }
};

// A scratch directory in which tests lay out homes, applications folders and whole machines.
class Scratch {
public:
    QString path(const QString& relative = {}) const {
        return relative.isEmpty() ? m_dir.path() : m_dir.path() + u'/' + relative;
    }

    void makeDir(const QString& relative) const {
        ASSERT_TRUE(QDir().mkpath(path(relative))) << relative.toStdString();
    }

    void write(const QString& relative, const QByteArray& bytes) const {
        const QString full = path(relative);
        QDir().mkpath(QFileInfo(full).absolutePath());
        QFile file(full);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << relative.toStdString();
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    // Nothing if the file can't be read, so that "absent" and "empty" differ.
    std::optional<QByteArray> read(const QString& relative) const {
        QFile file(path(relative));
        if (!file.open(QIODevice::ReadOnly))
            return std::nullopt;
        return file.readAll();
    }

    bool exists(const QString& relative) const { return QFileInfo::exists(path(relative)); }

private:
    QTemporaryDir m_dir;
};

// The record of a run of the fake `claude`: its arguments.
using ClaudeCall = QStringList;

// A stand-in for the `claude` command: a shell script that records each call's arguments, keeps
// a Claude Code status file as the real command would on "mcp add" and "mcp remove", and fails
// with a text on its standard error while a "fail-add" or "fail-remove" file holds that text.
class FakeClaude {
public:
    // `statusFile` is the home's ".claude.json" that the script writes.
    FakeClaude(const Scratch& scratch, const QString& folder, const QString& statusFile)
        : m_folder(scratch.path(folder)) {
        QDir().mkpath(m_folder);
        const QByteArray script =
            "#!/bin/sh\n"
            "dir='" +
            m_folder.toUtf8() +
            "'\n"
            "for a in \"$@\"; do printf '%s\\n' \"$a\" >> \"$dir/calls\"; done\n"
            "printf '%s\\n' '--end--' >> \"$dir/calls\"\n"
            "if [ \"$2\" = add ] && [ -e \"$dir/fail-add\" ]; then cat \"$dir/fail-add\" >&2; "
            "exit 3; fi\n"
            "if [ \"$2\" = remove ] && [ -e \"$dir/fail-remove\" ]; then cat \"$dir/fail-remove\" "
            ">&2; exit 1; fi\n"
            "if [ -e \"$dir/frozen\" ]; then exit 0; fi\n"
            "if [ \"$2\" = add ]; then printf '{\"mcpServers\":{\"hueshelf\":{\"command\":\"%s\","
            "\"args\":[\"%s\",\"%s\"]}}}' \"$7\" \"$8\" \"$9\" > '" +
            statusFile.toUtf8() +
            "'; fi\n"
            "if [ \"$2\" = remove ]; then printf '{\"mcpServers\":{}}' > '" +
            statusFile.toUtf8() +
            "'; fi\n"
            "exit 0\n";
        QFile file(program());
        if (file.open(QIODevice::WriteOnly))
            file.write(script);
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QString program() const { return m_folder + u"/claude"; }

    // Makes "mcp add" or "mcp remove" (`which`) fail with `text` on standard error.
    void failOn(const QString& which, const QByteArray& text) const {
        QFile file(m_folder + u"/fail-" + which);
        if (file.open(QIODevice::WriteOnly))
            file.write(text);
    }
    // The command then succeeds without changing the status file.
    void freeze() const { QFile(m_folder + u"/frozen").open(QIODevice::WriteOnly); }

    QList<ClaudeCall> calls() const {
        QFile file(m_folder + u"/calls");
        QList<ClaudeCall> calls;
        if (!file.open(QIODevice::ReadOnly))
            return calls;
        ClaudeCall current;
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (line == "--end--") {
                calls.append(current);
                current.clear();
            } else if (!line.isEmpty()) {
                current.append(QString::fromUtf8(line));
            }
        }
        return calls;
    }

private:
    QString m_folder;
};

} // namespace hueshelf::testing
