// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "framebuffer.h"

#include <cstring>

#include "protocol.h"

namespace tessel {

namespace {

constexpr int UsualSize = 4096; // holds most messages, and is kept

} // namespace

FrameBuffer::Next FrameBuffer::next(QByteArray &payload)
{
    const int there = m_end - m_begin;
    if (there < protocol::HeaderSize)
        return Next::None;
    const char *const frame = m_bytes.constData() + m_begin;
    const quint32 size = protocol::payloadSize(frame);
    if (size > protocol::MaxPayload)
        return Next::TooLarge;
    if (there - protocol::HeaderSize < int(size))
        return Next::None;
    payload = QByteArray::fromRawData(frame + protocol::HeaderSize, int(size));
    m_begin += protocol::HeaderSize + int(size);
    return Next::Frame;
}

char *FrameBuffer::room(int &size)
{
    const int there = m_end - m_begin;
    int wanted = UsualSize;
    if (there >= protocol::HeaderSize) {
        const quint32 payload = protocol::payloadSize(m_bytes.constData() + m_begin);
        wanted = qMax(wanted, protocol::HeaderSize + int(qMin<quint32>(payload, protocol::MaxPayload)));
    }
    if (there == 0 && m_bytes.size() > UsualSize)
        m_bytes.clear(); // a large one is rare
    else if (m_begin > 0 && there > 0)
        std::memmove(m_bytes.data(), m_bytes.constData() + m_begin, std::size_t(there));
    m_begin = 0;
    m_end = there;
    if (m_bytes.size() < wanted)
        m_bytes.resize(wanted);
    size = m_bytes.size() - m_end;
    return m_bytes.data() + m_end;
}

void FrameBuffer::clear()
{
    *this = FrameBuffer();
}

} // namespace tessel
