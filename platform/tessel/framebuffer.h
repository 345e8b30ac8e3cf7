// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_FRAMEBUFFER_H
#define TESSEL_FRAMEBUFFER_H

#include <QByteArray>

namespace tessel {

/// The bytes that came in on one connection, and the frames among them. Its memory grows with the one frame
/// that is under way, once the length of that is known to be allowed.
class FrameBuffer
{
public:
    enum class Next {
        None, ///< not whole yet
        Frame,
        TooLarge ///< announces more than the limit: nothing behind it can be told apart any more
    };

    /// Takes the next frame out. \p payload stays valid until room() is called.
    Next next(QByteArray &payload);

    /// Where further bytes belong, at most \p size of them, which is at least 1. Only after next() has
    /// returned None.
    char *room(int &size);
    void add(int bytes) { m_end += bytes; }

    /// Nothing has come that was not taken out.
    bool isEmpty() const { return m_begin == m_end; }
    void clear();

private:
    QByteArray m_bytes; // of which those from m_begin to m_end have come and are not taken
    int m_begin = 0;
    int m_end = 0;
};

} // namespace tessel

#endif // TESSEL_FRAMEBUFFER_H
