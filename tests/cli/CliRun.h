#pragma once

#include "cli/CommandLine.h"

#include <QJsonDocument>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <cmath>

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
    {
        QTextStream out(&outcome.out);
        QTextStream err(&outcome.err);
        outcome.status = cli::run(arguments, out, err);
    }
    return outcome;
}

// WCAG 2 relative luminance of three bytes, written out here so the commands' numbers are
// checked against the published formula rather than against the code that prints them.
inline double wcagLuminance(int r, int g, int b) {
    auto linear = [](int byte) {
        const double v = byte / 255.0;
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(r) + 0.7152 * linear(g) + 0.0722 * linear(b);
}

inline double wcagRatio(double a, double b) {
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

} // namespace hueshelf::testing
