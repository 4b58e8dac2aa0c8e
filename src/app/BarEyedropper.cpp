#include "app/BarEyedropper.h"

#include "app/BarLayout.h"
#include "app/ToastManager.h"

#include <QPointer>

#include <algorithm>
#include <cmath>
#include <limits>

namespace hueshelf::app {

using namespace Qt::StringLiterals;

BarEyedropper::BarEyedropper(Platform& platform, ToastManager& toasts, OnPick onPick,
                             QObject* parent)
    : QObject(parent), m_platform(platform), m_toasts(toasts), m_onPick(std::move(onPick)) {}

QString BarEyedropper::tooltip() const {
    return m_refusal.value_or(BarLayout::eyedropperLabel);
}

void BarEyedropper::click() {
    if (m_refusal) {
        m_toasts.show(*m_refusal, u"lock.fill"_s, std::nullopt, ToastManager::kNoticeDuration);
        return;
    }
    if (m_isPicking)
        return;
    m_isPicking = true;
    Q_EMIT isPickingChanged();
    QPointer<BarEyedropper> self(this);
    m_platform.pickScreenColor([self](std::optional<SampledColor> picked) {
        BarEyedropper* eyedropper = self.data();
        if (!eyedropper)
            return;
        eyedropper->m_isPicking = false;
        Q_EMIT eyedropper->isPickingChanged();
        if (!picked)
            return;
        if (const auto hex = hexFromComponents(*picked); hex && eyedropper->m_onPick)
            eyedropper->m_onPick(*hex);
    });
}

std::optional<QString> BarEyedropper::hexFromComponents(const SampledColor& color) {
    QString hex = u"#"_s;
    for (const double component : {color.red, color.green, color.blue}) {
        const double scaled = component * 255.0;
        if (!std::isfinite(scaled))
            return std::nullopt;
        // std::round goes half away from zero.
        const double rounded = std::round(scaled);
        if (rounded < std::numeric_limits<int>::min() || rounded > std::numeric_limits<int>::max())
            return std::nullopt;
        // A pick a little outside sRGB (from a wide-gamut screen) takes the nearest code rather
        // than spilling into a fourth digit.
        const int value = std::clamp(static_cast<int>(rounded), 0, 255);
        hex += QStringLiteral("%1").arg(value, 2, 16, QChar(u'0')).toUpper();
    }
    return hex;
}

} // namespace hueshelf::app
