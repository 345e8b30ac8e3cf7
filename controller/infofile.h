// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_INFOFILE_H
#define HALVAR_INFOFILE_H

#include <QByteArray>
#include <QString>

#include "halvar-export.h"

namespace halvar {

/// What the device information file tells about the instrument.
struct InstrumentVersions
{
    QString serialNumber;
    QString controller;
    QString mspFirmware;
    QString mspServer;
};

/// The six lines of the file, UTF-8. Line ends and other control characters in a value become blanks.
HALVAR_EXPORT QByteArray infoFileContent(const InstrumentVersions &versions);

} // namespace halvar

#endif // HALVAR_INFOFILE_H
