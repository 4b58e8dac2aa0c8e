#include "helper/NativeMessageHost.h"

#include "helper/HelperJson.h"

#include <QJsonDocument>
#include <QJsonParseError>

using namespace Qt::StringLiterals;

namespace hueshelf::helper {

namespace {

QByteArray compact(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QString jsonKind(const QJsonDocument& document) {
    return document.isArray() ? u"an array"_s : u"a single value"_s;
}

} // namespace

NativeMessageHost::NativeMessageHost(Handler handler) : m_handler(std::move(handler)) {}

QList<QByteArray> NativeMessageHost::receive(QByteArrayView bytes) {
    QList<QByteArray> replies;
    if (isBroken())
        return replies;
    m_framing.append(bytes);
    for (;;) {
        const NativeMessageFraming::Result next = m_framing.next();
        if (next.status == NativeMessageFraming::Status::needMore)
            break;
        if (next.status == NativeMessageFraming::Status::oversized) {
            replies.append(NativeMessageFraming::frame(compact(HelperJson::error(
                u"The message is "_s + QString::number(next.declaredLength) +
                u" bytes long, more than the 64 MiB a message may have; the helper stops."_s))));
            break;
        }
        replies.append(answer(next.body));
    }
    return replies;
}

QByteArray NativeMessageHost::answer(const QByteArray& body) const {
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(body, &parseError);
    QJsonObject request;
    QJsonObject reply;
    if (body.isEmpty()) {
        reply = HelperJson::error(u"The message is empty; it must be a JSON object."_s);
    } else if (parseError.error != QJsonParseError::NoError) {
        reply = HelperJson::error(u"The message is not valid JSON: "_s + parseError.errorString() +
                                  u" at byte "_s + QString::number(parseError.offset) + u'.');
    } else if (!document.isObject()) {
        reply = HelperJson::error(u"The message must be a JSON object, not "_s +
                                  jsonKind(document) + u'.');
    } else {
        request = document.object();
        reply = m_handler(request);
    }
    QByteArray json = compact(reply);
    if (!NativeMessageFraming::fitsOutgoing(json.size())) {
        json = compact(HelperJson::answering(
            request, HelperJson::error(u"The reply would be "_s + QString::number(json.size()) +
                                       u" bytes long, more than the 1 MiB the browser takes."_s)));
    }
    return NativeMessageFraming::frame(json);
}

} // namespace hueshelf::helper
