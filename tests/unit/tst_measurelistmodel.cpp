// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include <memory>

#include "listguard.h"
#include "logrecorder.h"
#include "measurelistmodel.h"
#include "signallog.h"

using com::halvar::nap::DetectionResult;

namespace {

DetectionResult result(double value, int decision)
{
    DetectionResult ret;
    ret.set_value(value);
    ret.set_sigma(value / 10);
    ret.set_decision(static_cast<com::halvar::nap::DetectionDecision>(decision));
    return ret;
}

/// Begins a shot: values, but no decision.
DetectionResult start()
{
    DetectionResult ret;
    ret.set_value(9.0);
    ret.set_sigma(0.9);
    return ret;
}

} // namespace

class TstMeasureListModel : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<MeasureListModel> m_list;
    std::unique_ptr<ListGuard> m_guard;
    std::unique_ptr<QAbstractItemModelTester> m_tester;

    /// The concentrations in row order.
    QList<double> values() const
    {
        QList<double> ret;
        for (const Measure *measure : *m_list)
            ret.append(measure->concentration());
        return ret;
    }

private slots:
    void init()
    {
        m_list = std::make_unique<MeasureListModel>();
        m_guard = std::make_unique<ListGuard>(m_list.get());
        m_tester = std::make_unique<QAbstractItemModelTester>(
            m_guard.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    }
    void cleanup()
    {
        m_tester.reset();
        m_guard.reset();
        m_list.reset();
    }

    void firstList_registersTheMetaTypes()
    {
        for (const char *name :
             {"Measure*", "DetectionDecisionEnumClass::DetectionDecision",
              "LocalisationEnumClass::Localisation", "DegradationStateEnumClass::DegradationState"})
            QVERIFY2(QMetaType::type(name) != QMetaType::UnknownType, name);
    }

    void roles_followTheProperties()
    {
        const QHash<int, QByteArray> expected{{256, "qtObject"},
                                              {257, "objectName"},
                                              {258, "concentration"},
                                              {259, "sigma"},
                                              {260, "detectionDecision"},
                                              {261, "localisation"},
                                              {262, "degradationState"},
                                              {263, "conservationState"},
                                              {264, "idNAP"}};
        QCOMPARE(m_list->roleNames(), expected);
    }

    void firstResultOfAll_addsABlankMeasure_andIsNotApplied_data()
    {
        QTest::addColumn<bool>("front");
        QTest::newRow("front") << true;
        QTest::newRow("back") << false;
    }
    void firstResultOfAll_addsABlankMeasure_andIsNotApplied()
    {
        QFETCH(bool, front);
        SignalLog log;
        log.watch(m_list.get(), &QAbstractItemModel::rowsAboutToBeInserted, QStringLiteral("about"));
        log.watch(m_list.get(), &QAbstractItemModel::rowsInserted, QStringLiteral("inserted"));
        log.watch(m_list.get(), &QAbstractItemModel::dataChanged, QStringLiteral("data"));
        log.watch(m_list.get(), &MeasureListModel::countChanged, QStringLiteral("count"));
        const DetectionResult first = result(2.0, com::halvar::nap::POSITIVE);
        front ? m_list->lastFrontMeasure(first) : m_list->lastBackMeasure(first);
        QCOMPARE(log.text(), QStringLiteral("about inserted count"));
        QCOMPARE(values(), QList<double>{0.0});
        QCOMPARE(m_list->first()->detectionDecision(), DetectionDecisionEnumClass::NOT_DETERMINED);
        QCOMPARE(m_list->first()->parent(), m_list.get());
    }

    void frontList_growsAtTheFront()
    {
        m_list->lastFrontMeasure(start());
        m_list->lastFrontMeasure(result(1.0, com::halvar::nap::NEGATIVE));
        QCOMPARE(values(), QList<double>{1.0});
        m_list->lastFrontMeasure(start());
        QCOMPARE(values(), (QList<double>{0.0, 1.0}));
        m_list->lastFrontMeasure(result(2.0, com::halvar::nap::NEGATIVE));
        m_list->lastFrontMeasure(result(3.0, com::halvar::nap::POSITIVE));
        QCOMPARE(values(), (QList<double>{3.0, 1.0}));
        QCOMPARE(m_list->first()->detectionDecision(), DetectionDecisionEnumClass::POSITIVE);
        QCOMPARE(m_list->last()->detectionDecision(), DetectionDecisionEnumClass::NEGATIVE);
    }

    void backList_growsAtTheBack()
    {
        m_list->lastBackMeasure(start());
        m_list->lastBackMeasure(result(1.0, com::halvar::nap::NEGATIVE));
        m_list->lastBackMeasure(start());
        QCOMPARE(values(), (QList<double>{1.0, 0.0}));
        m_list->lastBackMeasure(result(2.0, com::halvar::nap::NEGATIVE));
        m_list->lastBackMeasure(result(3.0, com::halvar::nap::POSITIVE));
        QCOMPARE(values(), (QList<double>{1.0, 3.0}));
        QCOMPARE(m_list->last()->detectionDecision(), DetectionDecisionEnumClass::POSITIVE);
    }

    void result_isDataOfItsRow()
    {
        m_list->lastFrontMeasure(start());
        m_list->lastFrontMeasure(start());
        QSignalSpy spy(m_list.get(), &QAbstractItemModel::dataChanged);
        m_list->lastFrontMeasure(result(1.0, com::halvar::nap::NEGATIVE));
        QCOMPARE(spy.size(), 3);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(spy[i][0].toModelIndex().row(), 0);
            QCOMPARE(spy[i][2].value<QVector<int>>(), QVector<int>{258 + i});
        }
    }

    void finalizing_settlesItsEndOnly()
    {
        m_list->append(new Measure);
        m_list->append(new Measure);
        for (int i = 1; i <= 5; ++i) {
            m_list->first()->setDetectionResult(result(i, com::halvar::nap::NEGATIVE));
            m_list->last()->setDetectionResult(result(10 * i, com::halvar::nap::NEGATIVE));
        }
        m_list->finalizeFirstMeasure();
        QCOMPARE(values(), (QList<double>{2.0, 50.0}));
        m_list->finalizeLastMeasure();
        QCOMPARE(values(), (QList<double>{2.0, 20.0}));
    }

    void measureDeletedBySomebodyElse_isNoneToGoOnWith()
    {
        m_tester.reset();
        m_list->append(new Measure);
        delete m_list->first();
        m_list->finalizeFirstMeasure();
        m_list->finalizeLastMeasure();
        m_list->lastFrontMeasure(result(1.0, com::halvar::nap::NEGATIVE));
        QCOMPARE(m_list->size(), 2);
        m_list->lastBackMeasure(result(1.0, com::halvar::nap::NEGATIVE));
        QCOMPARE(m_list->size(), 3);
        QCOMPARE(m_list->first()->concentration(), 0.0);
        QCOMPARE(m_list->at(1), nullptr);
        QCOMPARE(m_list->last()->concentration(), 0.0);
    }

    void finalizingAnEmptyList_doesNothing()
    {
        LogRecorder log;
        m_list->finalizeFirstMeasure();
        m_list->finalizeLastMeasure();
        QCOMPARE(log.lines(), QStringList());
        QVERIFY(m_list->isEmpty());
    }
};

QTEST_GUILESS_MAIN(TstMeasureListModel)
#include "tst_measurelistmodel.moc"
