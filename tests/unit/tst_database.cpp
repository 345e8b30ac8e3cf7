// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The reference database: its lists, and how they are read.
#include <QMetaMethod>
#include <QPointer>
#include <QTest>
#include <QTextCodec>

#include "databasefixture.h"
#include "logrecorder.h"

namespace {

const char openFailure[] =
    "DEBUG [Halvar Controller]: Une erreur s'est produite lors de l'ouverture du fichier!";

} // namespace

class TstDatabase : public QObject, private DatabaseFixture
{
    Q_OBJECT

private slots:
    void init() { renew(); }

    void newDatabase_hasEightEmptyListsWithoutParent()
    {
        QCOMPARE(content(*m_database), QStringList());
        QCOMPARE(m_database->m_LocalItemsListModel->parent(), nullptr);
        QCOMPARE(m_database->m_EtatDegradeItemsListModel->parent(), nullptr);
    }

    void lists_dieWithTheDatabase()
    {
        QPointer<DatabaseItemListModel> first = m_database->m_LocalItemsListModel;
        QPointer<DatabaseItemListModel> last = m_database->m_EtatDegradeItemsListModel;
        m_database.reset();
        QVERIFY(!first);
        QVERIFY(!last);
    }

    void slots_areReadAndWrite()
    {
        const QMetaObject &metaObject = Database::staticMetaObject;
        QStringList found;
        for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
            const QMetaMethod method = metaObject.method(i);
            QCOMPARE(method.methodType(), QMetaMethod::Slot);
            QCOMPARE(method.access(), QMetaMethod::Public);
            found.append(QString::fromLatin1(method.typeName()) + QLatin1Char(' ')
                         + QString::fromLatin1(method.methodSignature()));
        }
        QCOMPARE(found, (QStringList{QStringLiteral("bool read(QString)"), QStringLiteral("bool write()")}));
    }

    void read_fillsTheEightLists()
    {
        write("database_unit.xml", reference("database_unit.xml"));
        write("database_diagnostic.xml", reference("database_diagnostic.xml"));
        LogRecorder log;
        QVERIFY(m_database->read(home()));
        QCOMPARE(content(*m_database),
                 (QStringList{
                     QStringLiteral("0|locaux|1|1|file:%1database/locaux/cuisine.png|Cuisine").arg(home()),
                     QStringLiteral("0|locaux|1|0||Salle d'eau <n°1> & \"annexe\""),
                     QStringLiteral("0|local|0|1||Grenier"),
                     QStringLiteral("1|elements|1|1||Fenêtre"),
                     QStringLiteral("3|revetements|1|1||Peinture"),
                     QStringLiteral("4|non_visite|1|1||Porte fermée"),
                     QStringLiteral("5|non_mesure|1|1||Hors d'atteinte"),
                     QStringLiteral("6|etat_usage|1|1||Usure par friction"),
                     QStringLiteral("7|etat_degrade|1|1||Écaillage"),
                 }));
        const QStringList lines = log.lines();
        QCOMPARE(lines.value(0), QStringLiteral("DEBUG [Halvar Controller]: Reading database_unit."));
        QCOMPARE(lines.value(1), QStringLiteral("DEBUG Image: \"cuisine.png\""));
        const QString path = home() + QStringLiteral("database/locaux/cuisine.png");
        QCOMPARE(lines.value(2), QStringLiteral("DEBUG PATH 1:  \"%1\"").arg(path));
        QCOMPARE(lines.value(3), QStringLiteral("DEBUG PATH 2:  \"%1\"").arg(path));
        QCOMPARE(lines.value(4), QStringLiteral("DEBUG PATH 3:  \"file:%1\"").arg(path));
        QCOMPARE(lines.value(5), QStringLiteral("DEBUG Title: \"Cuisine\""));
        QCOMPARE(lines.value(6), QStringLiteral("DEBUG Image: \"\""));
        QCOMPARE(log.count(QStringLiteral("DEBUG [Halvar Controller]: Reading database_diagnostic.")), 1);
        QCOMPARE(lines.filter(QStringLiteral("Title:")).size(), 9);
    }

    void readTwice_appendsEveryItemAgain()
    {
        QVERIFY(readUnit(reference("database_unit.xml")));
        QVERIFY(m_database->read(home()));
        QCOMPARE(titles(m_database->m_ElementItemsListModel),
                 (QStringList{QStringLiteral("Fenêtre"), QStringLiteral("Fenêtre")}));
        QCOMPARE(m_database->m_LocalItemsListModel->size(), 6);
    }

    void readItems_belongToTheirList()
    {
        QVERIFY(readUnit(reference("database_unit.xml")));
        QCOMPARE(m_database->m_LocalItemsListModel->first()->parent(), m_database->m_LocalItemsListModel);
        QCOMPARE(m_database->m_LocalItemsListModel->home(), home());
    }

    void sectionsInAnyOrder_fillTheSameLists()
    {
        QVERIFY(readUnit("<database_unit><revetements>" + item("R") + "</revetements><locaux>" + item("L")
                         + "</locaux><elements>" + item("E") + "</elements><substrats>" + item("S")
                         + "</substrats></database_unit>"));
        QCOMPARE(titles(m_database->m_LocalItemsListModel), QStringList{QStringLiteral("L")});
        QCOMPARE(titles(m_database->m_ElementItemsListModel), QStringList{QStringLiteral("E")});
        QCOMPARE(titles(m_database->m_SubstratItemsListModel), QStringList{QStringLiteral("S")});
        QCOMPARE(titles(m_database->m_RevetementItemsListModel), QStringList{QStringLiteral("R")});
    }

    void sections_areFour_whateverTheFileHolds_data()
    {
        QTest::addColumn<QByteArray>("sections");
        QTest::addColumn<QString>("locaux");
        QTest::addColumn<QString>("elements");
        const QByteArray room = "<locaux>" + item("L") + "</locaux>";
        const QByteArray element = "<elements>" + item("E") + "</elements>";
        const QByteArray unknown = "<toits>" + item("T") + "</toits>";
        const QString l = QStringLiteral("L");
        const QString e = QStringLiteral("E");
        QTest::newRow("none") << QByteArray() << QString() << QString();
        QTest::newRow("one") << room << l << QString();
        QTest::newRow("three") << room + element + "<substrats/>" << l << e;
        QTest::newRow("the fifth is ignored")
            << room + "<substrats/><revetements/><substrats/>" + element << l << QString();
        QTest::newRow("the same twice") << room + room << QStringLiteral("L L") << QString();
        QTest::newRow("section of the other file") << "<non_visite/>" + room << l << QString();
        QTest::newRow("unknown one keeps the list before it")
            << room + unknown + element << QStringLiteral("L T") << e;
        QTest::newRow("unknown one at the start has no list") << unknown + room << l << QString();
        QTest::newRow("name in capitals is unknown")
            << element + "<LOCAUX>" + item("L") + "</LOCAUX>" << QString() << QStringLiteral("E L");
    }
    void sections_areFour_whateverTheFileHolds()
    {
        QFETCH(QByteArray, sections);
        QVERIFY(readUnit("<database_unit>" + sections + "</database_unit>"));
        QTEST(titles(m_database->m_LocalItemsListModel).join(QLatin1Char(' ')), "locaux");
        QTEST(titles(m_database->m_ElementItemsListModel).join(QLatin1Char(' ')), "elements");
    }

    void unknownFirstSectionOfTheDiagnosticFile_fillsNoUnitList()
    {
        write("database_unit.xml", reference("database_unit.xml"));
        write("database_diagnostic.xml",
              "<database_diagnostic><inconnu>" + item("X") + "</inconnu></database_diagnostic>");
        QVERIFY(m_database->read(home()));
        QVERIFY(content(*m_database).filter(QStringLiteral("|X")).isEmpty());
    }

    void itemDetails_areReadAsWritten_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QString>("expected");
        QTest::newRow("activated in capitals is false")
            << QByteArray("<item type=\"a\" original=\"TRUE\" activated=\"TRUE\"><title>t</title></item>")
            << QStringLiteral("0|a|0|0||t");
        QTest::newRow("no attributes")
            << QByteArray("<item><title>t</title></item>") << QStringLiteral("0||1|1||t");
        QTest::newRow("other attributes") << QByteArray("<item id=\"7\" lang=\"de\"><title>t</title></item>")
                                          << QStringLiteral("0||1|1||t");
        QTest::newRow("picture without type is dropped")
            << QByteArray("<item><image>cuisine.png</image><title>t</title></item>")
            << QStringLiteral("0||1|1||t");
        QTest::newRow("language is ignored")
            << QByteArray("<item><title lang=\"de\">t</title></item>") << QStringLiteral("0||1|1||t");
        QTest::newRow("empty item") << QByteArray("<item/>") << QStringLiteral("0||1|1||");
        QTest::newRow("unknown children are skipped whole")
            << QByteArray("<item><note><title>no</title><image>qrc:/n</image></note><title>t</title>"
                          "<x/></item>")
            << QStringLiteral("0||1|1||t");
        QTest::newRow("elements inside the text")
            << QByteArray("<item><title>a<b>no</b>c</title></item>") << QStringLiteral("0||1|1||ac");
        QTest::newRow("title twice: the later one")
            << QByteArray("<item><title>1</title><title>2</title></item>") << QStringLiteral("0||1|1||2");
        QTest::newRow("CDATA") << QByteArray("<item><title><![CDATA[<a> & b]]></title></item>")
                               << QStringLiteral("0||1|1||<a> & b");
        QTest::newRow("comment inside")
            << QByteArray("<item><title>a<!-- b -->c</title></item>") << QStringLiteral("0||1|1||ac");
        QTest::newRow("other children of the section")
            << QByteArray("<group><item><title>no</title></item></group><item><title>t</title></item>")
            << QStringLiteral("0||1|1||t");
    }
    void itemDetails_areReadAsWritten()
    {
        QFETCH(QByteArray, xml);
        QVERIFY(readUnit("<database_unit><locaux>" + xml + "</locaux></database_unit>"));
        QTEST(content(*m_database).join(QLatin1Char('\n')), "expected");
    }

    void missingFile_isReportedAndEndsTheReading_data()
    {
        QTest::addColumn<bool>("unit");
        QTest::addColumn<bool>("diagnostic");
        QTest::addColumn<int>("items");
        QTest::newRow("both") << false << false << 0;
        QTest::newRow("unit file") << false << true << 0;
        QTest::newRow("diagnostic file") << true << false << 5;
    }
    void missingFile_isReportedAndEndsTheReading()
    {
        QFETCH(bool, unit);
        QFETCH(bool, diagnostic);
        if (unit)
            write("database_unit.xml", reference("database_unit.xml"));
        if (diagnostic)
            write("database_diagnostic.xml", reference("database_diagnostic.xml"));
        LogRecorder log;
        QVERIFY(!m_database->read(home()));
        QCOMPARE(log.count(QString::fromUtf8(openFailure)), 1);
        QCOMPARE(log.lines().filter(QStringLiteral("Reading")).size(), unit ? 1 : 0);
        QTEST(content(*m_database).size(), "items");
    }

    void otherRoot_contributesNothing()
    {
        LogRecorder log;
        QVERIFY(readUnit("<database><locaux>" + item("L") + "</locaux></database>"));
        QCOMPARE(content(*m_database), QStringList());
        QCOMPARE(log.lines(),
                 QStringList{QStringLiteral("DEBUG [Halvar Controller]: Reading database_diagnostic.")});
    }

    void damagedUnitFile_keepsTheDiagnosticFileUnread()
    {
        write("database_unit.xml",
              "<database_unit><locaux>" + item("L") + "</locaux><elements></oops></database_unit>");
        write("database_diagnostic.xml", reference("database_diagnostic.xml"));
        LogRecorder log;
        QVERIFY(!m_database->read(home()));
        QCOMPARE(content(*m_database), QStringList{QStringLiteral("0|t|1|1||L")});
        QVERIFY(log.lines().filter(QStringLiteral("database_diagnostic")).isEmpty());
    }

    void damagedDiagnosticFile_isAFailure()
    {
        write("database_unit.xml", reference("database_unit.xml"));
        write("database_diagnostic.xml", "<database_diagnostic><non_visite>" + item("N") + "</oops>");
        QVERIFY(!m_database->read(home()));
        QCOMPARE(titles(m_database->m_NonVisiteItemsListModel), QStringList{QStringLiteral("N")});
    }

    void fileCutAtAnyByte_givesWhatIsReadable()
    {
        const QByteArray whole = reference("database_unit.xml");
        QVERIFY(readUnit(whole));
        const QStringList all = content(*m_database);
        int failures = 0;
        for (int length = 0; length < whole.size(); ++length) {
            m_database = std::make_unique<Database>();
            if (!readUnit(whole.left(length)))
                ++failures;
            const QStringList read = content(*m_database);
            // Whole items only, in order, none of them blank or with half a title.
            QCOMPARE(read, all.mid(0, read.size()));
        }
        // Reading ends behind the fourth section: only what is cut before its end is missed.
        QVERIFY2(failures > whole.indexOf("</revetements>") - 2, qPrintable(QString::number(failures)));
    }

    void document_isReadInAnyEncodingAndLineEnd_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QString text = QString::fromUtf8(reference("database_unit.xml"));
        QString crlf = text;
        crlf.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
        const auto utf16 = [](QString document, const char *codec) {
            document.replace(QLatin1String("UTF-8"), QLatin1String("UTF-16"));
            return QTextCodec::codecForName(codec)->fromUnicode(document);
        };
        QTest::newRow("CR LF") << crlf.toUtf8();
        QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + text.toUtf8();
        QTest::newRow("UTF-16") << utf16(text, "UTF-16");
        QTest::newRow("UTF-16 with CR LF") << utf16(crlf, "UTF-16");
        QString latin = text;
        latin.replace(QLatin1String("UTF-8"), QLatin1String("ISO-8859-1"));
        QTest::newRow("Latin 1") << latin.toLatin1();
    }
    void document_isReadInAnyEncodingAndLineEnd()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(readUnit(reference("database_unit.xml")));
        const QStringList expected = content(*m_database);
        m_database = std::make_unique<Database>();
        QVERIFY(readUnit(bytes));
        QCOMPARE(content(*m_database), expected);
    }

    void entityBomb_isRefused()
    {
        QByteArray bomb = "<?xml version=\"1.0\"?><!DOCTYPE database_unit [<!ENTITY e0 \"aaaaaaaaaa\">";
        for (int i = 1; i < 10; ++i) {
            const QByteArray before = "&e" + QByteArray::number(i - 1) + ';';
            bomb += "<!ENTITY e" + QByteArray::number(i) + " \"" + before.repeated(10) + "\">";
        }
        bomb += "]><database_unit><locaux>" + item("L") + item("&e9;") + "</locaux></database_unit>";
        QVERIFY(!readUnit(bomb));
        QCOMPARE(titles(m_database->m_LocalItemsListModel), QStringList{QStringLiteral("L")});
    }

    void deepNesting_isSkipped()
    {
        constexpr int depth = 100000;
        QVERIFY(readUnit("<database_unit><locaux><item>" + QByteArray("<d>").repeated(depth)
                         + QByteArray("</d>").repeated(depth)
                         + "<title>t</title></item></locaux></database_unit>"));
        QCOMPARE(titles(m_database->m_LocalItemsListModel), QStringList{QStringLiteral("t")});
    }
};

QTEST_GUILESS_MAIN(TstDatabase)
#include "tst_database.moc"
