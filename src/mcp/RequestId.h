#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QJsonValue>

#include <optional>

namespace hueshelf::mcp {

// The id of a request as the client wrote it. The client pairs our answer with its request by
// this id, so it goes back byte for byte: a number such as 9007199254740993 or 1.50 would not
// survive a trip through a double.
class RequestId {
public:
    // The id of an answer to a message whose id could not be read.
    static RequestId null();
    // The top-level "id" member of `message`, a JSON object that has already been parsed and
    // whose id parsed as `parsedId`. None unless the id is a string or a number.
    static std::optional<RequestId> read(QByteArrayView message, const QJsonValue& parsedId);

    // The id as JSON text, ready to go into an answer.
    const QByteArray& json() const { return m_json; }

private:
    explicit RequestId(QByteArray json) : m_json(std::move(json)) {}

    QByteArray m_json;
};

} // namespace hueshelf::mcp
