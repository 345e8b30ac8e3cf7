// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "xmltext.h"

#include <algorithm>
#include <cstring>

namespace halvar {

namespace {

bool isLoneSurrogate(const QString &text, int index)
{
    const QChar character = text.at(index);
    if (character.isHighSurrogate())
        return index + 1 == text.size() || !text.at(index + 1).isLowSurrogate();
    if (character.isLowSurrogate())
        return index == 0 || !text.at(index - 1).isHighSurrogate();
    return false;
}

bool isAllowed(const QString &text, int index)
{
    const ushort code = text.at(index).unicode();
    if (code < 0x20)
        return code == '\t' || code == '\n' || code == '\r';
    return code < 0xFFFE && !isLoneSurrogate(text, index);
}

} // namespace

QString xmlText(const QString &text)
{
    // Hardly any text has a character whose neighbours must be looked at.
    constexpr ushort firstSurrogate = 0xD800;
    if (std::none_of(text.cbegin(), text.cend(), [](QChar character) {
            return character.unicode() < 0x20 || character.unicode() >= firstSurrogate;
        }))
        return text;
    QString result = text;
    for (int i = 0; i < text.size(); ++i) {
        if (!isAllowed(text, i))
            result[i] = QChar(QChar::ReplacementCharacter);
    }
    return result;
}

void keepCarriageReturns(QByteArray &document)
{
    // Hardly any document has one, and this search costs nearly nothing.
    if (std::memchr(document.constData(), '\r', std::size_t(document.size())))
        document.replace('\r', QByteArrayLiteral("&#13;"));
}

} // namespace halvar
