#pragma once

#include "mcp/RequestId.h"

#include <QByteArray>
#include <QJsonValue>
#include <QString>

namespace hueshelf::mcp::JsonRpc {

// The error codes of JSON-RPC 2.0 that this server answers with.
inline constexpr int parseError = -32700;
inline constexpr int invalidRequest = -32600;
inline constexpr int methodNotFound = -32601;
inline constexpr int invalidParams = -32602;
inline constexpr int internalError = -32603;

// One answer as one line of compact JSON, without the line feed.
QByteArray result(const RequestId& id, const QJsonValue& result);
QByteArray error(const RequestId& id, int code, const QString& message);

} // namespace hueshelf::mcp::JsonRpc
