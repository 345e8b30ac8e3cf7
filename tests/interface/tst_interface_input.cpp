// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What taps and pasted text do: a finger in a glove that taps twice, and text where a number belongs.
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <failure.h>
#include <ud.h>
#include <udlistmodel.h>

#include "eye.h"
#include "showcasetest.h"

namespace {

QPoint middleOf(const QQuickItem *item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

} // namespace

class TstInterfaceInput : public ShowcaseTest
{
    Q_OBJECT

private slots:
    void doubleTap_opensOneScreenOnly();
    void doubleTap_isOneTap_data();
    void doubleTap_isOneTap();
    void doubleTap_answersNoDialog();
    void textInANumberField_isRefusedAndSaid();
    void pastedText_isTakenOnlyAsANumberInItsLimits();
};

void TstInterfaceInput::doubleTap_opensOneScreenOnly()
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

void TstInterfaceInput::doubleTap_isOneTap_data()
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

void TstInterfaceInput::doubleTap_isOneTap()
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

void TstInterfaceInput::doubleTap_answersNoDialog()
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

void TstInterfaceInput::textInANumberField_isRefusedAndSaid()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("SettingsScreen"));
    const int before = showcase->measureTime();
    showcase.hand->fill(QStringLiteral("measureTimeField"), QStringLiteral("douze"));
    showcase.hand->key(Qt::Key_Return);
    QVERIFY(isSaid(showcase.window, QStringLiteral("un nombre de 1 à 120")));
    QCOMPARE(showcase->measureTime(), before);
    QCOMPARE(itemNamed(QStringLiteral("measureTimeField"))->property("text").toString(),
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

void TstInterfaceInput::pastedText_isTakenOnlyAsANumberInItsLimits()
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
        QCOMPARE(itemNamed(QStringLiteral("measureTimeField"))->property("text").toString(),
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

QTEST_MAIN(TstInterfaceInput)
#include "tst_interface_input.moc"
