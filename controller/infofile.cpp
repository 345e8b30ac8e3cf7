// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "infofile.h"

namespace halvar {

namespace {

/// \p text on one line: neither the configuration nor the MSP can put lines of their own into the file.
QByteArray onOneLine(QString text)
{
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control || character.category() == QChar::Separator_Line
            || character.category() == QChar::Separator_Paragraph)
            character = QLatin1Char(' ');
    }
    return text.toUtf8();
}

} // namespace

QByteArray infoFileContent(const InstrumentVersions &versions)
{
    QByteArray content;
    content += "Zoltv1\n";
    content += "Serial Number\t\t" + onOneLine(versions.serialNumber) + '\n';
    content += "Controller version\t" + onOneLine(versions.controller) + '\n';
    content += "MSP Firmware version\t" + onOneLine(versions.mspFirmware) + '\n';
    content += "MSP server version\t" + onOneLine(versions.mspServer) + '\n';
    // The acquisition software cannot be asked for its version; this is the one delivered with the library.
    content += "Marten version\t\tv1.4.0\n";
    return content;
}

} // namespace halvar
