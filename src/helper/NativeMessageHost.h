#pragma once

#include "helper/NativeMessageFraming.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QJsonObject>
#include <QList>

#include <functional>

namespace hueshelf::helper {

// The helper's side of the browser's pipes, without the pipes: bytes in, framed replies out.
// Every frame gets exactly one reply, in order, so an extension may match them by position as
// well as by "id". A frame that isn't a JSON object gets an error reply and the stream goes on;
// a frame over the incoming limit can't be skipped (its bytes would be read as frames), so it
// gets an error reply and the stream is over.
class NativeMessageHost {
public:
    // Answers one request object with one reply object.
    using Handler = std::function<QJsonObject(const QJsonObject& request)>;

    explicit NativeMessageHost(Handler handler);

    // The framed replies to the frames these bytes complete. Nothing after a refusal.
    QList<QByteArray> receive(QByteArrayView bytes);

    // An oversized frame was refused: the process ends with status 1.
    bool isBroken() const { return m_framing.isRefused(); }

    // The reply to one frame's body, framed: the handler's reply, or an error where the body
    // isn't a JSON object or the reply would be over the browser's limit.
    QByteArray answer(const QByteArray& body) const;

private:
    NativeMessageFraming m_framing;
    Handler m_handler;
};

} // namespace hueshelf::helper
