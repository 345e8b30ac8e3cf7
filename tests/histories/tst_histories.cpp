// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Random histories of the lists and the proxies, with QML views attached, against plain vectors. Told by
// the environment:
//   HALVAR_HISTORIES_STEPS  steps in all, 6000 unless set
//   HALVAR_HISTORIES_SEED   a number; the same one gives the same histories
#include <rapidcheck.h>

#include <QGuiApplication>
#include <QQmlEngine>
#include <QTest>

#include <QsLog.h>

#include "listrun.h"
#include "roomrun.h"

namespace {

constexpr int longest = 150;
constexpr int usual = longest / 2;

int number(const char *variable, int unset)
{
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(variable, &ok);
    return ok && value > 0 ? value : unset;
}

} // namespace

class TstHistories : public QObject
{
    Q_OBJECT

private slots:
    void list_andItsProxy_areWhatPlainVectorsAre();
    void rooms_inUse_areWhatPlainVectorsSay();

private:
    QQmlEngine m_engine;
};

void TstHistories::list_andItsProxy_areWhatPlainVectorsAre()
{
    long done = 0;
    const bool agreed = rc::check("the list and the proxy do what plain vectors do", [&] {
        const int flavour = *rc::gen::inRange(0, 4).as("display role 1, proxy from QML 2");
        const histories::Steps steps = *histories::sequences(histories::listKinds(), longest).as("steps");
        const QString difference = histories::runList(steps, flavour, m_engine, done);
        if (!difference.isEmpty())
            RC_FAIL(difference.toStdString());
    });
    qInfo("%ld steps", done);
    QVERIFY(agreed);
}

void TstHistories::rooms_inUse_areWhatPlainVectorsSay()
{
    long done = 0;
    const bool agreed = rc::check("the rooms in use are those that plain vectors find", [&] {
        const histories::Steps steps = *histories::sequences(histories::roomKinds(), longest).as("steps");
        const QString difference = histories::runRooms(steps, m_engine, done);
        if (!difference.isEmpty())
            RC_FAIL(difference.toStdString());
    });
    qInfo("%ld steps", done);
    QVERIFY(agreed);
}

int main(int argc, char **argv)
{
    const int steps = number("HALVAR_HISTORIES_STEPS", 6000);
    const int seed = number("HALVAR_HISTORIES_SEED", int(QDateTime::currentMSecsSinceEpoch() % 1000000000));
    qInfo("HALVAR_HISTORIES_SEED=%d HALVAR_HISTORIES_STEPS=%d", seed, steps);
    // Each of the two properties takes half of the steps.
    const QByteArray parameters =
        "seed=" + QByteArray::number(seed) + " max_success=" + QByteArray::number(qMax(1, steps / 2 / usual));
    const QByteArray given = qgetenv("RC_PARAMS");
    qputenv("RC_PARAMS", given.isEmpty() ? parameters : parameters + ' ' + given);

    QGuiApplication application(argc, argv);
    // Expressions that fail are part of it; their lines would be thousands.
    QsLogging::Logger::instance().setLoggingLevel(QsLogging::OffLevel);
    TstHistories test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_histories.moc"
