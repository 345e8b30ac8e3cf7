// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The MSP link's frames and messages. The first byte says in which pieces the stream arrives, which changes
// nothing; a message that was accepted can be written again and reads the same.
#include <algorithm>

#include "harness.h"
#include "mspcodec.h"

namespace {

/// The payloads of \p stream when it comes in pieces of \p size bytes.
QByteArrayList payloads(const QByteArray &stream, int size, bool &broken)
{
    msp::FrameReader reader;
    QByteArrayList result;
    for (int at = 0; at < stream.size(); at += size) {
        reader.append(stream.mid(at, size));
        while (const std::optional<QByteArray> payload = reader.next()) {
            FUZZ_VERIFY(quint32(payload->size()) <= msp::maximumPayload);
            result.append(*payload);
        }
    }
    broken = reader.isBroken();
    return result;
}

} // namespace

void fuzz::prepare() { }

void fuzz::run(const QByteArray &input)
{
    if (input.isEmpty())
        return;
    const QByteArray stream = input.mid(1);
    bool broken = false;
    const QByteArrayList frames = payloads(stream, std::max(1, stream.size()), broken);
    bool brokenInPieces = false;
    FUZZ_VERIFY(payloads(stream, 1 + quint8(input.at(0)), brokenInPieces) == frames);
    FUZZ_VERIFY(brokenInPieces == broken);

    for (const QByteArray &payload : frames) {
        const std::optional<msp::Message> message = msp::decode(payload);
        if (!message)
            continue;
        const QByteArray bytes = msp::encode(*message);
        const std::optional<msp::Message> again = msp::decode(bytes);
        FUZZ_VERIFY(again && again->index() == message->index() && msp::encode(*again) == bytes);
    }
}
