#include "mcp/JsonRpc.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace hueshelf::mcp::JsonRpc {

namespace {

// The id goes in as the client wrote it, which no JSON value of Qt's can hold exactly, so it is
// spliced in front of the other members.
QByteArray answer(const RequestId& id, QJsonObject body) {
    body.insert(u"jsonrpc"_s, u"2.0"_s);
    const QByteArray rest = QJsonDocument(body).toJson(QJsonDocument::Compact);
    QByteArray line = QByteArrayLiteral("{\"id\":");
    line += id.json();
    line += ',';
    line += rest.mid(1);
    return line;
}

} // namespace

QByteArray result(const RequestId& id, const QJsonValue& result) {
    return answer(id, QJsonObject{{u"result"_s, result}});
}

QByteArray error(const RequestId& id, int code, const QString& message) {
    return answer(
        id, QJsonObject{{u"error"_s, QJsonObject{{u"code"_s, code}, {u"message"_s, message}}}});
}

} // namespace hueshelf::mcp::JsonRpc
