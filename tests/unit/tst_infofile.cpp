// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include "infofile.h"

class TstInfoFile : public QObject
{
    Q_OBJECT

private slots:
    void content_isSixLines()
    {
        QCOMPARE(halvar::infoFileContent({QStringLiteral("HV-0042"), QStringLiteral("v4.0.9"),
                                          QStringLiteral("1.7é"), QStringLiteral("2.3.1")}),
                 QByteArray("Zoltv1\n"
                            "Serial Number\t\tHV-0042\n"
                            "Controller version\tv4.0.9\n"
                            "MSP Firmware version\t1.7é\n"
                            "MSP server version\t2.3.1\n"
                            "Marten version\t\tv1.4.0\n"));
    }

    void emptyVersions_endTheirLinesAfterTheTab()
    {
        QCOMPARE(halvar::infoFileContent({}),
                 QByteArray("Zoltv1\n"
                            "Serial Number\t\t\n"
                            "Controller version\t\n"
                            "MSP Firmware version\t\n"
                            "MSP server version\t\n"
                            "Marten version\t\tv1.4.0\n"));
    }

    void lineEndInAValue_makesNoLine()
    {
        QCOMPARE(
            halvar::infoFileContent({QStringLiteral("HV\nController version\tv9"), QStringLiteral("v4.0.9"),
                                     QStringLiteral("1\r\n2"), QStringLiteral("3\u20284")}),
            QByteArray("Zoltv1\n"
                       "Serial Number\t\tHV Controller version v9\n"
                       "Controller version\tv4.0.9\n"
                       "MSP Firmware version\t1  2\n"
                       "MSP server version\t3 4\n"
                       "Marten version\t\tv1.4.0\n"));
    }
};

QTEST_APPLESS_MAIN(TstInfoFile)
#include "tst_infofile.moc"
