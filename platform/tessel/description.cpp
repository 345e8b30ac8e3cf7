// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "tessel/description.h"

#include <QList>

namespace tessel {

bool Description::parseAddress(const QByteArray &text, Description &description)
{
    description = Description();
    const int firstColon = text.indexOf(':');
    const int lastColon = text.lastIndexOf(':');
    if (text.left(firstColon) != "TCPIP" || lastColon <= firstColon + 1)
        return false;
    bool ok = false;
    const quint16 port = text.mid(lastColon + 1).toUShort(&ok, 10);
    if (!ok)
        return false;
    description.host = text.mid(firstColon + 1, lastColon - firstColon - 1);
    description.port = port;
    return true;
}

bool Description::parse(const QByteArray &text, Description &description)
{
    const int separator = text.indexOf('@');
    if (separator <= 0 || !parseAddress(text.mid(separator + 1), description)) {
        description = Description();
        return false;
    }
    const QByteArray service = text.left(separator);
    const int colon = service.lastIndexOf(':');
    description.interfaceName = service.left(qMax(0, colon));
    description.name = service.mid(colon + 1);
    if (!description.name.isEmpty())
        return true;
    description = Description();
    return false;
}

} // namespace tessel
