// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Files that were made to cost far more time or memory than their size accounts for: reading n bytes takes
// less than 40 n + 20 MB, and seconds.
#include <QBuffer>
#include <QElapsedTimer>
#include <QTest>

#include <functional>
#include <memory>

#include "diagnostictest.h"
#include "logrecorder.h"
#include "memorypeak.h"
#include "shocklistmodel.h"
#include "xmlreader.h"

namespace {

#ifdef __SANITIZE_THREAD__
constexpr int slowdown = 15;
#else
constexpr int slowdown = 1;
#endif

QByteArray numbered(const char *piece, int size)
{
    QByteArray text;
    for (int i = 0; text.size() < size; ++i)
        text += QByteArray(piece).replace('#', QByteArray::number(i));
    return text;
}

QByteArray attributes(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += " a" + QByteArray::number(i) + "=\"\"";
    return text;
}

constexpr int Megabyte = 1000 * 1000;

} // namespace

class TstHostileXml : public DiagnosticTest
{
    Q_OBJECT

private slots:
    void costlyDocument_isAnErrorWithinSeconds_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("error");
        QTest::newRow("attributes") << "<Data" + numbered(" a#=\"\"", Megabyte) + "/>"
                                    << QStringLiteral("More than 256 attributes.");
        const QByteArray utf16 = "<Data" + numbered(" a#=''", Megabyte) + "/>";
        QByteArray wide("\xff\xfe");
        for (const char letter : utf16)
            wide.append(letter).append('\0');
        // Neither the length of the tag nor what stands behind it tells this one from an honest one.
        QTest::newRow("one attribute too many, among others") << "<Data><a" + attributes(257) + "/>"
                + numbered("<b/>", 1000) + "</Data>" << QStringLiteral("More than 256 attributes.");
        QTest::newRow("attributes in UTF-16") << wide << QStringLiteral("More than 256 attributes.");
        QTest::newRow("attributes behind brackets in values") << "<Data" + numbered(" a#=\"'>\"", Megabyte)
                + "/>" << QStringLiteral("More than 256 attributes.");
        QTest::newRow("attributes behind a comment, data and an instruction")
            << "<Data><!-- ' --><![CDATA[<]]]]><?a '?><a" + numbered(" a#=\"\"", Megabyte) + "/></Data>"
            << QStringLiteral("More than 256 attributes.");
        QTest::newRow("attributes behind a document type")
            << "<!DOCTYPE Data [<!-- ' --><!ENTITY e \"]>'\">]><Data" + numbered(" a#=\"\"", Megabyte) + "/>"
            << QStringLiteral("More than 256 attributes.");
        QTest::newRow("name spaces") << numbered("<a xmlns:p#='u'>", Megabyte)
                                     << QStringLiteral("More than 256 name spaces.");
        QTest::newRow("references") << "<!DOCTYPE d [<!ENTITY e '" + QByteArray(4000, 'x') + "'>]><Data>"
                + numbered("&e;", Megabyte)
                + "</Data>" << QStringLiteral("More than 256 references to entities.");
        QTest::newRow("default attributes")
            << "<!DOCTYPE d [<!ATTLIST a" + numbered(" a# CDATA 'x'", 10000) + ">]><Data>"
                + numbered("<a/>", Megabyte)
            << QStringLiteral("Declarations of attributes and parameters are not read.");
        QTest::newRow("prolog") << "<!DOCTYPE d [" + numbered("<!ENTITY e# 'x'>", Megabyte) + "]><Data/>"
                                << QStringLiteral("More than 65536 bytes before the first element.");
        QTest::newRow("encoding") << QByteArray("<?xml version='1.0' encoding='ISO-2022-JP'?><Data/>")
                                  << QStringLiteral("The encoding ISO-2022-JP is not read.");
    }
    void costlyDocument_isAnErrorWithinSeconds()
    {
        QFETCH(QByteArray, document);
        QFETCH(QString, error);
        QBuffer file(&document);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QElapsedTimer timer;
        timer.start();
        halvar::XmlReader reader;
        reader.setDevice(&file);
        while (!reader.atEnd() && !reader.hasError())
            reader.readNext();
        QCOMPARE(reader.errorString(), error);
        QVERIFY2(timer.elapsed() < 20000 * slowdown, qPrintable(QString::number(timer.elapsed())));
    }

    void allowedNumbers_areRead()
    {
        QByteArray document("<!DOCTYPE d [<!ENTITY e 'x'>]><Data><a" + attributes(256) + "/>"
                            + QByteArray("&e;").repeated(256) + "</Data>");
        QBuffer file(&document);
        QVERIFY(file.open(QIODevice::ReadOnly));
        halvar::XmlReader reader;
        reader.setDevice(&file);
        int most = 0;
        while (!reader.atEnd() && !reader.hasError()) {
            if (reader.readNext() == halvar::XmlReader::TokenType::StartElement)
                most = qMax(most, reader.attributes().size());
        }
        QCOMPARE(reader.errorString(), QString());
        QCOMPARE(most, 256);
    }

    void manyNewTitles_areReadWithinSeconds()
    {
        QElapsedTimer timer;
        timer.start();
        const LogRecorder log(QsLogging::ErrorLevel);
        m->load("<Dossier><Uds><Ud>" + numbered("<Local>#</Local>", 300000)
                + numbered("<Revetement>#</Revetement>", 300000) + "</Ud></Uds></Dossier>");
        QCOMPARE(log.lines(), QStringList());
        QVERIFY2(timer.elapsed() < 60000 * slowdown, qPrintable(QString::number(timer.elapsed())));
        Database again;
        QVERIFY(again.read(m->home.path()));
        QCOMPARE(again.m_RevetementItemsListModel->count(),
                 m->database().m_RevetementItemsListModel->count());
        QVERIFY(again.m_RevetementItemsListModel->count() > 10000);
    }

    void memory_staysWithinFortyTimesTheFile_data()
    {
        QTest::addColumn<QString>("reader");
        QTest::addColumn<QByteArray>("document");
        const auto row = [](const char *reader, const char *what, const QByteArray &document) {
            QTest::addRow("%s, %s", reader, what) << QString::fromLatin1(reader) << document;
        };
        constexpr int size = 2 * Megabyte;
        row("diagnostic", "units", "<Dossier><Uds>" + numbered("<Ud/>", size));
        row("diagnostic", "measures", "<Dossier><Uds><Ud><Mesures>" + numbered("<Mesure/>", size));
        row("diagnostic", "new rooms", "<Dossier><Uds><Ud>" + numbered("<Local>#</Local>", size));
        row("diagnostic", "one text",
            "<Dossier><Uds><Ud><Observation>" + QByteArray(4 * size, 'x') + "</Observation>");
        row("diagnostic", "one attribute",
            "<Dossier><Uds><Ud><Local Image=\"" + QByteArray(size, 'x') + "\">Cave</Local>");
        row("diagnostic", "one comment", "<Dossier><!--" + QByteArray(size, 'x') + "-->");
        row("diagnostic", "one element's name", "<Dossier><" + QByteArray(size, 'x'));
        row("diagnostic", "places",
            "<Dossier>" + numbered("<Informations><Localisation>#</Localisation></Informations>", size));
        row("diagnostic", "nesting", "<Dossier><Uds>" + numbered("<a>", 4 * size));
        row("database", "items", "<database_unit><locaux>" + numbered("<item/>", size));
        row("database", "one attribute",
            "<database_unit><locaux><item type=\"" + QByteArray(size, 'x') + "\"/>");
        row("database", "titles",
            "<database_unit><locaux>" + numbered("<item><title>#</title></item>", size));
        row("database", "sections", "<database_unit>" + numbered("<locaux/>", size));
        row("database", "nesting", "<database_unit><locaux><item>" + numbered("<a>", size));
        row("shocks", "nesting", "<history_shocks>" + numbered("<a>", size));
        row("shocks", "one text", "<history_shocks><shock>" + QByteArray(size, 'x') + "</shock>");
        row("shocks", "one comment", "<history_shocks><!--" + QByteArray(size, 'x') + "-->");
        row("shocks", "shocks", "<history_shocks>" + numbered("<shock/>", size));
        row("config", "nesting", "<Data><V/><U>" + numbered("<a>", size));
        row("config", "one text", "<Data><V/><U><N_ASN>" + QByteArray(size, 'x') + "</N_ASN></U></Data>");
    }
    void memory_staysWithinFortyTimesTheFile()
    {
        if (!memorypeak::isMeasurable())
            QSKIP("The sanitizers' own memory would be measured.");
        QFETCH(QString, reader);
        QFETCH(QByteArray, document);
        const QString home = m->home.path();
        std::function<void()> read = [this] { (*m)->loadFile(m->path(QStringLiteral("x"))); };
        QString file = QStringLiteral("files/x.xml");
        if (reader == QLatin1String("database")) {
            file = QStringLiteral("database/database_unit.xml");
            read = [home] { Database().read(home); };
        } else if (reader == QLatin1String("shocks")) {
            file = QStringLiteral("shock/shock.xml");
            read = [home] { const ShockListModel shocks(home); };
        } else if (reader == QLatin1String("config")) {
            file = QStringLiteral("config/config_unit");
            read = [home] { Config().read(home); };
        }
        const QByteArray before = m->home.read(file);
        m->home.write(file, document);
        memorypeak::verify(document.size(), read);
        m->home.write(file, before);
    }
};

QTEST_GUILESS_MAIN(TstHostileXml)
#include "tst_hostilexml.moc"
