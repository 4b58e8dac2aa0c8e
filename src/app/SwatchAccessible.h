#pragma once

#include <QAccessibleWidget>

namespace hueshelf::app {

class CompactColorSwatch;

// A swatch for assistive technology: one button whose press copies, with a second action,
// "Edit " + name, that opens its editor as a right click would.
class SwatchAccessible final : public QAccessibleWidget {
public:
    explicit SwatchAccessible(CompactColorSwatch* swatch);

    QStringList actionNames() const override;
    void doAction(const QString& actionName) override;

    // Swatches get this interface from then on; safe to call more than once.
    static void install();

private:
    CompactColorSwatch* swatch() const;
    QString editAction() const;
};

} // namespace hueshelf::app
