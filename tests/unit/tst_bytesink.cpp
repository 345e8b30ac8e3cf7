// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>
#include <QXmlStreamWriter>

#include <rapidcheck.h>

#include "bytesink.h"

class TstByteSink : public QObject
{
    Q_OBJECT

private slots:
    void bytes_areAppendedInTheirOrder()
    {
        QVERIFY(rc::check([](const std::vector<std::string> &pieces) {
            QByteArray bytes("before ");
            QByteArray expected = bytes;
            halvar::ByteSink sink(&bytes);
            for (const std::string &piece : pieces) {
                const QByteArray written = QByteArray::fromStdString(piece);
                RC_ASSERT(sink.write(written) == written.size());
                expected += written;
                RC_ASSERT(bytes == expected);
            }
        }));
    }

    void document_isTheOneThatAnXmlWriterPutsIntoAByteArray()
    {
        const auto compose = [](QXmlStreamWriter &writer) {
            writer.setAutoFormatting(true);
            writer.writeStartDocument();
            writer.writeStartElement(QStringLiteral("Ud"));
            writer.writeAttribute(QStringLiteral("Id"), QStringLiteral("\"1\"\t\n"));
            writer.writeTextElement(QStringLiteral("Local"), QStringLiteral("Entrée <n°1> & \U0001F3E0"));
            writer.writeEmptyElement(QStringLiteral("Mesures"));
            writer.writeEndElement();
            writer.writeEndDocument();
        };
        QByteArray expected;
        QXmlStreamWriter reference(&expected);
        compose(reference);

        QByteArray bytes;
        halvar::ByteSink sink(&bytes);
        QXmlStreamWriter writer(&sink);
        compose(writer);
        QVERIFY(!writer.hasError());
        QCOMPARE(bytes, expected);
    }

    void reading_givesNothing()
    {
        QByteArray bytes("content");
        halvar::ByteSink sink(&bytes);
        QVERIFY(sink.isWritable() && !sink.isReadable());
        QTest::ignoreMessage(QtWarningMsg, "QIODevice::read (QIODevice): WriteOnly device");
        QCOMPARE(sink.readAll(), QByteArray());
        QCOMPARE(bytes, QByteArray("content"));
    }
};

QTEST_APPLESS_MAIN(TstByteSink)
#include "tst_bytesink.moc"
