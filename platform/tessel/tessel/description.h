// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_DESCRIPTION_H
#define TESSEL_DESCRIPTION_H

#include <QByteArray>

#include "export.h"

namespace tessel {

/// Where a service is: "[INTERFACE:]NAME@TCPIP:HOST:PORT", e.g. "nap_server@TCPIP:localhost:3555".
struct TESSEL_EXPORT Description
{
    QByteArray interfaceName; ///< empty: any
    QByteArray name;
    QByteArray host;
    quint16 port = 0;

    /// \return false, and nothing in \p description, when \p text is not one.
    static bool parse(const QByteArray &text, Description &description);
    /// The part behind the separator, "TCPIP:HOST:PORT"; port 0 stands for any free one.
    static bool parseAddress(const QByteArray &text, Description &description);
};

} // namespace tessel

#endif // TESSEL_DESCRIPTION_H
