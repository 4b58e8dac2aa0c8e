#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace hueshelf {

// Colour extraction away from the main thread. The work touches nothing shared: the worker
// gets the path and gives back the colours, which arrive as `finished` on this object's thread.
// A job deleted before its result arrives simply never hears of it.
class ImageExtractionJob final : public QObject {
    Q_OBJECT
public:
    explicit ImageExtractionJob(QObject* parent = nullptr);

    // Runs ImageColorExtractor::extractColors(path, maxColors) on the global thread pool. Jobs
    // started one after another each deliver their own result.
    void start(const QString& path, int maxColors);

Q_SIGNALS:
    void finished(const QString& path, const std::optional<QStringList>& colors);
};

} // namespace hueshelf
