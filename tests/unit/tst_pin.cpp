// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <limits>

#include "logrecorder.h"
#include "metatext.h"
#include "pin.h"
#include "signallog.h"

namespace {

void enter(PIN &pin, const QString &digits)
{
    pin.clearDigits();
    for (const QChar &digit : digits)
        pin.enterDigit(digit);
}

bool accepts(int secret, const QString &digits)
{
    PIN pin;
    pin.setSecret(secret);
    enter(pin, digits);
    return pin.checkSecret();
}

const QString accepted = QStringLiteral("INFO [Halvar Controller][PIN]: Password accepted.");
const QString reached = QStringLiteral("INFO [Halvar Controller][PIN]:  3 wrong password reached.");
const QString rightCode = QStringLiteral("12345");
const QString wrongCode = QStringLiteral("12346");

} // namespace

class TstPin : public QObject
{
    Q_OBJECT

private slots:
    void interface_isWhatTheKeypadUses()
    {
        QCOMPARE(metaText(PIN::staticMetaObject), linesOf(R"(
            property bool accepted NOTIFY acceptedUpdated
            property int nbDigits NOTIFY nbDigitsChanged
            property bool disabled NOTIFY disabledUpdated
            signal acceptedUpdated(bool accepted)
            signal nbDigitsChanged(int nbDigits)
            signal disabledUpdated(bool disabled)
            slot void enable()
            invokable void enterDigit(QString digit)
            invokable void clearDigit()
            invokable void clearDigits()
            invokable bool checkSecret()
            invokable bool checkDigit(int index))"));
    }

    void secretAndStates_cannotBeSetFromQml()
    {
        PIN pin;
        pin.setSecret(12345);
        QQmlEngine::setObjectOwnership(&pin, QQmlEngine::CppOwnership);
        QJSEngine engine;
        engine.globalObject().setProperty(QStringLiteral("pin"), engine.newQObject(&pin));
        for (const char *setter : {"setSecret", "setAccepted", "setNbDigits", "setDisabled"})
            QVERIFY2(engine.evaluate(QStringLiteral("pin.%1").arg(QLatin1String(setter))).isUndefined(),
                     setter);
        for (const char *property : {"accepted = true", "nbDigits = 3", "disabled = true"})
            QVERIFY2(engine.evaluate(QStringLiteral("pin.") + QLatin1String(property)).isError(), property);
        const QJSValue result = engine.evaluate(QStringLiteral(
            "for (var i = 1; i <= 5; ++i) pin.enterDigit(i); pin.checkSecret() + ' ' + pin.nbDigits"));
        QCOMPARE(result.toString(), QStringLiteral("true 5"));
    }

    void fresh_isEmptyAndEnabled()
    {
        QObject parent;
        const auto *pin = new PIN(&parent);
        QCOMPARE(pin->parent(), &parent);
        QVERIFY(!pin->accepted());
        QCOMPARE(pin->nbDigits(), 0);
        QVERIFY(!pin->disabled());
        const auto *timer = pin->findChild<QTimer *>();
        QVERIFY(timer);
        QVERIFY(!timer->isActive());
        QCOMPARE(timer->interval(), 5000);
    }

    void setSecret_isLoggedWithoutTheCode()
    {
        PIN pin;
        const LogRecorder log;
        pin.setSecret(12345);
        QCOMPARE(log.lines(), (QStringList{QStringLiteral("DEBUG [Halvar Controller][PIN]: setSecret()")}));
    }

    void secret_isFiveDecimalDigits_data()
    {
        QTest::addColumn<int>("secret");
        QTest::addColumn<QString>("digits");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("five digits") << 12345 << rightCode << true;
        QTest::newRow("leading zeros") << 42 << QStringLiteral("00042") << true;
        QTest::newRow("zero") << 0 << QStringLiteral("00000") << true;
        QTest::newRow("higher digits are lost") << 9912345 << rightCode << true;
        QTest::newRow("largest number") << std::numeric_limits<int>::max() << QStringLiteral("83647") << true;
        QTest::newRow("another first digit") << 12345 << QStringLiteral("22345") << false;
        QTest::newRow("another last digit") << 12345 << wrongCode << false;
        QTest::newRow("other order") << 12345 << QStringLiteral("54321") << false;
        QTest::newRow("negative") << -12345 << rightCode << false;
        QTest::newRow("smallest number")
            << std::numeric_limits<int>::min() << QStringLiteral("83648") << false;
    }

    void secret_isFiveDecimalDigits()
    {
        QFETCH(int, secret);
        QFETCH(QString, digits);
        QTEST(accepts(secret, digits), "accepted");
    }

    void unsetSecret_matchesNothing()
    {
        PIN pin;
        for (const char *digit : {"0", "-1", "9", "", "65535"}) {
            pin.clearDigits();
            for (int i = 0; i < 5; ++i)
                pin.enterDigit(QLatin1String(digit));
            QCOMPARE(pin.nbDigits(), 5);
            QVERIFY2(!pin.checkSecret(), digit);
            QVERIFY(!pin.accepted());
        }
    }

    void enterDigit_countsUpToFive()
    {
        PIN pin;
        QSignalSpy changed(&pin, &PIN::nbDigitsChanged);
        for (int i = 1; i <= 7; ++i) {
            pin.enterDigit(QString::number(i));
            QCOMPARE(pin.nbDigits(), qMin(i, 5));
        }
        QCOMPARE(changed.count(), 5);
        QCOMPARE(changed.last().first().toInt(), 5);
        pin.setSecret(12345);
        QVERIFY(pin.checkSecret()); // the sixth and seventh replaced nothing
    }

    void enterDigit_takesAnyTextAsANumber_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("lastDigit");
        QTest::newRow("digit") << QStringLiteral("7") << 7;
        QTest::newRow("letter") << QStringLiteral("a") << 0;
        QTest::newRow("empty") << QString() << 0;
        QTest::newRow("hexadecimal") << QStringLiteral("0x7") << 0;
        QTest::newRow("too large for a short") << QStringLiteral("40000") << 0;
        QTest::newRow("blank before it") << QStringLiteral(" 7") << 7;
    }

    void enterDigit_takesAnyTextAsANumber()
    {
        QFETCH(QString, text);
        QFETCH(int, lastDigit);
        PIN pin;
        pin.setSecret(12340 + lastDigit);
        for (const char *digit : {"1", "2", "3", "4"})
            pin.enterDigit(QLatin1String(digit));
        pin.enterDigit(text);
        QVERIFY(pin.checkSecret());
    }

    void severalDigitsAtOnce_areOneThatMatchesNothing()
    {
        PIN pin;
        pin.setSecret(12345);
        pin.enterDigit(rightCode);
        QCOMPARE(pin.nbDigits(), 1);
        for (int i = 2; i <= 5; ++i)
            pin.enterDigit(QString::number(i));
        QVERIFY(!pin.checkSecret());
    }

    void clearDigit_removesTheLast()
    {
        PIN pin;
        pin.setSecret(12345);
        enter(pin, wrongCode);
        QSignalSpy changed(&pin, &PIN::nbDigitsChanged);
        pin.clearDigit();
        QCOMPARE(pin.nbDigits(), 4);
        pin.enterDigit(QStringLiteral("5"));
        QVERIFY(pin.checkSecret());
        for (int i = 0; i < 6; ++i)
            pin.clearDigit();
        QCOMPARE(pin.nbDigits(), 0);
        QCOMPARE(changed.count(), 7); // 4, 5, then 4 to 0; nothing for what was not there
    }

    void clearDigits_emptiesAndRevokes()
    {
        PIN pin;
        pin.setSecret(12345);
        enter(pin, rightCode);
        QVERIFY(pin.checkSecret());
        SignalLog log;
        log.watch(&pin, &PIN::nbDigitsChanged, QStringLiteral("digits"));
        log.watch(&pin, &PIN::acceptedUpdated, QStringLiteral("accepted"));
        pin.clearDigits();
        QCOMPARE(pin.nbDigits(), 0);
        QVERIFY(!pin.accepted());
        QCOMPARE(log.text(), QStringLiteral("digits accepted"));
        pin.clearDigits();
        QCOMPARE(log.names().size(), 2);
    }

    void checkDigit_tellsWhichDotsAreFilled()
    {
        PIN pin;
        for (int entered = 0; entered <= 5; ++entered) {
            for (int index :
                 {std::numeric_limits<int>::min(), -1, 0, 1, 2, 3, 4, 5, std::numeric_limits<int>::max()})
                QCOMPARE(pin.checkDigit(index), index >= 0 && index < entered);
            pin.enterDigit(QStringLiteral("0"));
        }
    }

    void checkSecret_withFewerDigits_isNoAttempt()
    {
        PIN pin;
        pin.setSecret(12345);
        enter(pin, rightCode);
        QVERIFY(pin.checkSecret());
        QSignalSpy changed(&pin, &PIN::acceptedUpdated);
        pin.clearDigit();
        const LogRecorder log;
        for (int i = 0; i < 5; ++i)
            QVERIFY(!pin.checkSecret());
        QCOMPARE(changed.count(), 0);
        QVERIFY(pin.accepted()); // as the last check left it
        QVERIFY(log.lines().isEmpty());
        pin.enterDigit(QStringLiteral("6"));
        QVERIFY(!pin.checkSecret());
        QVERIFY(!pin.checkSecret());
        QVERIFY(log.lines().isEmpty()); // two failures: those before were none
        QVERIFY(!pin.checkSecret());
        QCOMPARE(log.lines(), (QStringList{reached}));
    }

    void success_isAnnouncedOnceAndKeepsTheEntry()
    {
        PIN pin;
        pin.setSecret(12345);
        enter(pin, rightCode);
        QSignalSpy changed(&pin, &PIN::acceptedUpdated);
        const LogRecorder log;
        QVERIFY(pin.checkSecret());
        QVERIFY(pin.checkSecret());
        QVERIFY(pin.accepted());
        QCOMPARE(pin.nbDigits(), 5);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toBool(), true);
        QCOMPARE(log.lines(), (QStringList{accepted, accepted}));
    }

    void everyThirdFailure_isLoggedAndDisablesNothing()
    {
        PIN pin;
        pin.setSecret(12345);
        enter(pin, wrongCode);
        const LogRecorder log;
        for (int failure = 1; failure <= 7; ++failure) {
            QVERIFY(!pin.checkSecret());
            QCOMPARE(log.lines().size(), failure / 3);
        }
        QCOMPARE(log.lines(), (QStringList{reached, reached}));
        QVERIFY(!pin.disabled());
        QCOMPARE(pin.nbDigits(), 5);
    }

    void success_leavesTheCountOfFailures()
    {
        PIN pin;
        pin.setSecret(12345);
        enter(pin, wrongCode);
        QVERIFY(!pin.checkSecret());
        QVERIFY(!pin.checkSecret());
        enter(pin, rightCode);
        QVERIFY(pin.checkSecret());
        enter(pin, wrongCode);
        const LogRecorder log;
        QVERIFY(!pin.checkSecret());
        QCOMPARE(log.lines(), (QStringList{reached}));
    }

    void failureAfterSuccess_revokes()
    {
        PIN pin;
        pin.setSecret(12345);
        enter(pin, rightCode);
        QVERIFY(pin.checkSecret());
        pin.clearDigit();
        pin.enterDigit(QStringLiteral("0"));
        QSignalSpy changed(&pin, &PIN::acceptedUpdated);
        QVERIFY(!pin.checkSecret());
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toBool(), false);
    }

    void disabled_refusesDigitsUntilTheTimer()
    {
        PIN pin;
        pin.enterDigit(QStringLiteral("1"));
        QSignalSpy changed(&pin, &PIN::disabledUpdated);
        const LogRecorder log;
        pin.setDisabled(true);
        QCOMPARE(log.lines(),
                 (QStringList{QStringLiteral("INFO [Halvar Controller][PIN]: PIN disabled for 1 second.")}));
        QCOMPARE(changed.count(), 1);
        auto *timer = pin.findChild<QTimer *>();
        QVERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 5000); // whatever the line says
        pin.enterDigit(QStringLiteral("2"));
        QCOMPARE(pin.nbDigits(), 1);
        pin.clearDigit(); // taking back stays possible
        QCOMPARE(pin.nbDigits(), 0);

        timer->setInterval(1);
        QVERIFY(changed.wait(5000));
        QVERIFY(!pin.disabled());
        QCOMPARE(changed.count(), 2);
        QCOMPARE(changed.last().first().toBool(), false);
        pin.enterDigit(QStringLiteral("2"));
        QCOMPARE(pin.nbDigits(), 1);
    }

    void setDisabled_whileDisabled_changesNothing()
    {
        PIN pin;
        pin.setDisabled(true);
        auto *timer = pin.findChild<QTimer *>();
        timer->start(100000);
        QSignalSpy changed(&pin, &PIN::disabledUpdated);
        const LogRecorder log;
        pin.setDisabled(true);
        QCOMPARE(timer->interval(), 100000);
        QCOMPARE(changed.count(), 0);
        QVERIFY(log.lines().isEmpty());
        pin.enable();
        pin.enable();
        QVERIFY(!pin.disabled());
        QCOMPARE(changed.count(), 1);
        QVERIFY(log.lines().isEmpty());
    }

    void disabled_canBeCheckedAllTheSame()
    {
        PIN pin;
        pin.setSecret(12345);
        enter(pin, rightCode);
        pin.setDisabled(true);
        QVERIFY(pin.checkSecret());
    }

    void setters_announceChangesOnly()
    {
        PIN pin;
        SignalLog log;
        log.watch(&pin, &PIN::acceptedUpdated, QStringLiteral("accepted"));
        log.watch(&pin, &PIN::nbDigitsChanged, QStringLiteral("digits"));
        pin.setAccepted(false);
        pin.setNbDigits(0);
        QVERIFY(log.text().isEmpty());
        pin.setAccepted(true);
        pin.setAccepted(true);
        pin.setNbDigits(4);
        pin.setNbDigits(4);
        QCOMPARE(log.text(), QStringLiteral("accepted digits"));
        QCOMPARE(pin.nbDigits(), 4);
    }
};

QTEST_GUILESS_MAIN(TstPin)
#include "tst_pin.moc"
