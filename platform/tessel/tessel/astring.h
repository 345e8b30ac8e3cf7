// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_ASTRING_H
#define TESSEL_ASTRING_H

#include <QByteArray>
#include <QString>

namespace tessel {

/// A text, UTF-8. Implicitly shared.
class AString
{
public:
    AString() = default;
    AString(const char *utf8)
        : m_utf8(utf8)
    { }
    explicit AString(const QByteArray &utf8)
        : m_utf8(utf8)
    { }
    explicit AString(const QString &text)
        : m_utf8(text.toUtf8())
    { }

    const char *c_str() const { return m_utf8.constData(); }
    const QByteArray &toUtf8() const { return m_utf8; }
    QString toString() const { return QString::fromUtf8(m_utf8); }
    int size() const { return m_utf8.size(); }
    bool isEmpty() const { return m_utf8.isEmpty(); }

    friend bool operator==(const AString &a, const AString &b) { return a.m_utf8 == b.m_utf8; }
    friend bool operator!=(const AString &a, const AString &b) { return a.m_utf8 != b.m_utf8; }

private:
    QByteArray m_utf8;
};

} // namespace tessel

#endif // TESSEL_ASTRING_H
