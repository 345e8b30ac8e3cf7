// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The simulated instrument's panel by mouse and keys: what each control does to the instrument.
#include "panelbench.h"

namespace {

/// All controls lie in sight of each other.
const QSize Tall(1280, 1400);

/// What a button does: to a member of the status at the first and the second tap, or, where no path to one is
/// given, the notice that follows.
struct ButtonRow
{
    const char *name;
    const char *path;
    const char *first;
    const char *second = ""; ///< empty: it is tapped but once
};

const ButtonRow buttons[] = {
    {"presetLow", "sample", R"({"concentration": 0.2, "substrate": "plâtre", "distance": 0})"},
    {"presetHigh", "sample", R"({"concentration": 2.4, "substrate": "bois", "distance": 0})"},
    {"presetNear", "sample", R"({"concentration": 1, "substrate": "plâtre", "distance": 0})"},
    {"presetFar", "sample", R"({"concentration": 2.4, "substrate": "bois", "distance": 35})"},
    {"substrate0", "sample.substrate", R"("bois")"},
    {"substrate1", "sample.substrate", R"("plâtre")"},
    {"substrate2", "sample.substrate", R"("brique")"},
    {"substrate3", "sample.substrate", R"("béton")"},
    {"substrate4", "sample.substrate", R"("pierre")"},
    {"substrate5", "sample.substrate", R"("métal")"},
    {"gaugeMissing", "battery", R"("missing")", "4050000"},
    {"shockIdle", "", R"({"notice": "mspEvent", "event": "SYS_ERR", "code": 0})"},
    {"shockWorking", "", R"({"notice": "mspEvent", "event": "SYS_ERR", "code": 1})"},
    {"shutterFault", "", R"({"notice": "mspEvent", "event": "SYS_ERR", "code": 2})"},
    {"detectorFault", "", R"({"notice": "mspEvent", "event": "SYS_ERR", "code": 3})"},
    {"dacFault", "", R"({"notice": "mspEvent", "event": "SYS_ERR", "code": 4})"},
    {"voltageFault", "", R"({"notice": "mspEvent", "event": "SYS_ERR", "code": 5})"},
    {"shutterStuck", "msp.shutterFailures", "1"},
    {"temperatureError", "", R"({"notice": "status", "error": "INVALID_TEMPERATURE"})"},
    {"acceleratingError", "", R"({"notice": "status", "error": "INVALID_ACCELERATING_VOLTAGE"})"},
    {"dppError", "", R"({"notice": "status", "error": "DPP_ERROR"})"},
    {"dataError", "", R"({"notice": "status", "error": "DATA_MANAGER_ERROR"})"},
    {"timeoutError", "", R"({"notice": "status", "error": "TIMEOUT_ERROR"})"},
    {"unknownError", "", R"({"notice": "status", "error": "UNKNOWN_ERROR"})"},
    {"calibrationFails", "nap.calibrationFails", "true", "false"},
    {"napLife", "nap.alive", "false", "true"},
    {"napSilent", "nap.silent", "true", "false"},
    {"mspLife", "msp.alive", "false", "true"},
    {"mspRefuse", "msp.refusing",
     R"(["LIGHT_ON", "LIGHT_OFF", "RESET_SHOCK", "RUN_HARD", "RUN_SOFT", "SHUT_OPEN", "SHUT_CLOSE",
         "ABORT", "SET_DAC", "ACK_ERROR", "MEAS_DONE"])",
     "[]"},
    {"speed0", "speed", "0.2"},
    {"speed1", "speed", "1"},
    {"speed2", "speed", "5"},
    {"speed3", "speed", "20"},
    {"speed4", "speed", "100"},
};

struct SliderRow
{
    const char *name;
    const char *path; ///< in the status
    double middle;
    double end;
    double step; ///< of an arrow key
};

const SliderRow sliders[] = {
    {"concentration", "sample.concentration", 5, 10, 0.05},
    {"distance", "sample.distance", 25, 50, 1},
    {"temperature", "conditions.temperature", 20, 60, 0.5},
    {"voltage", "conditions.voltage", 1200, 1300, 1},
    {"battery", "battery", 3.65e6, 4.3e6, 1e4},
    {"napDelay", "nap.delay", 5000, 10000, 100},
};

QJsonValue value(const char *json)
{
    return object((QByteArray("{\"value\": ") + json + '}').constData()).value(QLatin1String("value"));
}

} // namespace

class TstSimulatorPanel : public QObject
{
    Q_OBJECT

private slots:
    void trigger_isHeldWithTheMouse();
    void trigger_isHeldWithTheSpaceKey();
    void trigger_isKeptPressed();
    void closingTheWindow_releasesTheTriggerAndLeavesTheInstrument();
    void buttons_commandTheInstrument();
    void sliders_commandTheInstrument();
    void slider_followsTheInstrument();
    void everyControl_isTriedHere();
    void refusedCommand_isTold();
};

void TstSimulatorPanel::trigger_isHeldWithTheMouse()
try {
    PanelBench bench;
    bench.run("mspInfo", object(R"({"state": "READY_HARD"})"));
    const QPoint trigger = bench.middleOf(QStringLiteral("trigger"));
    QTest::mousePress(bench.window, Qt::LeftButton, {}, trigger);
    QVERIFY(bench.noticed(object(R"({"notice": "mspEvent", "event": "SHUT_OPENED"})")));
    QVERIFY(bench.status(QStringLiteral("pressed")).toBool());
    QTRY_COMPARE(bench.text(QStringLiteral("trigger")), QStringLiteral("Détente pressée"));
    // Held, not clicked.
    QTest::qWait(300);
    QVERIFY(bench.status(QStringLiteral("pressed")).toBool());
    QVERIFY(!bench.noticed(object(R"({"event": "TRIG_OFF"})")));
    QTest::mouseRelease(bench.window, Qt::LeftButton, {}, trigger);
    QVERIFY(bench.noticed(object(R"({"notice": "mspEvent", "event": "TRIG_OFF"})")));
    QVERIFY(!bench.status(QStringLiteral("pressed")).toBool());
    // Let go beside the button, it is let go all the same.
    QTest::mousePress(bench.window, Qt::LeftButton, {}, trigger);
    QVERIFY(bench.status(QStringLiteral("pressed")).toBool());
    QTest::mouseMove(bench.window, trigger + QPoint(0, 400));
    QTest::mouseRelease(bench.window, Qt::LeftButton, {}, trigger + QPoint(0, 400));
    QVERIFY(!bench.status(QStringLiteral("pressed")).toBool());
    VERIFY_NOTHING_FOUND(bench.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstSimulatorPanel::trigger_isHeldWithTheSpaceKey()
try {
    PanelBench bench;
    bench.window->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(bench.window));
    bench.item(QStringLiteral("trigger"))->forceActiveFocus(Qt::TabFocusReason);
    QTest::keyPress(bench.window, Qt::Key_Space);
    QVERIFY(bench.status(QStringLiteral("pressed")).toBool());
    // A key that is held repeats itself.
    for (const auto type : {QEvent::KeyRelease, QEvent::KeyPress}) {
        QKeyEvent again(type, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
        QCoreApplication::sendEvent(bench.window, &again);
        QVERIFY(bench.status(QStringLiteral("pressed")).toBool());
    }
    QTest::keyRelease(bench.window, Qt::Key_Space);
    QVERIFY(!bench.status(QStringLiteral("pressed")).toBool());
    VERIFY_NOTHING_FOUND(bench.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstSimulatorPanel::trigger_isKeptPressed()
try {
    PanelBench bench;
    bench.hand->tap(QStringLiteral("keep"));
    bench.hand->tap(QStringLiteral("trigger"));
    QVERIFY(bench.status(QStringLiteral("pressed")).toBool());
    bench.hand->tap(QStringLiteral("keep"));
    QVERIFY(!bench.status(QStringLiteral("pressed")).toBool());
    VERIFY_NOTHING_FOUND(bench.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstSimulatorPanel::closingTheWindow_releasesTheTriggerAndLeavesTheInstrument()
try {
    PanelBench bench;
    bench.hand->tap(QStringLiteral("keep"));
    bench.hand->tap(QStringLiteral("trigger"));
    QVERIFY(bench.status(QStringLiteral("pressed")).toBool());
    bench.window->close();
    QVERIFY(!bench.window->isVisible());
    QVERIFY(!bench.status(QStringLiteral("pressed")).toBool());
    QVERIFY(bench.status(QStringLiteral("nap.alive")).toBool());
    VERIFY_NOTHING_FOUND(bench.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstSimulatorPanel::buttons_commandTheInstrument()
try {
    PanelBench bench;
    bench.resize(Tall);
    for (const ButtonRow &button : buttons) {
        const QString path = QLatin1String(button.path);
        // Away from what is expected where that is the state at the start.
        bench.run("sample", object(R"({"concentration": 7, "substrate": "liège", "distance": 9})"));
        bench.run("speed", object(R"({"value": 3})"));
        bench.notices.clear();
        if (path.isEmpty()) {
            bench.hand->tap(QLatin1String(button.name));
            QVERIFY2(bench.noticed(object(button.first)), button.name);
            continue;
        }
        for (const char *const expected : {button.first, button.second}) {
            if (!*expected)
                continue;
            QVERIFY2(bench.status(path) != value(expected), button.name);
            bench.hand->tap(QLatin1String(button.name));
            QVERIFY2(bench.status(path) == value(expected), button.name);
        }
    }
    VERIFY_NOTHING_FOUND(bench.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstSimulatorPanel::sliders_commandTheInstrument()
try {
    PanelBench bench;
    bench.resize(Tall);
    bench.run("conditions", object(R"({"voltage": 1111})"));
    for (const SliderRow &slider : sliders) {
        const QString name = QLatin1String(slider.name) + QStringLiteral("Slider");
        const auto current = [&] { return bench.status(QLatin1String(slider.path)).toDouble(); };
        const auto isNear = [&](double wanted, double tolerance) {
            return qAbs(current() - wanted) <= tolerance + slider.step;
        };
        // What a pixel stands for.
        const double pixel = 2 * (slider.end - slider.middle) / bench.item(name)->width();
        QVERIFY2(!isNear(slider.middle, 2 * pixel), slider.name);
        bench.hand->tap(name);
        QVERIFY2(isNear(slider.middle, 2 * pixel), slider.name);

        // Moved with the mouse, it acts while it moves.
        const QPoint from = bench.middleOf(name);
        const int way = qRound(bench.item(name)->width() / 2);
        QTest::mousePress(bench.window, Qt::LeftButton, {}, from);
        for (int part = 1; part <= 10; ++part)
            QTest::mouseMove(bench.window, from + QPoint(way * part / 20, 0));
        QVERIFY2(isNear((slider.middle + slider.end) / 2, 24 * pixel), slider.name);
        QTest::mouseMove(bench.window, from + QPoint(way, 0));
        QTest::mouseRelease(bench.window, Qt::LeftButton, {}, from + QPoint(way, 0));
        QCOMPARE(current(), slider.end);

        QTest::keyClick(bench.window, Qt::Key_Left);
        QCOMPARE(current(), slider.end - slider.step);
    }
    VERIFY_NOTHING_FOUND(bench.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstSimulatorPanel::slider_followsTheInstrument()
try {
    PanelBench bench;
    bench.run("conditions", object(R"({"temperature": 35.5})"));
    const auto shown = [&] {
        return bench.item(QStringLiteral("temperatureSlider"))->property("value").toDouble();
    };
    QTRY_COMPARE(shown(), 35.5);
    QCOMPARE(bench.item(QStringLiteral("temperature"))->property("value").toString(),
             QStringLiteral("35,5 °C"));
    // Farther than the slider goes, the number tells the truth.
    bench.run("conditions", object(R"({"temperature": 300})"));
    QTRY_COMPARE(bench.item(QStringLiteral("temperature"))->property("value").toString(),
                 QStringLiteral("300,0 °C"));
    QCOMPARE(shown(), 60.0);
    VERIFY_NOTHING_FOUND(bench.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstSimulatorPanel::everyControl_isTriedHere()
try {
    PanelBench bench;
    // These are tried with the trigger and the traffic.
    QSet<QString> tried{QStringLiteral("trigger"), QStringLiteral("keep"),    QStringLiteral("clear"),
                        QStringLiteral("show"),    QStringLiteral("showNAP"), QStringLiteral("showMSP")};
    for (const ButtonRow &button : buttons)
        tried << QLatin1String(button.name);
    for (const SliderRow &slider : sliders)
        tried << QLatin1String(slider.name) + QStringLiteral("Slider");
    QSet<QString> there;
    const QList<QQuickItem *> items = visibleItems(bench.window->contentItem());
    for (const QQuickItem *item : items) {
        if (isControl(item))
            there << item->objectName();
    }
    QVERIFY2(there == tried,
             qUtf8Printable((there - tried + (tried - there)).values().join(QStringLiteral(", "))));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstSimulatorPanel::refusedCommand_isTold()
try {
    PanelBench bench;
    const QString gauge = QStringLiteral("/sys/class/power_supply/bq27510-0/voltage_now");
    QVERIFY(QFile::remove(gauge));
    QVERIFY(QDir().mkpath(gauge + QStringLiteral("/in the way")));
    bench.hand->tap(QStringLiteral("gaugeMissing"));
    QVERIFY(QDir(gauge).removeRecursively());
    QStringList texts;
    const QList<QQuickItem *> items = visibleItems(bench.window->contentItem());
    for (const QQuickItem *item : items)
        texts.append(item->property("text").toString());
    QVERIFY2(texts.contains(QStringLiteral("Refusé : battery: the gauge's file cannot be written")),
             qUtf8Printable(texts.join(QLatin1Char('\n'))));
    VERIFY_NOTHING_FOUND(bench.watch.warnings());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

QTEST_MAIN(TstSimulatorPanel)
#include "tst_simulator_panel.moc"
