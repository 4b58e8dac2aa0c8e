#pragma once

#include "platform/Platform.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace hueshelf::app {

class ToastManager;

// The bar's eyedropper: one screen pick at a time, refused in a locked palette, and the picked
// colour handed on as "#RRGGBB".
class BarEyedropper final : public QObject {
    Q_OBJECT
public:
    using OnPick = std::function<void(const QString& hex)>;

    BarEyedropper(Platform& platform, ToastManager& toasts, OnPick onPick,
                  QObject* parent = nullptr);

    // "Unlock this palette to add colors" while the palette is locked.
    void setRefusal(const std::optional<QString>& refusal) { m_refusal = refusal; }
    QString tooltip() const;
    bool isPicking() const { return m_isPicking; }

    void click();

    // sRGB components in 0..1 as "#RRGGBB", each × 255 rounded half away from zero and held to
    // 0..255; nothing when a component isn't finite or doesn't fit an integer.
    static std::optional<QString> hexFromComponents(const SampledColor& color);

Q_SIGNALS:
    void isPickingChanged();

private:
    Platform& m_platform;
    ToastManager& m_toasts;
    OnPick m_onPick;
    std::optional<QString> m_refusal;
    bool m_isPicking = false;
};

} // namespace hueshelf::app
