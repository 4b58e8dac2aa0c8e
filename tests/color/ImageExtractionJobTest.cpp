#include "color/ImageExtractionJob.h"

#include "QtPrinters.h"

#include <QColor>
#include <QCoreApplication>
#include <QImage>
#include <QMap>
#include <QTemporaryDir>
#include <QThread>
#include <QThreadPool>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;

namespace {

TEST(ImageExtractionJob, EachResultComesBackOnTheMainThreadUnlessTheJobIsGone) {
    static int argc = 1;
    static char* argv[] = {const_cast<char*>("hueshelf_color_tests"), nullptr};
    static QCoreApplication* application = new QCoreApplication(argc, argv);
    QTemporaryDir dir;
    QMap<QString, std::optional<QStringList>> expected{{dir.filePath(u"missing.png"_s), {}}};
    for (const QRgb color : {qRgb(255, 0, 0), qRgb(0, 128, 128)}) {
        QImage image(64, 64, QImage::Format_ARGB32);
        image.fill(color);
        const QString path = dir.filePath(QString::number(color) + u".png"_s);
        ASSERT_TRUE(image.save(path));
        expected.insert(path, QStringList{QColor(color).name().toUpper()});
    }
    auto job = std::make_unique<ImageExtractionJob>();
    QMap<QString, std::optional<QStringList>> results;
    QObject::connect(job.get(), &ImageExtractionJob::finished,
                     [&](const QString& path, const std::optional<QStringList>& colors) {
                         EXPECT_EQ(QThread::currentThread(), application->thread());
                         results.insert(path, colors);
                     });
    for (const QString& path : expected.keys())
        job->start(path, 6);
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_TRUE(results.isEmpty()); // nothing arrives before the main thread's next turn
    QCoreApplication::processEvents();
    EXPECT_EQ(results, expected);

    job->start(expected.lastKey(), 6); // a job gone before its result hears nothing
    job.reset();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(results.size(), 3);
}

} // namespace
