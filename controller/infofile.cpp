// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "infofile.h"

namespace halvar {

QByteArray infoFileContent(const InstrumentVersions &versions)
{
    QByteArray content;
    content += "Zoltv1\n";
    content += "Serial Number\t\t" + versions.serialNumber.toUtf8() + '\n';
    content += "Controller version\t" + versions.controller.toUtf8() + '\n';
    content += "MSP Firmware version\t" + versions.mspFirmware.toUtf8() + '\n';
    content += "MSP server version\t" + versions.mspServer.toUtf8() + '\n';
    // The acquisition software cannot be asked for its version; this is the one delivered with the library.
    content += "Marten version\t\tv1.4.0\n";
    return content;
}

} // namespace halvar
