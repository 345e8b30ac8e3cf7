// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What the keys do, those of a keyboard or of the instrument: where they are, and where they lead.
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <failure.h>
#include <measure.h>
#include <measurelistmodel.h>
#include <ud.h>
#include <udlistmodel.h>

#include "eye.h"
#include "showcasetest.h"

class TstInterfaceKeys : public ShowcaseTest
{
    Q_OBJECT

private slots:
    void keysAlone_leadThroughTheScreens();
    void arrowsAlone_leadThroughAScreenWithoutAList();
    void screen_opensWithTheKeysOnItsFirstControl_data();
    void screen_opensWithTheKeysOnItsFirstControl();
    void arrows_leadThroughAFormAboveAList();
    void keys_comeBackToWhereTheyWere();
    void controlThatGivesWayToAnother_givesItTheKeys();
    void dialog_handsTheKeysBack();
    void removedRow_leavesTheKeysInTheList();
    void typing_searchesWhereverTheKeysAre();
    void focus_isShownToWhoeverUsesKeysOnly();
    void returnAfterTyping_showsNoFocus();
    void codeTypedByKeys_showsNoFocus();
    void heldKey_pressesOnce();

private:
    /// What the keys are on: its name in the sources, or its words.
    QString focused() const
    {
        const QQuickItem *item = m_showcase->window->activeFocusItem();
        return !item ? QString() : item->objectName().isEmpty() ? wordsOf(item) : item->objectName();
    }
    /// Makes it the first one of the list.
    static void makeNewest(const QString &diagnostic)
    {
        QFile file(Showcase::home() + QStringLiteral("files/%1.xml").arg(diagnostic));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(
            file.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime));
    }
    /// Two units of a kitchen, the first to be measured, the second positive by one measure.
    void addUnits();
};

void TstInterfaceKeys::addUnits()
{
    for (const char *element : {"Mur", "Porte"}) {
        auto *unit = new UD;
        unit->setLocal(QStringLiteral("Cuisine"));
        unit->setElement(QLatin1String(element));
        (*m_showcase)->uds->append(unit);
    }
    UD *measured = (*m_showcase)->uds->at(1);
    measured->setZone('B');
    measured->setStatut(UDStatutEnumClass::POSITIVE);
    measured->measures()->append(new Measure);
}

void TstInterfaceKeys::keysAlone_leadThroughTheScreens()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    const auto focused = [&showcase] {
        const QQuickItem *item = showcase.window->activeFocusItem();
        return item ? wordsOf(item) : QString();
    };
    for (int i = 0; i < 20 && focused() != QLatin1String("Diagnostics"); ++i)
        showcase.hand->key(Qt::Key_Tab);
    QCOMPARE(focused(), QStringLiteral("Diagnostics"));
    showcase.hand->key(Qt::Key_Return);
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticsScreen"));
    for (int i = 0; i < 20 && showcase.window->activeFocusItem()->property("heading").toString().isEmpty();
         ++i)
        showcase.hand->key(Qt::Key_Tab);
    const QString first = focused();
    showcase.hand->key(Qt::Key_Down);
    QVERIFY(!focused().isEmpty());
    QVERIFY(focused() != first);
    showcase.hand->key(Qt::Key_Up);
    QCOMPARE(focused(), first);
    showcase.hand->key(Qt::Key_Return);
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticScreen"));
    showcase.hand->key(Qt::Key_Back);
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticsScreen"));
    showcase.hand->key(Qt::Key_Escape);
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceKeys::arrowsAlone_leadThroughAScreenWithoutAList()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    const auto focused = [&showcase] {
        const QQuickItem *item = showcase.window->activeFocusItem();
        return item ? item->objectName() : QString();
    };
    for (int i = 0; i < 20 && focused() != QLatin1String("tile_direct"); ++i)
        showcase.hand->key(Qt::Key_Down);
    QCOMPARE(focused(), QStringLiteral("tile_direct"));
    showcase.hand->key(Qt::Key_Up);
    QCOMPARE(focused(), QStringLiteral("tile_diagnostics"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceKeys::screen_opensWithTheKeysOnItsFirstControl_data()
{
    QTest::addColumn<QVariantMap>("properties");
    QTest::addColumn<QString>("control");
    const QVariantMap none;
    QTest::newRow("AccuracyScreen") << none << "startAccuracy";
    QTest::newRow("CalibrationScreen") << none << "startCalibration";
    QTest::newRow("DirectScreen") << none << "measureSettings";
    QTest::newRow("SettingsScreen") << none << "mode0";
    QTest::newRow("DiagnosticsScreen") << none << "Cave-7";
    QTest::newRow("NewDiagnosticScreen") << none << "name";
    QTest::newRow("DiagnosticScreen") << none << "rooms";
    QTest::newRow("RoomsScreen") << none << "Cuisine";
    QTest::newRow("UnitsScreen") << QVariantMap{{QStringLiteral("room"), QStringLiteral("Cuisine")}}
                                 << "Zone A · Mur";
    QTest::newRow("UnitsScreen, empty")
        << QVariantMap{{QStringLiteral("room"), QStringLiteral("Cave")}} << "addUnit";
    QTest::newRow("UnitScreen, to be measured") << QVariantMap{{QStringLiteral("row"), 0}} << "element";
    QTest::newRow("UnitScreen, measured") << QVariantMap{{QStringLiteral("row"), 1}} << "nextZone";
    QTest::newRow("MeasureScreen") << none << "localisation1";
    QTest::newRow("PickScreen") << none << "Entrée";
    QTest::newRow("ShocksScreen") << none << "13-01-2026";
    QTest::newRow("ServiceScreen") << none << "back";
    QTest::newRow("LogScreen") << none << "logList";
}

void TstInterfaceKeys::screen_opensWithTheKeysOnItsFirstControl()
try {
    QFETCH(QVariantMap, properties);
    QFETCH(QString, control);
    Showcase &showcase = *m_showcase;
    makeNewest(QStringLiteral("Cave-7"));
    showcase.unlock();
    QCOMPARE(focused(), QStringLiteral("tile_diagnostics"));
    addUnits();
    const QString screen = QString::fromLatin1(QTest::currentDataTag()).section(QLatin1Char(','), 0, 0);
    if (screen == QLatin1String("MeasureScreen"))
        properties = {{QStringLiteral("measure"),
                       QVariant::fromValue<QObject *>(showcase->uds->at(1)->measures()->at(0))}};
    if (screen == QLatin1String("PickScreen"))
        properties = {{QStringLiteral("items"), showcase.object(QStringLiteral("rooms"))}};
    showcase.open(screen, properties);
    // A shock has its time in the zone of the instrument.
    QTRY_VERIFY2(focused().startsWith(control), qUtf8Printable(focused()));
    // They do what they are on.
    const QQuickItem *item = showcase.window->activeFocusItem();
    QVERIFY(item->isVisible() && item->isEnabled());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceKeys::arrows_leadThroughAFormAboveAList()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    addUnits();
    showcase->uds->at(1)->measures()->append(new Measure);
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 1}});
    QTRY_COMPARE(focused(), QStringLiteral("nextZone"));
    showcase.hand->find(QStringLiteral("zoneBefore"))->forceActiveFocus();
    const QStringList way{
        QStringLiteral("zoneBefore"), QStringLiteral("zoneAfter"), QStringLiteral("element"),
        QStringLiteral("substrate"),  QStringLiteral("coating"),   QStringLiteral("observation"),
        QStringLiteral("measure1"),   QStringLiteral("measure2"),  QStringLiteral("removeUnit"),
        QStringLiteral("again"),      QStringLiteral("nextZone")};
    const QRectF frame(QPointF(), QSizeF(showcase.window->size()));
    for (int i = 0; i < way.size(); ++i) {
        QCOMPARE(focused(), way.at(i));
        const QQuickItem *item = showcase.window->activeFocusItem();
        QVERIFY2(frame.contains(item->mapRectToScene(QRectF(0, 0, item->width(), item->height()))),
                 qPrintable(way.at(i)));
        showcase.hand->key(i + 1 < way.size() ? Qt::Key_Down : Qt::Key_Up);
    }
    // And back, as far as the form.
    for (int i = way.size() - 2; i >= 0; --i) {
        QCOMPARE(focused(), way.at(i));
        showcase.hand->key(Qt::Key_Up);
    }
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceKeys::keys_comeBackToWhereTheyWere()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    addUnits();
    showcase.open(QStringLiteral("UnitsScreen"), {{QStringLiteral("room"), QStringLiteral("Cuisine")}});
    QTRY_COMPARE(focused(), QStringLiteral("Zone A · Mur"));
    showcase.hand->key(Qt::Key_Down);
    QCOMPARE(focused(), QStringLiteral("Zone B · Porte"));
    showcase.hand->key(Qt::Key_Return);
    showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    QTRY_COMPARE(focused(), QStringLiteral("nextZone"));
    for (int i = 0; i < 30 && focused() != QLatin1String("coating"); ++i)
        showcase.hand->key(Qt::Key_Tab);
    showcase.hand->key(Qt::Key_Return);
    showcase.hand->waitForScreen(QStringLiteral("PickScreen"));
    showcase.hand->key(Qt::Key_Escape);
    showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    QCOMPARE(focused(), QStringLiteral("coating"));
    showcase.hand->key(Qt::Key_Escape);
    showcase.hand->waitForScreen(QStringLiteral("UnitsScreen"));
    QCOMPARE(focused(), QStringLiteral("Zone B · Porte"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceKeys::controlThatGivesWayToAnother_givesItTheKeys()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("AccuracyScreen"));
    QTRY_COMPARE(focused(), QStringLiteral("startAccuracy"));
    showcase.hand->key(Qt::Key_Return);
    QCOMPARE(showcase->acquisitionMode(), AcquisitionModeEnumClass::ACCURACY);
    QTRY_COMPARE(focused(), QStringLiteral("stopAccuracy"));
    showcase.hand->waitForScreen(QStringLiteral("AccuracyScreen"));
    showcase.hand->key(Qt::Key_Return);
    QCOMPARE(showcase->acquisitionMode(), AcquisitionModeEnumClass::NONE);
    QTRY_COMPARE(focused(), QStringLiteral("startAccuracy"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceKeys::dialog_handsTheKeysBack()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    addUnits();
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 1}});
    QTRY_COMPARE(focused(), QStringLiteral("nextZone"));
    for (int i = 0; i < 30 && focused() != QLatin1String("removeUnit"); ++i)
        showcase.hand->key(Qt::Key_Tab);
    QCOMPARE(focused(), QStringLiteral("removeUnit"));
    for (const Qt::Key answer : {Qt::Key_Return, Qt::Key_Escape}) {
        showcase.hand->key(Qt::Key_Return);
        QTRY_COMPARE(focused(), QStringLiteral("no"));
        showcase.hand->key(answer);
        QTRY_COMPARE(focused(), QStringLiteral("removeUnit"));
        QVERIFY(showcase.window->activeFocusItem()->property("visualFocus").toBool());
        showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    }
    QCOMPARE(showcase->uds->count(), 2);
    // An answer that leads to another screen takes them along.
    showcase.hand->key(Qt::Key_Return);
    QTRY_COMPARE(focused(), QStringLiteral("no"));
    for (int i = 0; i < 5 && focused() != QLatin1String("yes"); ++i)
        showcase.hand->key(Qt::Key_Tab);
    showcase.hand->key(Qt::Key_Return);
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    QCOMPARE(showcase->uds->count(), 1);
    QTRY_COMPARE(focused(), QStringLiteral("tile_diagnostics"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceKeys::removedRow_leavesTheKeysInTheList()
try {
    Showcase &showcase = *m_showcase;
    const QString files = Showcase::home() + QStringLiteral("files/");
    for (const char *name : {"Anse", "Bron", "Caluire"})
        QVERIFY(QFile::copy(files + QStringLiteral("Cave-7.xml"),
                            files + QLatin1String(name) + QStringLiteral(".xml")));
    showcase.unlock();
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    QQuickItem *list = itemNamed(QStringLiteral("diagnosticList"));
    const int count = list->property("count").toInt();
    QVERIFY(count > 3);
    for (int i = 0; i < 2; ++i)
        showcase.hand->key(Qt::Key_Down);
    const QString third = focused();
    showcase.hand->key(Qt::Key_Up);
    const QString second = focused();
    QVERIFY(second != third);
    showcase.hand->key(Qt::Key_Tab);
    QCOMPARE(focused(), QStringLiteral("remove"));
    showcase.hand->key(Qt::Key_Return);
    QTRY_COMPARE(focused(), QStringLiteral("no"));
    for (int i = 0; i < 5 && focused() != QLatin1String("yes"); ++i)
        showcase.hand->key(Qt::Key_Tab);
    showcase.hand->key(Qt::Key_Return);
    QTRY_COMPARE(list->property("count").toInt(), count - 1);
    QTRY_COMPARE(focused(), third);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceKeys::typing_searchesWhereverTheKeysAre()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("RoomsScreen"));
    QTRY_COMPARE(focused(), QStringLiteral("addRoom"));
    showcase.hand->key(Qt::Key_Return);
    showcase.hand->waitForScreen(QStringLiteral("PickScreen"));
    showcase.hand->type(QStringLiteral("sej"));
    QCOMPARE(itemNamed(QStringLiteral("search"))->property("text").toString(), QStringLiteral("sej"));
    QCOMPARE(focused(), QStringLiteral("search"));
    QCOMPARE(itemNamed(QStringLiteral("pickList"))->property("count").toInt(), 1);
    showcase.hand->key(Qt::Key_Down);
    QCOMPARE(focused(), QStringLiteral("Séjour"));
    showcase.hand->key(Qt::Key_Return);
    showcase.hand->waitForScreen(QStringLiteral("UnitsScreen"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceKeys::focus_isShownToWhoeverUsesKeysOnly()
try {
    Showcase &showcase = *m_showcase;
    makeNewest(QStringLiteral("Cave-7"));
    showcase.unlock();
    showcase.hand->tap(QStringLiteral("Diagnostics"));
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticsScreen"));
    QTRY_COMPARE(focused(), QStringLiteral("Cave-7"));
    const auto shown = [&showcase] {
        const QQuickItem *item = showcase.window->activeFocusItem();
        return item->property("focused").toBool() || item->property("visualFocus").toBool();
    };
    QVERIFY(!shown());
    showcase.hand->key(Qt::Key_Down);
    QVERIFY(shown());
    showcase.hand->key(Qt::Key_Escape);
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    QVERIFY(shown());
    showcase.hand->tap(QStringLiteral("Calibrage"));
    showcase.hand->waitForScreen(QStringLiteral("CalibrationScreen"));
    QTRY_COMPARE(focused(), QStringLiteral("startCalibration"));
    QVERIFY(!shown());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceKeys::heldKey_pressesOnce()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    const auto repeat = [&showcase] {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(showcase.window, &event);
        showcase.hand->pause(20);
    };
    QQuickItem *tile = showcase.hand->find(QStringLiteral("tile_service"));
    tile->forceActiveFocus();
    repeat();
    QCOMPARE(showcase.hand->screen(), QStringLiteral("HomeScreen"));
    showcase.hand->key(Qt::Key_Return);
    showcase.hand->waitForScreen(QStringLiteral("ServiceScreen"));
    showcase.hand->find(QStringLiteral("log"))->forceActiveFocus();
    repeat();
    QCOMPARE(showcase.hand->screen(), QStringLiteral("ServiceScreen"));
    showcase.open(QStringLiteral("DiagnosticScreen"));
    showcase.hand->find(QStringLiteral("coulures"))->forceActiveFocus();
    repeat();
    QVERIFY(!showcase->property("coulures").toBool());
    showcase.hand->key(Qt::Key_Return);
    QVERIFY(showcase->property("coulures").toBool());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceKeys::returnAfterTyping_showsNoFocus()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    addUnits();
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    showcase.hand->fill(QStringLiteral("observation"), QStringLiteral("Derrière le radiateur"));
    showcase.hand->key(Qt::Key_Return);
    QCOMPARE(focused(), QStringLiteral("removeUnit"));
    QVERIFY(!showcase.window->activeFocusItem()->property("visualFocus").toBool());
    QCOMPARE(showcase->uds->at(0)->observation(), QStringLiteral("Derrière le radiateur"));
    QQuickItem *row = itemNamed(QStringLiteral("element"));
    row->forceActiveFocus();
    QVERIFY(!row->property("focused").toBool());
    showcase.hand->key(Qt::Key_Down);
    QVERIFY(itemNamed(QStringLiteral("substrate"))->property("focused").toBool());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceKeys::codeTypedByKeys_showsNoFocus()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    QTRY_COMPARE(focused(), QStringLiteral("tile_diagnostics"));
    const QQuickItem *tile = showcase.window->activeFocusItem();
    QVERIFY(!tile->property("visualFocus").toBool());
    showcase.hand->key(Qt::Key_Down);
    QVERIFY(showcase.window->activeFocusItem() != tile);
    QVERIFY(showcase.window->activeFocusItem()->property("visualFocus").toBool());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

QTEST_MAIN(TstInterfaceKeys)
#include "tst_interface_keys.moc"
