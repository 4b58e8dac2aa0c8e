#pragma once

#include "mcp/RequestId.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <optional>

namespace hueshelf::mcp {

class McpTools;

// The protocol side of the server: one line of JSON-RPC from the client in, at most one line
// out. It does no input or output of its own, so the whole protocol is testable in-process and
// the program around it is a read-a-line, write-a-line loop.
class McpServer {
public:
    explicit McpServer(const McpTools& tools);

    // One message, without its line feed (a trailing carriage return is tolerated). The
    // answer, without a line feed; none for notifications, answers from the client and blank
    // lines.
    std::optional<QByteArray> handle(QByteArrayView line) const;

    // Newest first; the first is what a client that asks for anything else gets.
    static const QStringList& protocolVersions();
    static QString instructions();

private:
    QByteArray request(const RequestId& id, const QString& method, const QJsonValue& params) const;
    QJsonObject initialize(const QJsonObject& params) const;
    QByteArray callTool(const RequestId& id, const QJsonObject& params) const;

    const McpTools& m_tools;
};

} // namespace hueshelf::mcp
