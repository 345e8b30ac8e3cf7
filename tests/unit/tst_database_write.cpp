// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The reference database: its unit file as it is written, and when.
#include <QTest>

#include <array>
#include <csignal>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <rapidcheck.h>

#include "databasefixture.h"
#include "logrecorder.h"

class TstDatabaseWrite : public QObject, private DatabaseFixture
{
    Q_OBJECT

private slots:
    void init() { renew(); }

    void written_isTheReferenceDocument()
    {
        QVERIFY(readUnit(reference("database_unit.xml")));
        QVERIFY(QFile::remove(unitPath()));
        QVERIFY(m_database->write());
        QCOMPARE(unitFile(), reference("database_unit.xml"));
        QVERIFY(m_database->write());
        QCOMPARE(unitFile(), reference("database_unit.xml"));
    }

    void emptyLists_areFourEmptySections()
    {
        QVERIFY(readUnit("<database_unit/>"));
        QVERIFY(m_database->write());
        QCOMPARE(unitFile(),
                 QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<database_unit>\n"
                            "    <locaux/>\n    <elements/>\n    <substrats/>\n"
                            "    <revetements/>\n</database_unit>"));
    }

    void writing_leavesTheDiagnosticFile()
    {
        write("database_unit.xml", reference("database_unit.xml"));
        write("database_diagnostic.xml", reference("database_diagnostic.xml"));
        QVERIFY(m_database->read(home()));
        m_database->m_NonVisiteItemsListModel->add(QStringLiteral("Nouveau"), QString());
        QVERIFY(m_database->write());
        QFile file(home() + QStringLiteral("database/database_diagnostic.xml"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), reference("database_diagnostic.xml"));
    }

    void picture_isWrittenAsItsBareName_data()
    {
        QTest::addColumn<QString>("image");
        QTest::addColumn<QByteArray>("written");
        QTest::newRow("file URL") << QStringLiteral("file:/data/database/locaux/c.png")
                                  << QByteArray("c.png");
        QTest::newRow("resource") << QStringLiteral("qrc:/images/c.png") << QByteArray("c.png");
        QTest::newRow("URL without folder") << QStringLiteral("file:c.png") << QByteArray("c.png");
        QTest::newRow("marks that URLs use")
            << QStringLiteral("file:/d/n#1?100%20.png") << QByteArray("n#1?100%20.png");
        QTest::newRow("empty") << QString() << QByteArray();
    }
    void picture_isWrittenAsItsBareName()
    {
        QFETCH(QString, image);
        QFETCH(QByteArray, written);
        QVERIFY(readUnit("<database_unit/>"));
        m_database->m_LocalItemsListModel->add(QStringLiteral("t"), image);
        QVERIFY(m_database->write());
        QVERIFY2(unitFile().contains("<image>" + written + "</image>"), unitFile().constData());
    }

    void textThatXmlCannotHold_leavesTheFileReadable()
    {
        QVERIFY(readUnit("<database_unit/>"));
        m_database->m_LocalItemsListModel->add(QStringLiteral("a\x01") + QChar(0xD800) + QLatin1Char('b'),
                                               QString(), QStringLiteral("\x02"));
        m_database->m_ElementItemsListModel->add(QStringLiteral("Mur"), QString());
        QVERIFY(m_database->write());
        Database again;
        QVERIFY(again.read(home()));
        QCOMPARE(titles(again.m_LocalItemsListModel), QStringList{QStringLiteral("a\uFFFD\uFFFDb")});
        QCOMPARE(titles(again.m_ElementItemsListModel), QStringList{QStringLiteral("Mur")});
    }

    void lineEndsAndTabs_areReadBack()
    {
        const QString text = QStringLiteral("\r a\r\nb\nc\rd\t\r\r ");
        QVERIFY(readUnit("<database_unit/>"));
        m_database->m_LocalItemsListModel->add(text, QString(), text);
        QVERIFY(m_database->write());
        QVERIFY2(!unitFile().contains('\r'), unitFile().constData());
        Database again;
        QVERIFY(again.read(home()));
        QCOMPARE(titles(again.m_LocalItemsListModel), QStringList{text});
        QCOMPARE(again.m_LocalItemsListModel->first()->type(), text);
    }

    void writtenLists_areReadBack_forAnyContent()
    {
        // What XML keeps letter for letter: no control characters.
        const auto text = [] {
            QString result;
            for (int code : *rc::gen::container<std::vector<int>>(
                     rc::gen::oneOf(rc::gen::inRange(0x20, 0x7F), rc::gen::inRange(0xA0, 0xD800),
                                    rc::gen::element(int('\n'), int('\r'), int('\t'), int('&')))))
                result.append(QChar(code));
            return result;
        };
        QVERIFY(rc::check("write, then read", [&] {
            Database database;
            write("database_unit.xml", "<database_unit/>");
            write("database_diagnostic.xml", diagnosticWithoutItems);
            RC_ASSERT(database.read(home()));
            const std::array<DatabaseItemListModel *, 4> lists = {
                database.m_LocalItemsListModel, database.m_ElementItemsListModel,
                database.m_SubstratItemsListModel, database.m_RevetementItemsListModel};
            for (DatabaseItemListModel *list : lists) {
                for (int i = *rc::gen::inRange(0, 4); i > 0; --i) {
                    list->add(text(), QString(), text());
                    list->last()->setActivated(*rc::gen::arbitrary<bool>());
                    list->last()->setOriginal(*rc::gen::arbitrary<bool>());
                }
            }
            RC_ASSERT(database.write());
            const QByteArray bytes = unitFile();
            Database again;
            RC_ASSERT(again.read(home()));
            RC_ASSERT(content(again) == content(database));
            RC_ASSERT(again.write());
            RC_ASSERT(unitFile() == bytes);
        }));
    }

    void fileThatCannotBeOpened_isFalseWithoutAMessage()
    {
        QVERIFY(readUnit(reference("database_unit.xml")));
        QVERIFY(QDir(home() + QStringLiteral("database")).removeRecursively());
        LogRecorder log;
        QVERIFY(!m_database->write());
        QCOMPARE(log.lines(), QStringList());
    }

    void protectedFile_isLeftAlone()
    {
        QVERIFY(readUnit(reference("database_unit.xml")));
        m_database->m_LocalItemsListModel->add(QStringLiteral("Nouveau"), QString());
        QVERIFY(QFile::setPermissions(unitPath(), QFile::ReadOwner));
        // Permissions bind everybody but the superuser, so the file is written as somebody else.
        constexpr uid_t nobody = 65534;
        if (geteuid() == 0) {
            for (const QString &path : {m_directory->path(), home() + QStringLiteral("database"), unitPath()})
                QCOMPARE(chown(QFile::encodeName(path).constData(), nobody, nobody), 0);
        }
        const pid_t child = fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            if (geteuid() == 0 && setuid(nobody) != 0)
                _exit(1);
            LogRecorder log;
            if (m_database->write())
                _exit(2);
            _exit(log.lines().isEmpty() ? 0 : 3);
        }
        int status = -1;
        QCOMPARE(waitpid(child, &status, 0), child);
        QCOMPARE(status, 0);
        QCOMPARE(unitFile(), reference("database_unit.xml"));
    }

    void fullDisk_leavesTheOldFile_andIsToldOnce()
    {
        QVERIFY(readUnit(reference("database_unit.xml")));
        m_database->m_LocalItemsListModel->add(QString(10000, QLatin1Char('x')), QString());
        rlimit before = {};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        rlimit small = before;
        small.rlim_cur = 5000;
        const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        LogRecorder log;
        const bool first = m_database->write();
        const bool second = m_database->writeIfChanged();
        const QStringList twice = log.lines();
        const bool third = m_database->write();
        const QStringList thrice = log.lines();
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, previousHandler);
        QVERIFY(!first && !second && !third);
        const QString line =
            QStringLiteral("ERROR [Halvar Controller]: File \"%1\" not saved: \"File too large\"")
                .arg(unitPath());
        QCOMPARE(twice, QStringList{line});
        QCOMPARE(thrice, (QStringList{line, line}));
        QCOMPARE(unitFile(), reference("database_unit.xml"));
        QCOMPARE(
            QDir(home() + QStringLiteral("database")).entryList(QDir::Files, QDir::Name),
            (QStringList{QStringLiteral("database_diagnostic.xml"), QStringLiteral("database_unit.xml")}));
        // The disk has room again: the write that failed is made up for.
        QVERIFY(m_database->writeIfChanged());
        QVERIFY(unitFile() != reference("database_unit.xml"));
    }

    void writeIfChanged_writesWhenBytesWouldDiffer_data()
    {
        QTest::addColumn<int>("change");
        QTest::addColumn<bool>("written");
        QTest::newRow("nothing") << 0 << false;
        QTest::newRow("item added") << 1 << true;
        QTest::newRow("item removed") << 2 << true;
        QTest::newRow("items moved") << 3 << true;
        QTest::newRow("title") << 4 << true;
        QTest::newRow("activated") << 5 << true;
        QTest::newRow("activated already") << 6 << false;
        QTest::newRow("last unit list") << 7 << true;
        QTest::newRow("diagnostic list, which is not in the file") << 8 << false;
        QTest::newRow("list cleared") << 9 << true;
    }
    void writeIfChanged_writesWhenBytesWouldDiffer()
    {
        QFETCH(int, change);
        QVERIFY(readUnit(reference("database_unit.xml")));
        QVERIFY(m_database->write());
        // A new file is another inode; keeping the old one open keeps its number from being used again.
        QFile keep(unitPath());
        QVERIFY(keep.open(QIODevice::ReadOnly));
        const ino_t before = unitInode();
        DatabaseItemListModel *locaux = m_database->m_LocalItemsListModel;
        switch (change) {
        case 1:
            locaux->add(QStringLiteral("Nouveau"), QString());
            break;
        case 2:
            locaux->remove(0);
            break;
        case 3:
            locaux->move(0, 1);
            break;
        case 4:
            locaux->first()->setTitle(QStringLiteral("Autre"));
            break;
        case 5:
            QVERIFY(locaux->activateIfTitleExist(locaux->at(1)->title()));
            break;
        case 6:
            QVERIFY(locaux->activateIfTitleExist(QStringLiteral("Cuisine")));
            break;
        case 7:
            m_database->m_RevetementItemsListModel->first()->setOriginal(false);
            break;
        case 8:
            m_database->m_NonVisiteItemsListModel->add(QStringLiteral("Nouveau"), QString());
            break;
        case 9:
            locaux->clear();
            break;
        default:
            break;
        }
        QVERIFY(m_database->writeIfChanged());
        QTEST(unitInode() != before, "written");
    }

    void itemDeletedBySomebodyElse_isNotWritten()
    {
        QVERIFY(readUnit("<database_unit><locaux>" + item("L") + item("M") + "</locaux></database_unit>"));
        delete m_database->m_LocalItemsListModel->first();
        QVERIFY(m_database->write());
        QVERIFY(!unitFile().contains(">L<"));
        QVERIFY(unitFile().contains(">M<"));
    }

    void writeIfChanged_afterRead_writes()
    {
        QVERIFY(readUnit(reference("database_unit.xml")));
        QVERIFY(QFile::remove(unitPath()));
        QVERIFY(m_database->writeIfChanged());
        QCOMPARE(unitFile(), reference("database_unit.xml"));
    }

    void writeIfChanged_afterReadingAnotherHome_writesThere()
    {
        QVERIFY(readUnit("<database_unit/>"));
        QVERIFY(m_database->write());
        const std::unique_ptr<QTemporaryDir> first = std::move(m_directory);
        m_directory = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_directory->path()).mkpath(QStringLiteral("database")));
        QVERIFY(readUnit("<database_unit/>"));
        QVERIFY(m_database->writeIfChanged());
        QVERIFY(unitFile() != QByteArray("<database_unit/>"));
    }

    void write_alwaysWrites()
    {
        QVERIFY(readUnit(reference("database_unit.xml")));
        QVERIFY(m_database->write());
        QVERIFY(QFile::remove(unitPath()));
        QVERIFY(m_database->write());
        QCOMPARE(unitFile(), reference("database_unit.xml"));
    }
};

QTEST_GUILESS_MAIN(TstDatabaseWrite)
#include "tst_database_write.moc"
