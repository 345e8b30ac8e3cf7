// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The middleware's messages and their bytes.
#include <QByteArray>

#include <algorithm>

#include "corepath.h"
#include "framebuffer.h"
#include "protocol.h"

using namespace tessel;

namespace {

constexpr int calls = 1000;

protocol::Message call(quint32 number)
{
    Tuple detection("com.halvar.nap.DetectionResult");
    detection.set("value", Value(1.5 + number / 8.0));
    detection.set("sigma", Value(0.125));
    detection.set("decision", Value(0));
    detection.set("sourceActivity", Value(37.5));
    Tuple message("com.halvar.nap.NotificationMessage");
    message.set("id", Value(AString(QStringLiteral("NAP_DETECTION"))));
    message.set("detection", Value(detection));
    protocol::Message call;
    call.kind = protocol::Call;
    call.number = number;
    call.session = 1700000000000;
    call.tuple = Tuple("com.halvar.nap.NotificationObserver.onMessage");
    call.tuple.set("message", Value(message));
    return call;
}

void encode()
{
    const protocol::Message message = call(1);
    int bytes = 0;
    countSecond([&] {
        for (int i = 0; i < calls; ++i) {
            QByteArray frame;
            expect(protocol::encode(message, frame) == OK, "not encoded");
            bytes += frame.size();
        }
    });
    expect(bytes > 2 * calls * 100, "too few bytes");
}

void decode()
{
    QByteArray stream;
    for (quint32 number = 1; number <= calls; ++number) {
        QByteArray frame;
        expect(protocol::encode(call(number), frame) == OK, "not encoded");
        stream += frame;
    }
    quint32 last = 0;
    countSecond([&] {
        FrameBuffer buffer;
        QByteArray payload;
        // In pieces, as they come from a socket.
        for (int taken = 0; taken < stream.size();) {
            int size = 0;
            char *const room = buffer.room(size);
            size = qMin(size, stream.size() - taken);
            std::copy_n(stream.constData() + taken, size, room);
            buffer.add(size);
            taken += size;
            while (buffer.next(payload) == FrameBuffer::Next::Frame) {
                protocol::Message message;
                expect(protocol::decode(payload, message) == OK && message.tuple.size() == 1, "not decoded");
                last = message.number;
            }
        }
    });
    expect(last == calls, "a message is missing");
}

const bool registered = corePath("wire-encode", "1,000 calls with a detection composed", encode)
    && corePath("wire-decode", "the same read from a stream of bytes", decode);

} // namespace
