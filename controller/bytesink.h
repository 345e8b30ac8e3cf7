// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_BYTESINK_H
#define HALVAR_BYTESINK_H

#include <QByteArray>
#include <QIODevice>

namespace halvar {

/// A device that appends what is written to it to a byte array, and can do nothing else.
///
/// An XML writer writes a few bytes at a time. QBuffer asks itself each time where it is, how much room is
/// left and who wants to know of it: a fifth of a document's whole cost.
class ByteSink : public QIODevice
{
public:
    /// \param bytes is not owned.
    explicit ByteSink(QByteArray *bytes)
        : m_bytes(*bytes)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override
    {
        m_bytes.append(data, static_cast<int>(size));
        return size;
    }

private:
    QByteArray &m_bytes;
};

} // namespace halvar

#endif // HALVAR_BYTESINK_H
