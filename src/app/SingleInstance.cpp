#include "app/SingleInstance.h"

#include "util/AppPaths.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QtEndian>

#include <memory>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

namespace {

constexpr char kAcknowledgement = '\x06';
constexpr qsizetype kCountSize = sizeof(quint32);

void appendCount(QByteArray& out, quint32 value) {
    const quint32 bigEndian = qToBigEndian(value);
    out.append(reinterpret_cast<const char*>(&bigEndian), kCountSize);
}

quint32 countAt(const QByteArray& buffer, qsizetype offset) {
    return qFromBigEndian<quint32>(buffer.constData() + offset);
}

QString userName(const QProcessEnvironment& env) {
    for (const QString& key : {u"USER"_s, u"LOGNAME"_s, u"USERNAME"_s}) {
        const QString value = env.value(key);
        if (!value.isEmpty())
            return value;
    }
    return u"user"_s;
}

} // namespace

QString SingleInstance::serverNameFor(const AppPaths& paths, const QProcessEnvironment& env) {
    const QString user = userName(env);
    const QByteArray key = (user + u'\n' + QDir::cleanPath(paths.configDir)).toUtf8();
    const QByteArray digest = QCryptographicHash::hash(key, QCryptographicHash::Sha256).toHex();
    // Socket paths are short; a hash keeps any configuration path within the limit.
    return u"hueshelf-"_s + QString::fromLatin1(digest.left(16));
}

SingleInstance::SingleInstance(QString serverName, QObject* parent)
    : QObject(parent), m_serverName(std::move(serverName)) {}

SingleInstance::~SingleInstance() = default;

QByteArray SingleInstance::encode(const QStringList& arguments) {
    QByteArray out;
    appendCount(out, static_cast<quint32>(arguments.size()));
    for (const QString& argument : arguments) {
        const QByteArray utf8 = argument.toUtf8();
        appendCount(out, static_cast<quint32>(utf8.size()));
        out.append(utf8);
    }
    return out;
}

std::optional<SingleInstance::Decoded> SingleInstance::decode(const QByteArray& buffer,
                                                              bool* isMalformed) {
    if (isMalformed)
        *isMalformed = false;
    const auto malformed = [isMalformed]() -> std::optional<Decoded> {
        if (isMalformed)
            *isMalformed = true;
        return std::nullopt;
    };
    if (buffer.size() < kCountSize)
        return std::nullopt;
    const quint32 count = countAt(buffer, 0);
    // Every text costs at least its length field.
    if (count > maxMessageBytes / kCountSize)
        return malformed();
    Decoded decoded;
    qsizetype offset = kCountSize;
    for (quint32 i = 0; i < count; ++i) {
        if (buffer.size() < offset + kCountSize)
            return std::nullopt;
        const quint32 length = countAt(buffer, offset);
        offset += kCountSize;
        if (length > maxMessageBytes || offset + length > qsizetype(maxMessageBytes))
            return malformed();
        if (buffer.size() < offset + qsizetype(length))
            return std::nullopt;
        decoded.arguments.append(QString::fromUtf8(buffer.constData() + offset, length));
        offset += length;
    }
    decoded.size = offset;
    return decoded;
}

bool SingleInstance::sendToRunning(const QString& serverName, const QStringList& arguments,
                                   int timeoutMs) {
    QLocalSocket socket;
    socket.connectToServer(serverName);
    if (!socket.waitForConnected(timeoutMs))
        return false;
    socket.write(encode(arguments));
    if (!socket.waitForBytesWritten(timeoutMs))
        return false;
    while (socket.bytesAvailable() < 1) {
        if (!socket.waitForReadyRead(timeoutMs))
            return false;
    }
    char answer = 0;
    const bool acknowledged = socket.getChar(&answer) && answer == kAcknowledgement;
    socket.disconnectFromServer();
    return acknowledged;
}

bool SingleInstance::listen() {
    if (isListening())
        return true;
    // Asked first: a server with this name answers when an instance runs. Listening alone would
    // not tell, since the server moves its socket into place over whatever file is there.
    {
        QLocalSocket probe;
        probe.connectToServer(m_serverName);
        if (probe.waitForConnected(handOverTimeoutMs)) {
            probe.disconnectFromServer();
            return false;
        }
    }
    // Nobody answered: a socket file left there is a crashed run's.
    QLocalServer::removeServer(m_serverName);
    auto server = std::make_unique<QLocalServer>(this);
    // Another user's launch must not reach this user's bar.
    server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server->listen(m_serverName))
        return false;
    m_server = server.release();
    connect(m_server, &QLocalServer::newConnection, this, &SingleInstance::acceptConnections);
    return true;
}

bool SingleInstance::isListening() const {
    return m_server && m_server->isListening();
}

void SingleInstance::acceptConnections() {
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { readFrom(socket); });
        if (socket->bytesAvailable() > 0)
            readFrom(socket);
    }
}

void SingleInstance::readFrom(QLocalSocket* socket) {
    // The socket keeps what arrived so far; a message is taken once it is whole.
    const QByteArray buffer = socket->peek(socket->bytesAvailable());
    bool isMalformed = false;
    const std::optional<Decoded> decoded = decode(buffer, &isMalformed);
    if (isMalformed) {
        socket->abort();
        return;
    }
    if (!decoded)
        return;
    socket->read(decoded->size);
    socket->putChar(kAcknowledgement);
    socket->flush();
    Q_EMIT argumentsReceived(decoded->arguments);
}

} // namespace hueshelf::app
