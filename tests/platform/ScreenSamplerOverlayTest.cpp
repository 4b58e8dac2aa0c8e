#include "platform/linux/ScreenSamplerOverlay.h"

#include "PlatformTestApplication.h"
#include "platform/linux/SamplerWindow.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QProcess>
#include <QRasterWindow>
#include <QScreen>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

// A picture no screen shows: every device pixel differs from its neighbours.
QImage patternFor(QScreen* screen) {
    const QSize size = screen->geometry().size() * screen->devicePixelRatio();
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x % 251, y % 241, (x * 7 + y * 13) % 256));
    return image;
}

// Stands below the overlay where the click lands; it must hear nothing of it.
class CountingWindow final : public QRasterWindow {
public:
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent*) override { ++presses; }
    void mouseReleaseEvent(QMouseEvent*) override { ++presses; }
};

class ScreenSamplerOverlayTest : public ::testing::Test {
protected:
    void SetUp() override {
        const QString reason = testing::x11SkipReason();
        if (!reason.isEmpty())
            GTEST_SKIP() << reason.toStdString();
        screen = QGuiApplication::primaryScreen();
        grab = patternFor(screen);
        below = std::make_unique<CountingWindow>();
        below->setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
        below->setGeometry(QRect(screen->geometry().topLeft(), QSize(300, 200)));
        below->show();
        ASSERT_TRUE(testing::processEventsUntil([this] { return below->isExposed(); }));
    }

    // Starts the overlay and waits until it is on the screen and holds keyboard and pointer.
    void start() {
        answers.clear();
        overlay = ScreenSamplerOverlay::start(
            {{screen, grab}},
            [this](std::optional<SampledColor> color) { answers.push_back(color); });
        ASSERT_TRUE(testing::processEventsUntil([] {
            const auto windows = QGuiApplication::topLevelWindows();
            return std::any_of(windows.begin(), windows.end(), [](QWindow* window) {
                return qobject_cast<SamplerWindow*>(window) != nullptr && window->isExposed();
            });
        }));
        testing::processEventsUntil([] { return false; }, 300);
    }

    // Waits for the answer, then a little more, so that a second answer would show.
    void waitForAnswer() {
        ASSERT_TRUE(testing::processEventsUntil([this] { return !answers.empty(); }));
        testing::processEventsUntil([] { return false; }, 200);
        EXPECT_EQ(answers.size(), 1u);
        EXPECT_TRUE(testing::processEventsUntil([this] { return overlay.isNull(); }))
            << "the overlay stays after answering";
    }

    SampledColor expectedAt(QPoint device) const {
        const QRgb pixel = grab.pixel(device);
        return {qRed(pixel) / 255.0, qGreen(pixel) / 255.0, qBlue(pixel) / 255.0};
    }

    QScreen* screen = nullptr;
    QImage grab;
    std::unique_ptr<CountingWindow> below; // made once the application is there
    QPointer<ScreenSamplerOverlay> overlay;
    std::vector<std::optional<SampledColor>> answers;
};

// xdotool speaks the server's device pixels; whatever scale Qt applies, the click must come back
// as that pixel of the frozen picture.
TEST_F(ScreenSamplerOverlayTest, AClickPicksThePixelOfTheFrozenPictureUnderIt) {
    const QPoint points[] = {{101, 57}, {0, 0}, {250, 3}};
    for (const QPoint& point : points) {
        SCOPED_TRACE(point.x());
        ASSERT_NO_FATAL_FAILURE(start());
        ASSERT_TRUE(testing::xdotool({u"mousemove"_s, QString::number(point.x()),
                                      QString::number(point.y()), u"click"_s, u"1"_s}));
        ASSERT_NO_FATAL_FAILURE(waitForAnswer());
        EXPECT_EQ(answers.front(), expectedAt(point));
    }
    EXPECT_EQ(below->presses, 0) << "the click went through the overlay";
}

TEST_F(ScreenSamplerOverlayTest, EscapeOrARightClickCancelsAndClosesTheOverlay) {
    const QStringList gestures[] = {{u"key"_s, u"Escape"_s},
                                    {u"mousemove"_s, u"40"_s, u"40"_s, u"click"_s, u"3"_s}};
    for (const QStringList& gesture : gestures) {
        SCOPED_TRACE(gesture.constFirst().toStdString());
        ASSERT_NO_FATAL_FAILURE(start());
        ASSERT_TRUE(testing::xdotool(gesture));
        ASSERT_NO_FATAL_FAILURE(waitForAnswer());
        EXPECT_EQ(answers.front(), std::nullopt);
        const auto windows = QGuiApplication::topLevelWindows();
        EXPECT_TRUE(std::none_of(windows.begin(), windows.end(), [](QWindow* window) {
            return qobject_cast<SamplerWindow*>(window) != nullptr && window->isVisible();
        }));
    }
    EXPECT_EQ(below->presses, 0);
}

// No picture, no overlay: the answer is nothing, and still not before the caller returned.
TEST(ScreenSamplerOverlay, WithoutAnyScreenAnswersNothingLater) {
    testing::platformTestApplication();
    std::vector<std::optional<SampledColor>> answers;
    ScreenSamplerOverlay::start(
        {{QGuiApplication::primaryScreen(), QImage()}},
        [&answers](std::optional<SampledColor> color) { answers.push_back(color); });
    EXPECT_TRUE(answers.empty());
    ASSERT_TRUE(testing::processEventsUntil([&] { return !answers.empty(); }));
    EXPECT_EQ(answers, (std::vector<std::optional<SampledColor>>{std::nullopt}));
}

} // namespace
} // namespace hueshelf
