#include "mcp/LastUsedFile.h"

#include "aitools/AIToolConnector.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <cmath>

namespace hueshelf::mcp::LastUsedFile {

namespace {

// Whole milliseconds go back as integers, as they came: a double would be written with an
// exponent.
QJsonValue timeValue(double ms) {
    const double whole = std::floor(ms);
    if (whole == ms && std::abs(ms) < 9.0e15)
        return static_cast<qint64>(whole);
    return ms;
}

} // namespace

bool record(const QString& path, const QString& clientId, double nowMs) {
    QJsonObject object;
    const auto times = AIToolConnector::readLastUsedFile(path);
    if (times) {
        for (auto it = times->constBegin(); it != times->constEnd(); ++it)
            object.insert(it.key(), timeValue(it.value()));
    }
    object.insert(clientId, timeValue(std::floor(nowMs)));

    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(QJsonDocument(object).toJson(QJsonDocument::Compact));
    return file.commit();
}

} // namespace hueshelf::mcp::LastUsedFile
