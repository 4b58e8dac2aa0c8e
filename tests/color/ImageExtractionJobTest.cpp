#include "color/ImageExtractionJob.h"

#include "QtPrinters.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QImage>
#include <QMap>
#include <QTemporaryDir>
#include <QThread>
#include <QThreadPool>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;
using namespace hueshelf;

namespace {

void ensureApplication() {
    if (QCoreApplication::instance()) {
        return;
    }
    static int argc = 1;
    static char name[] = "hueshelf_color_tests";
    static char* argv[] = {name, nullptr};
    static auto* application = new QCoreApplication(argc, argv);
    Q_UNUSED(application);
}

class ExtractionJobTest : public ::testing::Test {
protected:
    void SetUp() override { ensureApplication(); }

    QString writePicture(const QString& name, QRgb color) {
        QImage image(64, 64, QImage::Format_ARGB32);
        image.fill(color);
        const QString path = m_dir.filePath(name);
        EXPECT_TRUE(image.save(path, "PNG"));
        return path;
    }

    // Runs the event loop until `count` results arrived, or a generous guard expired.
    QMap<QString, std::optional<QStringList>> collect(ImageExtractionJob& job, int count) {
        QMap<QString, std::optional<QStringList>> results;
        QEventLoop loop;
        QObject::connect(&job, &ImageExtractionJob::finished, &loop,
                         [&](const QString& path, const std::optional<QStringList>& colors) {
                             EXPECT_EQ(QThread::currentThread(), qApp->thread());
                             results.insert(path, colors);
                             if (results.size() == count) {
                                 loop.quit();
                             }
                         });
        QTimer::singleShot(20'000, &loop, &QEventLoop::quit);
        loop.exec();
        return results;
    }

    QTemporaryDir m_dir;
};

TEST_F(ExtractionJobTest, EachResultComesBackOnTheMainThread) {
    ImageExtractionJob job;
    const QString red = writePicture(u"red.png"_s, qRgb(255, 0, 0));
    const QString teal = writePicture(u"teal.png"_s, qRgb(0, 128, 128));
    const QString missing = m_dir.filePath(u"missing.png"_s);
    job.start(red, 6);
    job.start(teal, 6);
    job.start(missing, 6);

    const auto results = collect(job, 3);
    ASSERT_EQ(results.size(), 3);
    EXPECT_EQ(results.value(red), QStringList{u"#FF0000"_s});
    EXPECT_EQ(results.value(teal), QStringList{u"#008080"_s});
    EXPECT_EQ(results.value(missing), std::nullopt);
}

TEST_F(ExtractionJobTest, AJobGoneBeforeItsResultHearsNothing) {
    const QString red = writePicture(u"gone.png"_s, qRgb(255, 0, 0));
    auto job = std::make_unique<ImageExtractionJob>();
    int delivered = 0;
    QObject::connect(job.get(), &ImageExtractionJob::finished, [&delivered] { ++delivered; });
    job->start(red, 6);
    job.reset();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(delivered, 0);
}

} // namespace
