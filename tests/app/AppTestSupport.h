#pragma once

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "model/ColorStorage.h"
#include "model/TemplateWriter.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

#include <memory>
#include <vector>

namespace hueshelf::testing {

struct TestColor {
    QString name;
    QString hex;
    bool isLocked = false;
    bool isAutoNamed = false;
};

inline ColorTemplate palette(const QString& name, const QList<TestColor>& colors,
                             bool locked = false) {
    QList<ColorItem> items;
    for (const TestColor& color : colors) {
        items.append(ColorItem::make(color.name, color.hex, color.isAutoNamed));
        items.last().isLocked = color.isLocked;
    }
    ColorTemplate made = ColorTemplate::makeNew(name, items, 1'700'000'000'000.0);
    made.isLocked = locked;
    return made;
}

// Keeps every save the store hands over; each write finishes at once.
class RecordingWriter final : public TemplateWriter {
public:
    void writeTemplates(const SaveRequest& request, Written, Finished finished) override {
        requests.push_back(request);
        finished();
    }
    void writeShadowState(const QByteArray&) override {}

    std::vector<SaveRequest> requests;
};

struct Announcement {
    QString message;
    QString icon;
    friend bool operator==(const Announcement&, const Announcement&) = default;
};

// A store on manual time that records its saves and the toasts it was asked for.
struct TestStore {
    explicit TestStore(const QList<ColorTemplate>& templates, QUuid active = {}) {
        LoadedTemplates loaded;
        loaded.templates = templates;
        loaded.activeTemplateId =
            !active.isNull() || templates.isEmpty() ? active : templates.constFirst().id;
        store = std::make_unique<ColorStorage>(clock, scheduler, loaded);
        store->setWriter(&writer);
        QObject::connect(store.get(), &ColorStorage::announced,
                         [this](const QString& message, const QString& icon) {
                             announcements.push_back({message, icon});
                         });
    }
    ColorTemplate active() const { return *store->activeTemplate(); }
    std::size_t saves() const { return writer.requests.size(); }

    ManualClock clock;
    ManualScheduler scheduler{clock};
    RecordingWriter writer; // outlives the store that writes to it
    std::unique_ptr<ColorStorage> store;
    std::vector<Announcement> announcements;
};

// One application object for the whole program, never destroyed: no widget outlives it.
inline void ensureApplication() {
    if (QApplication::instance())
        return;
    static int argc = 1;
    static char name[] = "hueshelf_app_tests";
    static char* argv[] = {name, nullptr};
    new QApplication(argc, argv);
}

// A left-button mouse event at a point of the screen, delivered straight to the widget.
inline void mouseAt(QWidget* widget, QEvent::Type type, QPoint global, Qt::MouseButtons buttons) {
    QMouseEvent event(type, widget->mapFromGlobal(QPointF(global)), QPointF(global), Qt::LeftButton,
                      buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

// A press and release of the left button in the widget's middle.
inline void click(QWidget* widget) {
    const QPoint at = widget->mapToGlobal(widget->rect().center());
    mouseAt(widget, QEvent::MouseButtonPress, at, Qt::LeftButton);
    mouseAt(widget, QEvent::MouseButtonRelease, at, Qt::NoButton);
}

} // namespace hueshelf::testing
