#pragma once

#include <QObject>

namespace hueshelf::app {

// Whether the user is finding their way with the Tab key. Focus rings are drawn only then
// (FocusRingWhenTabbing), so a mouse user never sees them. One shared flag for the program:
// the Tab key sets it, a mouse press clears it, other keys leave it as it is.
class KeyboardModality final : public QObject {
    Q_OBJECT
public:
    explicit KeyboardModality(QObject* parent = nullptr);
    ~KeyboardModality() override;

    // The program's one instance, made on first use.
    static KeyboardModality& shared();

    // Watches the application's input from now on; a second call installs nothing twice.
    void startMonitoring();
    void stopMonitoring();
    bool isMonitoring() const { return m_isMonitoring; }

    bool isTabbing() const { return m_isTabbing; }
    void setTabbing(bool tabbing);

Q_SIGNALS:
    void isTabbingChanged(bool isTabbing);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool m_isTabbing = false;
    bool m_isMonitoring = false;
};

} // namespace hueshelf::app
