#include "color/ImageExtractionJob.h"

#include "color/ImageColorExtractor.h"

#include <QThreadPool>

namespace hueshelf {

namespace {

// Carries one result from the worker to the job. It lives on the job's thread, so the worker
// only emits it (which is thread-safe) and hands its deletion to that thread's event loop; if
// the job is gone by then, the connection went with it.
class ExtractionRelay final : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
Q_SIGNALS:
    void delivered(const QString& path, const std::optional<QStringList>& colors);
};

} // namespace

ImageExtractionJob::ImageExtractionJob(QObject* parent) : QObject(parent) {}

void ImageExtractionJob::start(const QString& path, int maxColors) {
    auto* relay = new ExtractionRelay;
    connect(relay, &ExtractionRelay::delivered, this, &ImageExtractionJob::finished,
            Qt::QueuedConnection);
    QThreadPool::globalInstance()->start([relay, path, maxColors] {
        const std::optional<QStringList> colors =
            ImageColorExtractor::extractColors(path, maxColors);
        Q_EMIT relay->delivered(path, colors);
        relay->deleteLater();
    });
}

} // namespace hueshelf

#include "ImageExtractionJob.moc"
