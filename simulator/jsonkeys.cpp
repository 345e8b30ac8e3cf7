// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "jsonkeys.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QVector>

#include <optional>

namespace simulator {

namespace {

/// \return where the text that is quoted at \p begin ends, behind its closing quotation mark.
int endOfText(const QByteArray &json, int begin)
{
    for (int at = begin + 1; at < json.size(); ++at) {
        if (json.at(at) == '\\')
            ++at;
        else if (json.at(at) == '"')
            return at + 1;
    }
    return json.size();
}

/// Only a key is followed by a colon.
bool isKey(const QByteArray &json, int end)
{
    while (end < json.size() && QByteArrayLiteral(" \t\r\n").contains(json.at(end)))
        ++end;
    return end < json.size() && json.at(end) == ':';
}

/// Two keys are one when they read the same, however they are escaped. None when the parser, too, stops here.
std::optional<QString> withoutEscapes(const QByteArray &text)
{
    const QJsonDocument document = QJsonDocument::fromJson('[' + text + ']');
    if (document.isNull())
        return std::nullopt;
    return document.array().at(0).toString();
}

} // namespace

RepeatedKey findRepeatedKey(const QByteArray &json)
{
    QVector<QSet<QString>> containers; // the keys of each one that is open; none for a list
    for (int at = 0; at < json.size();) {
        const char character = json.at(at);
        if (character == '{' || character == '[') {
            containers.append(QSet<QString>());
        } else if ((character == '}' || character == ']') && !containers.isEmpty()) {
            containers.removeLast();
        } else if (character == '"') {
            const int end = endOfText(json, at);
            if (!containers.isEmpty() && isKey(json, end)) {
                const std::optional<QString> key = withoutEscapes(json.mid(at, end - at));
                if (!key)
                    return {};
                if (containers.last().contains(*key))
                    return {*key, at};
                containers.last().insert(*key);
            }
            at = end;
            continue;
        }
        ++at;
    }
    return {};
}

} // namespace simulator
