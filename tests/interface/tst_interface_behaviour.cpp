// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What the screens do with what operators, files and the instrument do to them.
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtMath>
#include <QtTest>

#include <QsLog.h>

#include <databaseitemlistmodel.h>
#include <failure.h>
#include <halvar-error.h>
#include <measure.h>
#include <measurelistmodel.h>
#include <nap/records.h>
#include <pin.h>
#include <ud.h>
#include <udlistmodel.h>

#include "eye.h"
#include "showcase.h"

namespace nap = com::halvar::nap;

namespace {

QQuickItem *itemNamed(const Showcase &showcase, const QString &name)
{
    const QList<QQuickItem *> items = visibleItems(showcase.window->contentItem());
    for (QQuickItem *item : items) {
        if (item->objectName() == name)
            return item;
    }
    throw Failure{QStringLiteral("there is no %1").arg(name)};
}

/// The delegates of a list that exist, shown or put aside for the next row.
int delegatesOf(QQuickItem *list)
{
    auto *content = list->property("contentItem").value<QQuickItem *>();
    int count = 0;
    const QList<QQuickItem *> children = content->childItems();
    for (const QQuickItem *child : children)
        count += child->inherits("QQuickAbstractButton") ? 1 : 0;
    return count;
}

QPoint middleOf(const QQuickItem *item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure{file.errorString()};
    return file.readAll();
}

/// WCAG's relative luminance, and the contrast of two colours, 1 to 21.
double luminance(const QColor &color)
{
    const auto channel = [](double c) { return c <= 0.03928 ? c / 12.92 : qPow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF())
        + 0.0722 * channel(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (qMax(la, lb) + 0.05) / (qMin(la, lb) + 0.05);
}

} // namespace

class TstInterfaceBehaviour : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void temperatureAndVoltage_areTrueWhicheverChanges();
    void threeWrongCodes_restTheKeypad();
    void disabledPin_takesNoDigit();
    void doubleTap_opensOneScreenOnly();
    void doubleTap_isOneTap_data();
    void doubleTap_isOneTap();
    void doubleTap_answersNoDialog();
    void keysAlone_leadThroughTheScreens();
    void arrowsAlone_leadThroughAScreenWithoutAList();
    void heldKey_pressesOnce();
    void listOfDiagnostics_followsTheirDirectoryWhileItIsShown();
    void languageWithoutATranslation_hasTheFrenchPlurals();
    void textInANumberField_isRefusedAndSaid();
    void pastedText_isTakenOnlyAsANumberInItsLimits();
    void withoutRoomsOrReferenceLists_theFirstRoomIsTyped();
    void badNameOfADiagnostic_isRefusedWithItsReason_data();
    void badNameOfADiagnostic_isRefusedWithItsReason();
    void damagedFile_isOpenedOnlyWhenConfirmed();
    void copyOfADiagnostic_isNotSavedOverIt_data();
    void copyOfADiagnostic_isNotSavedOverIt();
    void room_isFoundWithoutAccentsAndOnlyWhenActivated();
    void newRoom_isKeptInTheDatabase();
    void unitWithAResult_putsTheTriggerAside();
    void stateOfConservation_isShownWhereverTheMeasureIs();
    void negativeConcentration_hasAMinusSign();
    void tenThousandUnits_needNoMoreDelegatesThanFit();
    void everyLongList_makesNoMoreDelegatesThanFit_data();
    void everyLongList_makesNoMoreDelegatesThanFit();
    void colours_keepTheirContrast();

private:
    std::unique_ptr<Showcase> m_showcase;
};

void TstInterfaceBehaviour::init()
{
    Showcase::fillHome();
    m_showcase = std::make_unique<Showcase>();
    m_showcase->settleAtOnce();
}

void TstInterfaceBehaviour::cleanup()
{
    const QStringList warnings = m_showcase->watch.warnings();
    m_showcase.reset();
    QVERIFY2(warnings.isEmpty(), qUtf8Printable(warnings.join(QLatin1Char('\n'))));
}

void TstInterfaceBehaviour::temperatureAndVoltage_areTrueWhicheverChanges()
{
    Showcase &showcase = *m_showcase;
    const auto tell = [&showcase](double temperature, double voltage) {
        nap::AcqConditions conditions;
        conditions.set_readyForAcquisition(true);
        conditions.set_temperature(temperature);
        conditions.set_acceleratingVoltage(voltage);
        showcase->nap_AcqConditions(conditions);
    };
    tell(21, 1200);
    QVERIFY(isSaid(showcase.window, QStringLiteral("21 °C · 1200 V")));
    tell(27, 1200);
    QVERIFY(isSaid(showcase.window, QStringLiteral("27 °C · 1200 V")));
    tell(27, 1188);
    QVERIFY(isSaid(showcase.window, QStringLiteral("27 °C · 1188 V")));
}

void TstInterfaceBehaviour::threeWrongCodes_restTheKeypad()
try {
    Showcase &showcase = *m_showcase;
    showcase->waitingForGo();
    showcase.hand->waitForScreen(QStringLiteral("PinScreen"));
    for (int attempt = 0; attempt < 3; ++attempt) {
        for (int digit = 0; digit < 5; ++digit)
            showcase.hand->tap(QStringLiteral("9"));
        QVERIFY(
            isSaid(showcase.window, QStringLiteral("Code refusé. Essais restants : %1").arg(2 - attempt)));
        QTRY_COMPARE(showcase->pin->property("nbDigits").toInt(), 0);
    }
    QTRY_VERIFY(isSaid(showcase.window, QStringLiteral("Saisie bloquée")));
    QVERIFY(!showcase.hand->see(QStringLiteral("9")));
    showcase.hand->key(Qt::Key_9);
    QCOMPARE(showcase->pin->property("nbDigits").toInt(), 0);
    // The keypad comes back by itself, and the right code is taken.
    showcase.hand->find(QStringLiteral("9"));
    for (const char *digit : {"1", "2", "3", "4", "5"})
        showcase.hand->tap(QLatin1String(digit));
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::disabledPin_takesNoDigit()
try {
    Showcase &showcase = *m_showcase;
    showcase->waitingForGo();
    showcase.hand->waitForScreen(QStringLiteral("PinScreen"));
    showcase->pin->setDisabled(true);
    QVERIFY(isSaid(showcase.window, QStringLiteral("Saisie bloquée")));
    QVERIFY(!showcase.hand->see(QStringLiteral("1")));
    showcase->pin->enable();
    showcase.hand->tap(QStringLiteral("1"));
    QCOMPARE(showcase->pin->property("nbDigits").toInt(), 1);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::doubleTap_opensOneScreenOnly()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.settleIn(250);
    QQuickItem *tile = showcase.hand->find(QStringLiteral("Diagnostics"));
    const QPoint point = tile->mapToScene(QPointF(tile->width() / 2, tile->height() / 2)).toPoint();
    QTest::mouseClick(showcase.window, Qt::LeftButton, {}, point);
    QTest::mouseClick(showcase.window, Qt::LeftButton, {}, point);
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticsScreen"));
    showcase.hand->pause(100);
    // The second tap would have opened what now lies there.
    QCOMPARE(showcase.hand->screen(), QStringLiteral("DiagnosticsScreen"));
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::doubleTap_isOneTap_data()
{
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("screenAfter");
    QTest::addColumn<int>("units");
    QTest::newRow("room") << "RoomsScreen"
                          << "Cuisine"
                          << "UnitsScreen" << 1;
    QTest::newRow("new unit") << "UnitsScreen"
                              << "addUnit"
                              << "UnitScreen" << 2;
    QTest::newRow("next zone") << "UnitScreen"
                               << "nextZone"
                               << "UnitScreen" << 2;
    QTest::newRow("remove unit, confirmed") << "UnitScreen"
                                            << "removeUnit/yes"
                                            << "HomeScreen" << 0;
    QTest::newRow("remove diagnostic, declined") << "DiagnosticsScreen"
                                                 << "Supprimer « Cave-7 »/no"
                                                 << "DiagnosticsScreen" << 1;
    QTest::newRow("back") << "ServiceScreen"
                          << "back"
                          << "HomeScreen" << 1;
    QTest::newRow("start of a check, where its stop comes to lie") << "AccuracyScreen"
                                                                   << "startAccuracy"
                                                                   << "AccuracyScreen" << 1;
    QTest::newRow("start of a calibration") << "CalibrationScreen"
                                            << "startCalibration"
                                            << "CalibrationScreen" << 1;
}

void TstInterfaceBehaviour::doubleTap_isOneTap()
try {
    QFETCH(QString, screen);
    QFETCH(QString, control);
    QFETCH(QString, screenAfter);
    QFETCH(int, units);
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    // The pause that an operator has.
    showcase.settleIn(250);
    auto *unit = new UD;
    unit->setLocal(QStringLiteral("Cuisine"));
    unit->setStatut(UDStatutEnumClass::POSITIVE);
    showcase->uds->append(unit);
    QVariantMap properties;
    if (screen == QLatin1String("UnitScreen"))
        properties.insert(QStringLiteral("row"), 0);
    else if (screen == QLatin1String("UnitsScreen"))
        properties.insert(QStringLiteral("room"), QStringLiteral("Cuisine"));
    showcase.open(screen, properties);

    const QStringList steps = control.split(QLatin1Char('/'));
    for (const QString &step : steps) {
        showcase.hand->waitFor([&] { return !showcase.window->property("settling").toBool(); },
                               QStringLiteral("input is to be taken"));
        showcase.hand->find(step);
        showcase.hand->pause(60); // it has its place
        QQuickItem *item = showcase.hand->find(step);
        const QPoint point = item->mapToScene(QPointF(item->width() / 2, item->height() * 0.8)).toPoint();
        QTest::mouseClick(showcase.window, Qt::LeftButton, {}, point);
        showcase.hand->pause(60);
        QTest::mouseClick(showcase.window, Qt::LeftButton, {}, point);
    }
    showcase.hand->pause(100);
    showcase.hand->waitForScreen(screenAfter);
    QCOMPARE(showcase->uds->count(), units);
    // Still running: nobody stopped it.
    if (screen == QLatin1String("AccuracyScreen"))
        QCOMPARE(showcase->acquisitionMode(), AcquisitionModeEnumClass::ACCURACY);
    if (screen == QLatin1String("CalibrationScreen"))
        QCOMPARE(showcase->acquisitionMode(), AcquisitionModeEnumClass::CALIBRATION);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::doubleTap_answersNoDialog()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    showcase.settleIn(250);
    const QPoint bin = middleOf(showcase.hand->find(QStringLiteral("Supprimer « Cave-7 »")));
    showcase.hand->tap(QStringLiteral("Supprimer « Cave-7 »"));
    const QPoint yes = middleOf(showcase.hand->find(QStringLiteral("yes")));
    showcase.hand->tap(QStringLiteral("no"));
    showcase.hand->pause(300);

    // The second tap, or the key that is still pressed, comes to the dialog.
    QTest::mouseClick(showcase.window, Qt::LeftButton, {}, bin);
    QTest::mouseClick(showcase.window, Qt::LeftButton, {}, yes);
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Return, Qt::Key_Escape})
        showcase.hand->key(key);
    QVERIFY(showcase.hand->see(QStringLiteral("yes")));
    QVERIFY(QFile::exists(Showcase::home() + QStringLiteral("files/Cave-7.xml")));
    // Then the harmless answer has the focus.
    showcase.hand->pause(300);
    QCOMPARE(showcase.window->activeFocusItem()->objectName(), QStringLiteral("no"));
    // What the dialog lay over is not hit by the second tap on an answer.
    showcase.hand->tap(QStringLiteral("no"));
    QTest::mouseClick(showcase.window, Qt::LeftButton, {}, bin);
    showcase.hand->pause(20);
    QVERIFY(!showcase.hand->see(QStringLiteral("yes")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::keysAlone_leadThroughTheScreens()
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

void TstInterfaceBehaviour::arrowsAlone_leadThroughAScreenWithoutAList()
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

void TstInterfaceBehaviour::heldKey_pressesOnce()
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

void TstInterfaceBehaviour::listOfDiagnostics_followsTheirDirectoryWhileItIsShown()
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

void TstInterfaceBehaviour::languageWithoutATranslation_hasTheFrenchPlurals()
try {
    m_showcase.reset();
    m_showcase = std::make_unique<Showcase>(QLocale(QStringLiteral("de_DE")));
    m_showcase->settleAtOnce();
    m_showcase->unlock();
    m_showcase->open(QStringLiteral("DiagnosticsScreen"));
    QVERIFY(isSaid(m_showcase->window, QStringLiteral("2 unités")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::textInANumberField_isRefusedAndSaid()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("SettingsScreen"));
    const int before = showcase->measureTime();
    showcase.hand->fill(QStringLiteral("measureTimeField"), QStringLiteral("douze"));
    showcase.hand->key(Qt::Key_Return);
    QVERIFY(isSaid(showcase.window, QStringLiteral("un nombre de 1 à 120")));
    QCOMPARE(showcase->measureTime(), before);
    QCOMPARE(itemNamed(showcase, QStringLiteral("measureTimeField"))->property("text").toString(),
             QString::number(before));
    showcase.hand->fill(QStringLiteral("measureTimeField"), QStringLiteral("12"));
    showcase.hand->key(Qt::Key_Return);
    QCOMPARE(showcase->measureTime(), 12);
    showcase.hand->touch(QStringLiteral("toast"));
    QVERIFY(!isSaid(showcase.window, QStringLiteral("un nombre de 1 à 120")));
    showcase.hand->fill(QStringLiteral("measureTimeField"), QStringLiteral("999999"));
    showcase.hand->key(Qt::Key_Return);
    QCOMPARE(showcase->measureTime(), 120);
    QVERIFY(isSaid(showcase.window, QStringLiteral("un nombre de 1 à 120")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::pastedText_isTakenOnlyAsANumberInItsLimits()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("SettingsScreen"));
    constexpr int before = 7;
    constexpr int refused = before;
    const QVector<QPair<QString, int>> pasted{
        {QStringLiteral("42"), 42},           {QStringLiteral(" 42 "), 42},
        {QStringLiteral("douze"), refused},   {QStringLiteral("12,5"), refused},
        {QStringLiteral("-3"), refused},      {QStringLiteral("1e2"), refused},
        {QStringLiteral("42\nabc"), refused}, {QString::fromUtf8("4️⃣2️⃣"), refused},
        {QString::fromUtf8("٤٢"), refused},   {QString(5000, QLatin1Char('9')), 120}};
    for (const auto &[text, taken] : pasted) {
        showcase->setMeasureTime(before);
        QGuiApplication::clipboard()->setText(text);
        showcase.hand->tap(QStringLiteral("measureTimeField"));
        QTest::keyClick(showcase.window, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(showcase.window, Qt::Key_V, Qt::ControlModifier);
        showcase.hand->key(Qt::Key_Return);
        QVERIFY2(showcase->measureTime() == taken, qUtf8Printable(text.left(20)));
        QCOMPARE(itemNamed(showcase, QStringLiteral("measureTimeField"))->property("text").toString(),
                 QString::number(taken));
        // Also that the limit was taken in its place.
        const bool said = taken == refused || taken == 120;
        QCOMPARE(isSaid(showcase.window, QStringLiteral("un nombre de 1 à 120")), said);
        QCOMPARE(complaints(showcase.window), QStringList());
        if (said)
            showcase.hand->touch(QStringLiteral("toast")); // what was said goes
    }
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::withoutRoomsOrReferenceLists_theFirstRoomIsTyped()
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

void TstInterfaceBehaviour::badNameOfADiagnostic_isRefusedWithItsReason_data()
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

void TstInterfaceBehaviour::badNameOfADiagnostic_isRefusedWithItsReason()
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

void TstInterfaceBehaviour::damagedFile_isOpenedOnlyWhenConfirmed()
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

void TstInterfaceBehaviour::copyOfADiagnostic_isNotSavedOverIt_data()
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

void TstInterfaceBehaviour::copyOfADiagnostic_isNotSavedOverIt()
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
        // What was recovered before is not replaced either.
        showcase.hand->tap(listed);
        showcase.hand->tap(QStringLiteral("yes"));
        showcase.hand->waitForScreen(QStringLiteral("DiagnosticScreen"));
        QCOMPARE(showcase->fileName(), QStringLiteral("Cave-7 (récupéré 2)"));
    }
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::room_isFoundWithoutAccentsAndOnlyWhenActivated()
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

void TstInterfaceBehaviour::newRoom_isKeptInTheDatabase()
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

void TstInterfaceBehaviour::unitWithAResult_putsTheTriggerAside()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    SentCommands commands(showcase.controller.get());
    for (const UDStatutEnumClass::UDStatut statut : {UDStatutEnumClass::RAW, UDStatutEnumClass::POSITIVE}) {
        auto *unit = new UD;
        unit->setLocal(QStringLiteral("Cuisine"));
        unit->setStatut(statut);
        showcase->uds->append(unit);
    }
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    QVERIFY(isSaid(showcase.window, QStringLiteral("Prêt à mesurer")));
    QCOMPARE(commands.commands, QList<int>{MSPClient::RUN_HARD});
    showcase.hand->key(Qt::Key_Escape);
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    QCOMPARE(commands.commands.last(), int(MSPClient::ABORT));
    commands.commands.clear();
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 1}});
    QVERIFY(isSaid(showcase.window, QStringLiteral("En veille")));
    QVERIFY(!commands.commands.contains(MSPClient::RUN_HARD));
    showcase.hand->tap(QStringLiteral("Remesurer"));
    QCOMPARE(commands.commands.last(), int(MSPClient::RUN_HARD));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::stateOfConservation_isShownWhereverTheMeasureIs()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    auto *unit = new UD;
    unit->setStatut(UDStatutEnumClass::POSITIVE);
    auto *measure = new Measure;
    measure->setDegradationState(DegradationStateEnumClass::DEGRADE);
    unit->measures()->append(measure);
    showcase->uds->append(unit);
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    showcase.hand->tap(QStringLiteral("measure1"));
    showcase.hand->waitForScreen(QStringLiteral("MeasureScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("rien de noté")));
    showcase.hand->tap(QStringLiteral("conservation"));
    showcase.hand->waitForScreen(QStringLiteral("PickScreen"));
    showcase.hand->tap(QStringLiteral("Écaillage"));
    showcase.hand->waitForScreen(QStringLiteral("MeasureScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("Écaillage")));
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("Dégradé · Écaillage")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::negativeConcentration_hasAMinusSign()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    auto *measure = new Measure;
    measure->setConcentration(-0.25);
    measure->setSigma(0.2);
    showcase->directMeasures->append(measure);
    showcase.open(QStringLiteral("DirectScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("−0,25")));
    QVERIFY(complaints(showcase.window).isEmpty());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::tenThousandUnits_needNoMoreDelegatesThanFit()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    // 9,000 in one room, the others in 199.
    constexpr int rooms = 200;
    constexpr int units = 10000;
    for (int room = 1; room < rooms; ++room)
        showcase.database.m_LocalItemsListModel->add(QStringLiteral("Pièce %1").arg(room), QString(),
                                                     QStringLiteral("locaux"));
    for (int i = 0; i < units; ++i) {
        auto *unit = new UD;
        unit->setLocal(i < 9000 ? QStringLiteral("Cuisine")
                                : QStringLiteral("Pièce %1").arg(1 + i % (rooms - 1)));
        unit->setElement(QStringLiteral("Mur"));
        showcase->uds->append(unit);
    }
    // Rows of 64 px and more on 720 px, and one above and below.
    constexpr int fit = 14;
    showcase.open(QStringLiteral("RoomsScreen"));
    QQuickItem *list = itemNamed(showcase, QStringLiteral("roomList"));
    QCOMPARE(list->property("count").toInt(), rooms);
    QVERIFY2(delegatesOf(list) <= fit, qPrintable(QString::number(delegatesOf(list))));

    showcase.open(QStringLiteral("UnitsScreen"), {{QStringLiteral("room"), QStringLiteral("Cuisine")}});
    list = itemNamed(showcase, QStringLiteral("unitList"));
    QCOMPARE(list->property("count").toInt(), 9000);
    QVERIFY(delegatesOf(list) > 4);
    QVERIFY2(delegatesOf(list) <= fit, qPrintable(QString::number(delegatesOf(list))));
    // All the way down, screen by screen: delegates are used again.
    QSet<const QQuickItem *> made;
    auto *content = list->property("contentItem").value<QQuickItem *>();
    const double height = list->property("contentHeight").toDouble();
    for (double y = 0; y < height; y += list->height() * 7) {
        list->setProperty("contentY", y);
        showcase.hand->pause(1);
        const QList<QQuickItem *> children = content->childItems();
        for (const QQuickItem *child : children)
            made.insert(child);
        QVERIFY2(delegatesOf(list) <= 2 * fit, qPrintable(QString::number(delegatesOf(list))));
    }
    QVERIFY2(made.size() <= 3 * fit, qPrintable(QString::number(made.size())));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::everyLongList_makesNoMoreDelegatesThanFit_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<double>("lowestRow"); // px
    QTest::newRow("PickScreen") << "pickList" << 64.;
    QTest::newRow("DirectScreen") << "directList" << 100.;
    QTest::newRow("UnitScreen") << "measureList" << 100.;
    QTest::newRow("ShocksScreen") << "shockList" << 64.;
    QTest::newRow("LogScreen") << "logList" << 20.;
}

void TstInterfaceBehaviour::everyLongList_makesNoMoreDelegatesThanFit()
try {
    QFETCH(QString, list);
    QFETCH(double, lowestRow);
    constexpr int entries = 400;
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    const QString screen = QString::fromLatin1(QTest::currentDataTag());
    QVariantMap properties;
    auto *unit = new UD;
    showcase->uds->append(unit);
    for (int i = 0; i < entries; ++i) {
        showcase.database.m_LocalItemsListModel->add(QStringLiteral("Pièce %1").arg(i), QString(),
                                                     QStringLiteral("locaux"));
        showcase->directMeasures->append(new Measure);
        unit->measures()->append(new Measure);
        if (screen == QLatin1String("LogScreen")) {
            QLOG_FATAL() << "line" << i;
        }
        if (screen == QLatin1String("ShocksScreen"))
            showcase->error->setShock(true);
    }
    if (screen == QLatin1String("PickScreen"))
        properties.insert(QStringLiteral("items"), showcase.object(QStringLiteral("rooms")));
    else if (screen == QLatin1String("UnitScreen"))
        properties.insert(QStringLiteral("row"), 0);
    showcase.open(screen, properties);
    showcase.hand->pause(100);

    QQuickItem *view = itemNamed(showcase, list);
    QVERIFY(view->property("count").toInt() >= entries);
    // One cut at each end, and what is no row: header, footer, highlight.
    const int fit = int(view->height() / lowestRow) + 2;
    // A list that is led to its end has put its first rows aside for the next ones.
    const int bound = (view->property("atYBeginning").toBool() ? fit : 2 * fit) + 3;
    const int made = view->property("contentItem").value<QQuickItem *>()->childItems().size();
    QVERIFY2(made > 3, qPrintable(QString::number(made)));
    QVERIFY2(made <= bound, qPrintable(QStringLiteral("%1 of %2").arg(made).arg(bound)));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::colours_keepTheirContrast()
{
    QVector<QPair<const char *, const char *>> pairs{{"primaryInk", "primary"}, {"signInk", "positive"},
                                                     {"signInk", "negative"},   {"signInk", "undecided"},
                                                     {"signInk", "neutral"},    {"alarmInk", "alarm"},
                                                     {"warningInk", "warning"}, {"text", "surfacePressed"}};
    for (const char *ink :
         {"text", "textSecondary", "primary", "positive", "negative", "undecided", "alarm"}) {
        for (const char *paper : {"background", "surface"})
            pairs.append(qMakePair(ink, paper));
    }
    using Pair = QPair<const char *, const char *>;
    pairs << Pair{"primary", "surfacePressed"};
    const int texts = pairs.size();
    pairs << Pair{"disabledInk", "disabled"};
    const int words = pairs.size();
    // Rings, edges and lines.
    pairs << Pair{"primaryInk", "primary"} << Pair{"focus", "background"} << Pair{"focus", "surface"}
          << Pair{"outline", "background"} << Pair{"outline", "surface"} << Pair{"outline", "neutralSoft"}
          << Pair{"text", "surface"};
    for (const bool night : {false, true}) {
        m_showcase->window->setProperty("night", night);
        for (int i = 0; i < pairs.size(); ++i) {
            const auto &[ink, paper] = pairs[i];
            const double least = i < texts ? 7 : i < words ? 4.5 : 3;
            const double found =
                contrast(m_showcase->colour(QLatin1String(ink)), m_showcase->colour(QLatin1String(paper)));
            QVERIFY2(found >= least,
                     qPrintable(QStringLiteral("%1 on %2 has %3 by %4")
                                    .arg(QLatin1String(ink), QLatin1String(paper))
                                    .arg(found)
                                    .arg(night ? QStringLiteral("night") : QStringLiteral("day"))));
        }
    }
}

QTEST_MAIN(TstInterfaceBehaviour)
#include "tst_interface_behaviour.moc"
