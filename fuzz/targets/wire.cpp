// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The middleware's decoder. A payload is refused with a status, or it is one that the encoder can write
// again, in as many bytes or fewer, and that decodes to the same message.
#include <algorithm>

#include "harness.h"
#include "protocol.h"

namespace {

using namespace tessel;

int nesting(const Tuple &tuple)
{
    int deepest = 0;
    for (int i = 0; i < tuple.size(); ++i) {
        if (tuple.value(i).type() == T_TUPLE)
            deepest = std::max(deepest, nesting(tuple.value(i).toTuple()));
    }
    return deepest + 1;
}

int mostFields(const Tuple &tuple)
{
    int most = tuple.size();
    for (int i = 0; i < tuple.size(); ++i) {
        if (tuple.value(i).type() == T_TUPLE)
            most = std::max(most, mostFields(tuple.value(i).toTuple()));
    }
    return most;
}

} // namespace

void fuzz::prepare() { }

void fuzz::run(const QByteArray &input)
{
    protocol::Message message;
    const Status status = protocol::decode(input, message);
    FUZZ_VERIFY(status == OK || status == ERR_MALFORMED || status == ERR_TOO_LARGE);
    if (status != OK)
        return;
    FUZZ_VERIFY(nesting(message.tuple) <= protocol::MaxNesting);
    FUZZ_VERIFY(mostFields(message.tuple) <= protocol::MaxFields);

    QByteArray frame;
    FUZZ_VERIFY(protocol::encode(message, frame) == OK);
    FUZZ_VERIFY(int(protocol::payloadSize(frame)) == frame.size() - protocol::HeaderSize);
    const QByteArray payload = frame.mid(protocol::HeaderSize);
    // The encoder writes each number in its shortest form. Nothing else has two forms.
    FUZZ_VERIFY(payload.size() < input.size() || payload == input);

    protocol::Message again;
    FUZZ_VERIFY(protocol::decode(payload, again) == OK);
    QByteArray frameAgain;
    FUZZ_VERIFY(protocol::encode(again, frameAgain) == OK && frameAgain == frame);
    FUZZ_VERIFY(again.kind == message.kind && again.number == message.number && again.status == message.status
                && again.session == message.session && again.interfaceName == message.interfaceName
                && again.serviceName == message.serviceName);
}
