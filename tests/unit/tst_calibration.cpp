// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <limits>

#include "calibration.h"
#include "logrecorder.h"
#include "metatext.h"

using C = CalibrationEnumClass;

class TstCalibration : public QObject
{
    Q_OBJECT

private:
    /// A calibration, with the states that it has announced.
    struct Watched
    {
        Calibration calibration;
        QList<C::CalibrationStatut> announced;

        Watched()
        {
            connect(&calibration, &Calibration::calibrationStateChanged, &calibration,
                    [this](C::CalibrationStatut state) { announced.append(state); });
        }
        void set(std::initializer_list<C::CalibrationStatut> states)
        {
            for (C::CalibrationStatut state : states)
                calibration.setCalibrationState(state);
        }
        C::CalibrationStatut state() const { return calibration.calibrationState(); }
    };
    using States = QList<C::CalibrationStatut>;

    static QString failure(int number)
    {
        return QStringLiteral("INFO [Halvar Library][Calibration]: Calibration number  %1  failed!")
            .arg(number);
    }
    const QString m_unexpected =
        QStringLiteral("DEBUG [Halvar Library][Calibration]: We should not go inside this case.");

private slots:
    void interface_isOneReadOnlyProperty()
    {
        QCOMPARE(metaText(Calibration::staticMetaObject), linesOf(R"(
            property CalibrationEnumClass::CalibrationStatut calibrationState NOTIFY calibrationStateChanged
            signal calibrationStateChanged(CalibrationEnumClass::CalibrationStatut calibrationState))"));
    }

    void fresh_isNotStarted()
    {
        QObject parent;
        const auto *calibration = new Calibration(&parent);
        QCOMPARE(calibration->parent(), &parent);
        QCOMPARE(calibration->calibrationState(), C::NOT_STARTED);
        QCOMPARE(calibration->property("calibrationState").toInt(), int(C::NOT_STARTED));
    }

    /// One transition from each state to each, with what it leaves and says.
    void transition_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("requested");
        QTest::addColumn<int>("result");
        QTest::addColumn<bool>("announced");
        QTest::addColumn<bool>("logged");
        const char *const names[] = {"NOT_STARTED", "IN_PROGRESS", "ERROR", "TOO_MANY_ERRORS", "DONE"};
        for (int from = C::NOT_STARTED; from <= C::DONE; ++from) {
            for (int requested = C::NOT_STARTED; requested <= C::DONE; ++requested) {
                int result = requested;
                bool announced = from != requested
                    && (requested == C::IN_PROGRESS || requested == C::ERROR || requested == C::DONE);
                bool logged = from != requested && !announced;
                if (from == C::ERROR && requested == C::DONE) {
                    result = C::NOT_STARTED;
                    announced = logged = false;
                }
                logged = logged || (announced && requested == C::ERROR);
                QTest::addRow("%s to %s", names[from], names[requested])
                    << from << requested << result << announced << logged;
            }
        }
    }

    void transition()
    {
        QFETCH(int, from);
        QFETCH(int, requested);
        QFETCH(int, result);
        QFETCH(bool, announced);
        QFETCH(bool, logged);
        Watched watched;
        watched.set({C::CalibrationStatut(from)});
        QCOMPARE(int(watched.state()), from);
        watched.announced.clear();
        const LogRecorder log;
        watched.set({C::CalibrationStatut(requested)});
        QCOMPARE(int(watched.state()), result);
        QCOMPARE(watched.announced, announced ? States{C::CalibrationStatut(result)} : States{});
        const int attempts = from == C::IN_PROGRESS ? 1 : 0;
        QCOMPARE(log.lines(),
                 !logged ? QStringList()
                         : QStringList(requested == C::ERROR ? failure(attempts) : m_unexpected));
    }

    void threeFailures_areTooMany()
    {
        Watched watched;
        const LogRecorder log;
        watched.set({C::IN_PROGRESS, C::ERROR, C::IN_PROGRESS, C::ERROR, C::IN_PROGRESS, C::ERROR});
        QCOMPARE(watched.state(), C::TOO_MANY_ERRORS);
        QCOMPARE(
            watched.announced,
            (States{C::IN_PROGRESS, C::ERROR, C::IN_PROGRESS, C::ERROR, C::IN_PROGRESS, C::TOO_MANY_ERRORS}));
        QCOMPARE(log.lines(), (QStringList{failure(1), failure(2), failure(3)}));
    }

    void maximumOfZero_makesTheFirstErrorFinal()
    {
        Watched watched;
        watched.calibration.setNbMaxCalibration(0);
        watched.set({C::ERROR});
        QCOMPARE(watched.state(), C::TOO_MANY_ERRORS);
        QCOMPARE(watched.announced, (States{C::TOO_MANY_ERRORS}));
    }

    void negativeMaximum_makesTheFirstErrorFinal()
    {
        Watched watched;
        watched.calibration.setNbMaxCalibration(-1);
        watched.set({C::IN_PROGRESS, C::ERROR});
        QCOMPARE(watched.state(), C::TOO_MANY_ERRORS);
    }

    void errorTwice_countsOnce()
    {
        Watched watched;
        const LogRecorder log;
        watched.set({C::IN_PROGRESS, C::ERROR, C::ERROR});
        QCOMPARE(watched.announced, (States{C::IN_PROGRESS, C::ERROR}));
        QCOMPARE(log.lines(), (QStringList{failure(1)}));
    }

    void errorAfterTooMany_isCountedAgain()
    {
        Watched watched;
        watched.calibration.setNbMaxCalibration(1);
        const LogRecorder log;
        watched.set({C::IN_PROGRESS, C::ERROR, C::ERROR});
        QCOMPARE(watched.announced, (States{C::IN_PROGRESS, C::TOO_MANY_ERRORS, C::TOO_MANY_ERRORS}));
        QCOMPARE(log.lines(), (QStringList{failure(1), failure(1)}));
    }

    void afterTooMany_theCountGoesOn()
    {
        Watched watched;
        watched.calibration.setNbMaxCalibration(2);
        watched.set({C::IN_PROGRESS, C::ERROR, C::IN_PROGRESS, C::ERROR});
        QCOMPARE(watched.state(), C::TOO_MANY_ERRORS);
        const LogRecorder log;
        watched.set({C::IN_PROGRESS, C::ERROR});
        QCOMPARE(watched.state(), C::TOO_MANY_ERRORS);
        QCOMPARE(log.lines(), (QStringList{failure(3)}));
    }

    void done_clearsTheCount()
    {
        Watched watched;
        watched.set({C::IN_PROGRESS, C::ERROR, C::IN_PROGRESS, C::ERROR, C::IN_PROGRESS, C::DONE});
        const LogRecorder log;
        watched.set({C::IN_PROGRESS, C::ERROR});
        QCOMPARE(watched.state(), C::ERROR);
        QCOMPARE(log.lines(), (QStringList{failure(1)}));
    }

    void resetNbCalibration_clearsTheCountAndAnnouncesNothing()
    {
        Watched watched;
        watched.set({C::IN_PROGRESS, C::ERROR, C::IN_PROGRESS, C::ERROR});
        watched.announced.clear();
        watched.calibration.resetNbCalibration();
        QVERIFY(watched.announced.isEmpty());
        QCOMPARE(watched.state(), C::ERROR);
        const LogRecorder log;
        watched.set({C::IN_PROGRESS, C::ERROR});
        QCOMPARE(watched.state(), C::ERROR);
        QCOMPARE(log.lines(), (QStringList{failure(1)}));
    }

    void doneAfterError_isSilentAndKeepsTheCount()
    {
        Watched watched;
        watched.set({C::IN_PROGRESS, C::ERROR});
        watched.announced.clear();
        const LogRecorder log;
        watched.set({C::DONE});
        QCOMPARE(watched.state(), C::NOT_STARTED);
        QVERIFY(watched.announced.isEmpty());
        QVERIFY(log.lines().isEmpty());
        watched.set({C::IN_PROGRESS, C::ERROR});
        QCOMPARE(log.lines(), (QStringList{failure(2)}));
    }

    void stateIsStoredBeforeItIsAnnounced()
    {
        Calibration calibration;
        calibration.setNbMaxCalibration(0);
        States seen;
        connect(&calibration, &Calibration::calibrationStateChanged, &calibration,
                [&] { seen.append(calibration.calibrationState()); });
        calibration.setCalibrationState(C::IN_PROGRESS);
        calibration.setCalibrationState(C::ERROR);
        calibration.setCalibrationState(C::DONE);
        QCOMPARE(seen, (States{C::IN_PROGRESS, C::TOO_MANY_ERRORS, C::DONE}));
    }
};

QTEST_GUILESS_MAIN(TstCalibration)
#include "tst_calibration.moc"
