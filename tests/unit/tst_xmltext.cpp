// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include "xmltext.h"

class TstXmlText : public QObject
{
    Q_OBJECT

private slots:
    void text_isWhatADocumentCanHold_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const QString replacement = QChar(QChar::ReplacementCharacter);
        const QString pair = QString::fromUcs4(U"\U0001F3E0");
        const QString high = pair.left(1);
        const QString low = pair.mid(1);
        const QString plain = QStringLiteral("Salle d'eau <n°1> & \"co\"\t\n\r");
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("letters, accents, marks, line ends") << plain << plain;
        QTest::newRow("pair of surrogates") << pair << pair;
        QTest::newRow("null character") << QString(QChar::Null) << replacement;
        QTest::newRow("control character") << QStringLiteral("a\x1F") << QStringLiteral("a") + replacement;
        QTest::newRow("vertical tab") << QStringLiteral("\x0B") << replacement;
        QTest::newRow("high surrogate at the end")
            << QStringLiteral("a") + high << QStringLiteral("a") + replacement;
        QTest::newRow("high surrogate before a letter")
            << high + QStringLiteral("a") << replacement + QStringLiteral("a");
        QTest::newRow("low surrogate at the start") << low << replacement;
        QTest::newRow("low surrogate after a letter")
            << QStringLiteral("a") + low << QStringLiteral("a") + replacement;
        QTest::newRow("pair the wrong way round") << low + high << replacement + replacement;
        QTest::newRow("U+FFFE") << QString(QChar(0xFFFE)) << replacement;
        QTest::newRow("U+FFFD") << replacement << replacement;
    }
    void text_isWhatADocumentCanHold()
    {
        QFETCH(QString, text);
        QTEST(halvar::xmlText(text), "expected");
    }

    void carriageReturns_becomeReferences()
    {
        QByteArray document("\r<a>\r\nb\r\r</a>\n\r");
        halvar::keepCarriageReturns(document);
        QCOMPARE(document, QByteArray("&#13;<a>&#13;\nb&#13;&#13;</a>\n&#13;"));
        document = "<a>\nb</a>";
        halvar::keepCarriageReturns(document);
        QCOMPARE(document, QByteArray("<a>\nb</a>"));
    }
};

QTEST_APPLESS_MAIN(TstXmlText)
#include "tst_xmltext.moc"
