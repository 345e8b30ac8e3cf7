// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The diagnostics on file and their rooms: names, damaged files, copies, rooms typed and found.
#include <QDir>
#include <QFile>
#include <QQuickWindow>
#include <QtTest>

#include <databaseitemlistmodel.h>
#include <failure.h>
#include <halvar-error.h>
#include <ud.h>
#include <udlistmodel.h>

#include "eye.h"
#include "showcasetest.h"

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure{file.errorString()};
    return file.readAll();
}

} // namespace

class TstInterfaceDiagnostics : public ShowcaseTest
{
    Q_OBJECT

private slots:
    void listOfDiagnostics_followsTheirDirectoryWhileItIsShown();
    void badNameOfADiagnostic_isRefusedWithItsReason_data();
    void badNameOfADiagnostic_isRefusedWithItsReason();
    void damagedFile_isOpenedOnlyWhenConfirmed();
    void copyOfADiagnostic_isNotSavedOverIt_data();
    void copyOfADiagnostic_isNotSavedOverIt();
    void withoutRoomsOrReferenceLists_theFirstRoomIsTyped();
    void room_isFoundWithoutAccentsAndOnlyWhenActivated();
    void newRoom_isKeptInTheDatabase();
};

void TstInterfaceDiagnostics::listOfDiagnostics_followsTheirDirectoryWhileItIsShown()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    QSignalSpy changed(showcase.object(QStringLiteral("diagnosticFiles")).value<QObject *>(),
                       SIGNAL(changed()));
    showcase->setFileName(QStringLiteral("Grange"));
    showcase->saveFile();
    showcase.hand->pause(100);
    QCOMPARE(changed.count(), 0);
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    showcase.hand->find(QStringLiteral("Grange"));
    showcase->setFileName(QStringLiteral("Moulin"));
    showcase->saveFile();
    showcase.hand->find(QStringLiteral("Moulin"));
    showcase.hand->key(Qt::Key_Escape);
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    changed.clear();
    showcase->saveFile();
    showcase.hand->pause(100);
    QCOMPARE(changed.count(), 0);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceDiagnostics::badNameOfADiagnostic_isRefusedWithItsReason_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << ""
                           << "Donnez un nom";
    QTest::newRow("blanks") << "   "
                            << "Donnez un nom";
    QTest::newRow("slash") << "../../etc/passwd"
                           << "ne peut pas contenir";
    QTest::newRow("500 characters") << QString(500, QLatin1Char('a')) << "trop long";
    // Fewer than 255 characters, but not bytes.
    QTest::newRow("130 accents") << QString(130, QChar(0xe9)) << "trop long";
    QTest::newRow("there already") << "Cave-7"
                                   << "porte déjà ce nom";
}

void TstInterfaceDiagnostics::badNameOfADiagnostic_isRefusedWithItsReason()
try {
    QFETCH(QString, name);
    QFETCH(QString, reason);
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("NewDiagnosticScreen"));
    showcase.hand->fill(QStringLiteral("name"), name);
    showcase.hand->tap(QStringLiteral("create"));
    QCOMPARE(showcase.hand->screen(), QStringLiteral("NewDiagnosticScreen"));
    QVERIFY(isSaid(showcase.window, reason));
    QCOMPARE(showcase->fileName(), QString());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceDiagnostics::damagedFile_isOpenedOnlyWhenConfirmed()
try {
    Showcase &showcase = *m_showcase;
    QFile whole(Showcase::home() + QStringLiteral("files/Cave-7.xml"));
    QVERIFY(whole.open(QIODevice::ReadOnly));
    QFile cut(Showcase::home() + QStringLiteral("files/Coupure.xml"));
    QVERIFY(cut.open(QIODevice::WriteOnly));
    cut.write(whole.read(2500));
    cut.close();
    showcase.unlock();
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    showcase.hand->tap(QStringLiteral("Coupure"));
    showcase.hand->find(QStringLiteral("yes"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("n'est pas lisible en entier")));
    showcase.hand->tap(QStringLiteral("no"));
    showcase.hand->pause(50);
    QCOMPARE(showcase.hand->screen(), QStringLiteral("DiagnosticsScreen"));
    QCOMPARE(showcase->uds->count(), 0);
    showcase.hand->tap(QStringLiteral("Coupure"));
    showcase.hand->tap(QStringLiteral("yes"));
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticScreen"));
    QVERIFY(showcase->uds->count() > 0);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceDiagnostics::copyOfADiagnostic_isNotSavedOverIt_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QString>("listed");
    QTest::addColumn<QString>("name");
    QTest::newRow("damaged copy") << "Cave-7.xml.damaged" << 2500 << "Cave-7.xml.damaged"
                                  << "Cave-7 (récupéré)";
    QTest::newRow("second damaged copy") << "Cave-7.xml.damaged.1" << 2500 << "Cave-7.xml.damaged.1"
                                         << "Cave-7 (récupéré)";
    QTest::newRow("whole copy") << "Copie.xml" << 100000 << "Copie"
                                << "Copie";
}

void TstInterfaceDiagnostics::copyOfADiagnostic_isNotSavedOverIt()
try {
    QFETCH(QString, file);
    QFETCH(int, bytes);
    QFETCH(QString, listed);
    QFETCH(QString, name);
    Showcase &showcase = *m_showcase;
    const QString files = Showcase::home() + QStringLiteral("files/");
    const QByteArray original = contentOf(files + QStringLiteral("Cave-7.xml"));
    const QByteArray content = original.left(bytes);
    QFile copy(files + file);
    QVERIFY(copy.open(QIODevice::WriteOnly));
    QCOMPARE(copy.write(content), qint64(content.size()));
    copy.close();
    showcase.unlock();
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    showcase.hand->tap(listed);
    if (content != original)
        showcase.hand->tap(QStringLiteral("yes"));
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticScreen"));
    QCOMPARE(showcase->fileName(), name);
    QVERIFY(showcase->uds->count() > 0);
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticsScreen"));
    QCOMPARE(contentOf(files + QStringLiteral("Cave-7.xml")), original);
    QVERIFY(QFile::exists(files + name + QStringLiteral(".xml")));
    if (content != original) {
        QCOMPARE(contentOf(files + file), content);
        QCOMPARE(QDir(files).entryList({QStringLiteral("*.damaged*")}), QStringList{file});
        // What was recovered before is not replaced either.
        showcase.hand->tap(listed);
        showcase.hand->tap(QStringLiteral("yes"));
        showcase.hand->waitForScreen(QStringLiteral("DiagnosticScreen"));
        QCOMPARE(showcase->fileName(), QStringLiteral("Cave-7 (récupéré 2)"));
    }
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceDiagnostics::withoutRoomsOrReferenceLists_theFirstRoomIsTyped()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.database.m_LocalItemsListModel->clear();
    showcase.open(QStringLiteral("RoomsScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("Aucun local encore.")));
    QCOMPARE(complaints(showcase.window), QStringList());
    showcase.hand->tap(QStringLiteral("addRoom"));
    showcase.hand->waitForScreen(QStringLiteral("PickScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("Cette liste est vide.")));
    showcase.hand->fill(QStringLiteral("search"), QStringLiteral("Grange"));
    showcase.hand->tap(QStringLiteral("addNew"));
    showcase.hand->waitForScreen(QStringLiteral("UnitsScreen"));
    showcase.hand->tap(QStringLiteral("addUnit"));
    showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    QCOMPARE(showcase->uds->at(0)->local(), QStringLiteral("Grange"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceDiagnostics::room_isFoundWithoutAccentsAndOnlyWhenActivated()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("PickScreen"),
                  {{QStringLiteral("items"), showcase.object(QStringLiteral("rooms"))}});
    showcase.hand->fill(QStringLiteral("search"), QStringLiteral("DEGAG"));
    showcase.hand->find(QStringLiteral("Dégagement"));
    QVERIFY(!showcase.hand->see(QStringLiteral("Séjour")));
    // Put aside in the sample database.
    showcase.hand->fill(QStringLiteral("search"), QStringLiteral("Chaufferie"));
    showcase.hand->find(QStringLiteral("Ajouter « Chaufferie »"));
    QVERIFY(!showcase.hand->see(QStringLiteral("Chaufferie")));
    const int before = showcase.database.m_LocalItemsListModel->count();
    showcase.hand->tap(QStringLiteral("addNew"));
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    // Taken out again, not doubled.
    QCOMPARE(showcase.database.m_LocalItemsListModel->count(), before);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceDiagnostics::newRoom_isKeptInTheDatabase()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("RoomsScreen"));
    showcase.hand->tap(QStringLiteral("addRoom"));
    showcase.hand->waitForScreen(QStringLiteral("PickScreen"));
    showcase.hand->fill(QStringLiteral("search"), QStringLiteral("Atelier d'été"));
    showcase.hand->tap(QStringLiteral("addNew"));
    showcase.hand->waitForScreen(QStringLiteral("UnitsScreen"));
    QFile file(Showcase::home() + QStringLiteral("database/database_unit.xml"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("Atelier d'été"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

QTEST_MAIN(TstInterfaceDiagnostics)
#include "tst_interface_diagnostics.moc"
