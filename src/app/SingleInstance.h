#pragma once

#include <QByteArray>
#include <QObject>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <optional>

class QLocalServer;
class QLocalSocket;

namespace hueshelf {
struct AppPaths;
}

namespace hueshelf::app {

// One bar per user and configuration: a second launch hands its arguments (links and files
// the desktop gave it) to the running program over a local socket and ends. A run with another
// configuration directory (an isolated test run, another XDG_CONFIG_HOME) is another instance.
//
// The message is a list of UTF-8 texts, each preceded by its length, after the number of texts;
// all counts are 32-bit unsigned, big-endian. The running side answers one byte when it has
// taken the list.
class SingleInstance final : public QObject {
    Q_OBJECT
public:
    static constexpr int handOverTimeoutMs = 3000;
    // Far above any real command line; a longer message is not one of ours.
    static constexpr quint32 maxMessageBytes = 1 << 20;

    // Derived from the user and the configuration directory.
    static QString serverNameFor(const AppPaths& paths, const QProcessEnvironment& env);

    explicit SingleInstance(QString serverName, QObject* parent = nullptr);
    ~SingleInstance() override;

    // The second launch's side: true once a running instance acknowledged the arguments. False
    // when none answers (none runs, or a crashed run left its socket file behind). Blocks for at
    // most `timeoutMs`; needs only a QCoreApplication.
    static bool sendToRunning(const QString& serverName, const QStringList& arguments,
                              int timeoutMs = handOverTimeoutMs);

    // The running side: takes the name, removing a socket file that nobody answers on. False if
    // a live instance holds it.
    bool listen();
    bool isListening() const;
    QString serverName() const { return m_serverName; }

    static QByteArray encode(const QStringList& arguments);
    // A complete message at the head of `buffer`: its texts and its size in bytes. Nothing while
    // the message is incomplete; `isMalformed` is set when it can never become one.
    struct Decoded {
        QStringList arguments;
        qsizetype size = 0;
    };
    static std::optional<Decoded> decode(const QByteArray& buffer, bool* isMalformed = nullptr);

Q_SIGNALS:
    void argumentsReceived(const QStringList& arguments);

private:
    void acceptConnections();
    void readFrom(QLocalSocket* socket);

    QString m_serverName;
    QLocalServer* m_server = nullptr;
};

} // namespace hueshelf::app
