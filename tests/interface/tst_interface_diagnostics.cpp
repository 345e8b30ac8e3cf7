// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The diagnostics on file and their rooms: names, damaged files, copies, rooms typed and found.
#include <QDir>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

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

/// Adds 2,000 diagnostics, a second apart: "Lot 0" is the newest.
void addFiles()
{
    const QString files = Showcase::home() + QStringLiteral("files/");
    const QDateTime newest = QDateTime::currentDateTime().addDays(-1);
    for (int i = 0; i < 2000; ++i) {
        QFile file(files + QStringLiteral("Lot %1.xml").arg(i));
        if (!QFile::copy(files + QStringLiteral("Cave-7.xml"), file.fileName())
            || !file.open(QIODevice::ReadWrite)
            || !file.setFileTime(newest.addSecs(-i), QFileDevice::FileModificationTime))
            throw Failure{file.errorString()};
    }
}

QString focusedRow(const QQuickWindow *window)
{
    const QQuickItem *item = window->activeFocusItem();
    return item ? item->property("heading").toString() : QString();
}

} // namespace

class TstInterfaceDiagnostics : public ShowcaseTest
{
    Q_OBJECT

private slots:
    void listOfDiagnostics_followsTheirDirectoryWhileItIsShown();
    void fileThatComesOrGoes_leavesTheListWhereItIsRead();
    void fileThatComes_isShownToWhoeverIsAtTheTop();
    void diagnosticThatWasLeft_isTheChosenOneInSight();
    void lastFileThatGoes_leavesTheListSayingSo_data();
    void lastFileThatGoes_leavesTheListSayingSo();
    void badNameOfADiagnostic_isRefusedWithItsReason_data();
    void badNameOfADiagnostic_isRefusedWithItsReason();
    void damagedFile_isOpenedOnlyWhenConfirmed();
    void copyOfADiagnostic_isNotSavedOverIt_data();
    void copyOfADiagnostic_isNotSavedOverIt();
    void withoutRoomsOrReferenceLists_theFirstRoomIsTyped();
    void room_isFoundWithoutAccentsAndOnlyWhenActivated();
    void newRoom_isKeptInTheDatabase();

private:
    QQuickItem *standInTheMiddle();
};

/// Opens the list of 2,000 diagnostics, with the keys on one in its middle.
QQuickItem *TstInterfaceDiagnostics::standInTheMiddle()
{
    Showcase &showcase = *m_showcase;
    addFiles();
    showcase.unlock();
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    QQuickItem *list = itemNamed(QStringLiteral("diagnosticList"));
    showcase.hand->waitFor([&] { return list->property("count").toInt() > 2000; },
                           QStringLiteral("the files are to be listed"));
    list->setProperty("currentIndex", 1000);
    showcase.hand->pause(50);
    list->property("currentItem").value<QQuickItem *>()->forceActiveFocus();
    return list;
}

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

void TstInterfaceDiagnostics::fileThatComesOrGoes_leavesTheListWhereItIsRead()
try {
    Showcase &showcase = *m_showcase;
    const QString files = Showcase::home() + QStringLiteral("files/");
    QQuickItem *list = standInTheMiddle();
    const QString name = focusedRow(showcase.window);
    const auto place = [&] { return showcase.window->activeFocusItem()->mapToScene(QPointF()).y(); };
    const double before = place();
    QSignalSpy changed(showcase.object(QStringLiteral("diagnosticFiles")).value<QObject *>(),
                       SIGNAL(changed()));
    const auto look = [&](int count, const char *what) {
        showcase.hand->waitFor([&] { return list->property("count").toInt() == count; }, QLatin1String(what));
        showcase.hand->pause(50);
        QVERIFY2(focusedRow(showcase.window) == name, qUtf8Printable(focusedRow(showcase.window)));
        QVERIFY2(qAbs(place() - before) < 1, what);
        QCOMPARE(complaints(showcase.window), QStringList());
    };
    const int count = list->property("count").toInt();
    QVERIFY(QFile::copy(files + QStringLiteral("Lot 7.xml"), files + QStringLiteral("Nouveau.xml")));
    look(count + 1, "one came above");
    QVERIFY(QFile::remove(files + QStringLiteral("Lot 3.xml")));
    look(count, "one above went");
    QVERIFY(QFile::remove(files + QStringLiteral("Lot 1990.xml")));
    look(count - 1, "one below went");
    // The oldest of all is written anew.
    changed.clear();
    QVERIFY(QFile::rename(files + QStringLiteral("Nouveau.xml"), files + QStringLiteral("Autre.xml")));
    QTRY_VERIFY(!changed.isEmpty());
    look(count - 1, "one above got another name");
    QVERIFY(QFile::remove(files + name + QStringLiteral(".xml")));
    showcase.hand->waitFor([&] { return list->property("count").toInt() == count - 2; },
                           QStringLiteral("the chosen one is to go"));
    showcase.hand->pause(50);
    QVERIFY2(focusedRow(showcase.window).startsWith(QLatin1String("Lot ")),
             qUtf8Printable(focusedRow(showcase.window)));
    QVERIFY2(qAbs(place() - before) < 100, "the row beside the one that went");
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceDiagnostics::fileThatComes_isShownToWhoeverIsAtTheTop()
try {
    Showcase &showcase = *m_showcase;
    const QString files = Showcase::home() + QStringLiteral("files/");
    addFiles();
    showcase.unlock();
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    showcase.hand->find(QStringLiteral("Lot 0"));
    const QString name = focusedRow(showcase.window);
    QVERIFY(!name.isEmpty());
    QVERIFY(QFile::copy(files + QStringLiteral("Lot 7.xml"), files + QStringLiteral("Grange.xml")));
    showcase.hand->waitFor([&] { return isSaid(showcase.window, QStringLiteral("Grange")); },
                           QStringLiteral("the new one is to be shown"));
    showcase.hand->pause(50);
    QVERIFY(itemNamed(QStringLiteral("diagnosticList"))->property("atYBeginning").toBool());
    QCOMPARE(focusedRow(showcase.window), name);
    QCOMPARE(complaints(showcase.window), QStringList());

    // Keys that are on the last row in sight stay in sight.
    const QQuickItem *list = itemNamed(QStringLiteral("diagnosticList"));
    const auto below = [&] {
        const QQuickItem *row = showcase.window->activeFocusItem();
        return row->mapToItem(list, QPointF()).y() + row->height() - list->height();
    };
    for (int i = 0; i < 20 && below() < -80; ++i)
        showcase.hand->key(Qt::Key_Down);
    QVERIFY(list->property("atYBeginning").toBool());
    const QString last = focusedRow(showcase.window);
    const int count = list->property("count").toInt();
    QVERIFY(QFile::copy(files + QStringLiteral("Lot 7.xml"), files + QStringLiteral("Moulin.xml")));
    showcase.hand->waitFor([&] { return list->property("count").toInt() == count + 1; },
                           QStringLiteral("the next one is to be listed"));
    showcase.hand->pause(50);
    QCOMPARE(focusedRow(showcase.window), last);
    QVERIFY2(below() <= 0, qPrintable(QString::number(below())));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceDiagnostics::diagnosticThatWasLeft_isTheChosenOneInSight()
try {
    Showcase &showcase = *m_showcase;
    QQuickItem *list = standInTheMiddle();
    const QString name = focusedRow(showcase.window);
    showcase.hand->key(Qt::Key_Return);
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticScreen"));
    QCOMPARE(showcase->fileName(), name);
    showcase.hand->key(Qt::Key_Escape);
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticsScreen"));
    showcase.hand->pause(50);
    QCOMPARE(focusedRow(showcase.window), name);
    // Wherever it stands now.
    const double y = showcase.window->activeFocusItem()->mapToItem(list, QPointF()).y();
    QVERIFY2(y >= 0 && y < list->height() - 60, qPrintable(QString::number(y)));
    QCOMPARE(complaints(showcase.window), QStringList());

    // Opened anew, the list begins with the newest.
    showcase.hand->key(Qt::Key_Escape);
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    showcase->setFileName(QStringLiteral("Grange"));
    showcase->saveFile();
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    showcase.hand->pause(50);
    QCOMPARE(focusedRow(showcase.window), QStringLiteral("Grange"));
    QVERIFY(itemNamed(QStringLiteral("diagnosticList"))->property("atYBeginning").toBool());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceDiagnostics::lastFileThatGoes_leavesTheListSayingSo_data()
{
    QTest::addColumn<bool>("beforeTheListOpens");
    QTest::newRow("before the list opens") << true;
    QTest::newRow("while it is shown") << false;
}

void TstInterfaceDiagnostics::lastFileThatGoes_leavesTheListSayingSo()
try {
    QFETCH(bool, beforeTheListOpens);
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    const auto removeAll = [] {
        const QDir files(Showcase::home() + QStringLiteral("files"));
        const QStringList names = files.entryList(QDir::Files);
        QVERIFY(!names.isEmpty());
        for (const QString &name : names)
            QVERIFY(QFile::remove(files.filePath(name)));
    };
    if (beforeTheListOpens)
        removeAll();
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    if (!beforeTheListOpens)
        removeAll();
    const QQuickItem *list = itemNamed(QStringLiteral("diagnosticList"));
    showcase.hand->waitFor([&] { return list->property("count").toInt() == 0; },
                           QStringLiteral("the list is to be empty"));
    showcase.hand->pause(50);
    const QQuickItem *text = itemNamed(QStringLiteral("emptyText"));
    const QRectF place = text->mapRectToItem(list, QRectF(QPointF(), text->size()));
    QVERIFY2(qAbs(place.center().y() - list->height() / 2) < 2,
             qPrintable(QStringLiteral("at %1 of %2").arg(place.y()).arg(list->height())));
    QCOMPARE(complaints(showcase.window), QStringList());
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
