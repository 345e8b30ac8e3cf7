// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QAbstractItemModelTester>
#include <QMetaMethod>
#include <QTest>

#include <limits>
#include <memory>

#include "databaseitemlistmodel.h"
#include "listguard.h"
#include "logrecorder.h"
#include "proxylocallistmodel.h"
#include "signallog.h"
#include "udlistmodel.h"

class TstUdListModel : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<DatabaseItemListModel> m_rooms;
    std::unique_ptr<UDListModel> m_list;
    std::unique_ptr<ListGuard> m_guard;
    std::unique_ptr<QAbstractItemModelTester> m_tester;

    QStringList roomsInUse() const
    {
        QStringList result;
        const ProxyLocalListModel *proxy = m_list->localProxyModel();
        for (int row = 0; row < proxy->rowCount(); ++row)
            result.append(proxy->index(row, 0).data(m_rooms->roleForName("title")).toString());
        return result;
    }

private slots:
    void init()
    {
        m_rooms = std::make_unique<DatabaseItemListModel>();
        for (const char *title : {"Cuisine", "Salon", "Chambre"})
            m_rooms->add(QString::fromLatin1(title), QString());
        m_list = std::make_unique<UDListModel>(m_rooms.get());
        m_guard = std::make_unique<ListGuard>(m_list.get());
        m_tester = std::make_unique<QAbstractItemModelTester>(
            m_guard.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    }
    void cleanup()
    {
        m_tester.reset();
        m_guard.reset();
        m_list.reset();
        m_rooms.reset();
    }

    void ownInterface_isTwoSlots()
    {
        const QMetaObject &metaObject = UDListModel::staticMetaObject;
        QStringList found;
        for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
            const QMetaMethod method = metaObject.method(i);
            QCOMPARE(method.methodType(), QMetaMethod::Slot);
            QCOMPARE(method.access(), QMetaMethod::Public);
            found.append(QString::fromLatin1(method.typeName()) + QLatin1Char(' ')
                         + QString::fromLatin1(method.methodSignature()));
        }
        QCOMPARE(found,
                 (QStringList{QStringLiteral("void add(int)"),
                              QStringLiteral("UDStatutEnumClass::UDStatut currentStatut()")}));
    }

    void firstList_registersTheMetaType()
    {
        QVERIFY(QMetaType::type("UDStatutEnumClass::UDStatut") != QMetaType::UnknownType);
    }

    void roles_followTheProperties()
    {
        const QHash<int, QByteArray> expected{
            {256, "qtObject"},    {257, "objectName"},        {258, "identifier"}, {259, "statut"},
            {260, "observation"}, {261, "detectionDecision"}, {262, "local"},      {263, "zone"},
            {264, "element"},     {265, "revetement"},        {266, "substrat"},   {267, "measures"}};
        QCOMPARE(m_list->roleNames(), expected);
    }

    void addToAnEmptyList_givesABlankUnit()
    {
        SignalLog log;
        log.watch(m_list.get(), &QAbstractItemModel::rowsAboutToBeInserted, QStringLiteral("about"));
        log.watch(m_list.get(), &QAbstractItemModel::rowsInserted, QStringLiteral("inserted"));
        log.watch(m_list.get(), &QAbstractItemModel::dataChanged, QStringLiteral("data"));
        log.watch(m_list.get(), &UDListModel::countChanged, QStringLiteral("count"));
        m_list->add(-1);
        QCOMPARE(log.text(), QStringLiteral("about inserted count"));
        const UD *unit = m_list->first();
        QCOMPARE(unit->parent(), m_list.get());
        QCOMPARE(unit->zone(), 'A');
        QCOMPARE(unit->local() + unit->element() + unit->substrat() + unit->revetement(), QString());
        QCOMPARE(unit->statut(), UDStatutEnumClass::RAW);
        QCOMPARE(unit->detectionDecision(), DetectionDecisionEnumClass::NOT_DETERMINED);
    }

    void addOfAnIndex_continuesThatUnitAtTheEnd()
    {
        m_list->add(-1);
        m_list->at(0)->setLocal(QStringLiteral("Cuisine"));
        m_list->at(0)->setZone('E');
        m_list->at(0)->setElement(QStringLiteral("Mur"));
        m_list->at(0)->setSubstrat(QStringLiteral("Plâtre"));
        m_list->at(0)->setRevetement(QStringLiteral("Peinture"));
        m_list->at(0)->setObservation(QStringLiteral("Caché"));
        m_list->at(0)->measures()->append(new Measure);
        m_list->add(-1);
        m_list->add(0);
        QCOMPARE(m_list->size(), 3);
        const UD *unit = m_list->at(2);
        QCOMPARE(unit->local(), QStringLiteral("Cuisine"));
        QCOMPARE(unit->zone(), 'F');
        QCOMPARE(unit->element(), QStringLiteral("Mur"));
        QCOMPARE(unit->substrat(), QStringLiteral("Plâtre"));
        QCOMPARE(unit->revetement(), QStringLiteral("Peinture"));
        QCOMPARE(unit->observation(), QString());
        QVERIFY(m_list->at(2)->measures()->isEmpty());
    }

    void addOfAnIndexOutside_givesABlankUnit_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("behind the end") << 5;
        QTest::newRow("the end") << 3;
        QTest::newRow("below -1") << -2;
        QTest::newRow("lowest") << std::numeric_limits<int>::min();
        QTest::newRow("highest") << std::numeric_limits<int>::max();
    }
    void addOfAnIndexOutside_givesABlankUnit()
    {
        QFETCH(int, index);
        for (int i = 0; i < 3; ++i) {
            m_list->add(-1);
            m_list->last()->setLocal(QStringLiteral("Salon"));
        }
        m_list->add(index);
        QCOMPARE(m_list->size(), 4);
        QCOMPARE(m_list->last()->local(), QString());
        QCOMPARE(m_list->last()->zone(), 'A');
    }

    void add_leavesIdentifierAndCurrentIndex()
    {
        m_list->add(-1);
        m_list->add(0);
        QCOMPARE(m_list->last()->identifier(), 0);
        LogRecorder log;
        QCOMPARE(m_list->currentStatut(), UDStatutEnumClass::RAW);
        QCOMPARE(log.lines(), QStringList());
    }

    void currentStatut_isThatOfTheCurrentUnit_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("statut");
        QTest::addColumn<bool>("logged");
        QTest::newRow("none") << -1 << int(UDStatutEnumClass::RAW) << false;
        QTest::newRow("first") << 0 << int(UDStatutEnumClass::POSITIVE) << true;
        QTest::newRow("second") << 1 << int(UDStatutEnumClass::SKIPPED) << true;
        QTest::newRow("behind the end") << 2 << int(UDStatutEnumClass::RAW) << true;
        QTest::newRow("below -1") << -2 << int(UDStatutEnumClass::RAW) << true;
    }
    void currentStatut_isThatOfTheCurrentUnit()
    {
        QFETCH(int, index);
        QFETCH(bool, logged);
        m_list->add(-1);
        m_list->add(-1);
        m_list->at(0)->setStatut(UDStatutEnumClass::POSITIVE);
        m_list->at(1)->setStatut(UDStatutEnumClass::SKIPPED);
        m_list->updateCurrentIndex(index);
        LogRecorder log;
        QTEST(int(m_list->currentStatut()), "statut");
        const QString line =
            QStringLiteral("DEBUG [Halvar Controller][UDListModel]: currentIndex =  %1").arg(index);
        QCOMPARE(log.lines(), logged ? QStringList{line} : QStringList());
    }

    void measures_areThoseOfTheCurrentUnit()
    {
        QCOMPARE(m_list->measures(), nullptr);
        m_list->updateCurrentIndex(0);
        QCOMPARE(m_list->measures(), nullptr);
        m_list->add(-1);
        m_list->add(-1);
        QCOMPARE(m_list->measures(), m_list->at(0)->measures());
        m_list->updateCurrentIndex(1);
        QCOMPARE(m_list->measures(), m_list->at(1)->measures());
        for (int outside : {-1, -2, 2}) {
            m_list->updateCurrentIndex(outside);
            QCOMPARE(m_list->measures(), nullptr);
        }
    }

    void localProxy_belongsToTheList()
    {
        QCOMPARE(m_list->localProxyModel()->parent(), m_list.get());
        QCOMPARE(m_list->localProxyModel()->sourceModel(), m_rooms.get());
    }

    void localProxy_followsTheUnits()
    {
        QCOMPARE(roomsInUse(), QStringList());
        m_list->add(-1);
        m_list->add(-1);
        m_list->at(0)->setLocal(QStringLiteral("Salon"));
        m_list->at(1)->setLocal(QStringLiteral("Cuisine"));
        QTRY_COMPARE(roomsInUse(), (QStringList{QStringLiteral("Cuisine"), QStringLiteral("Salon")}));
        m_list->at(1)->setLocal(QStringLiteral("Chambre"));
        QTRY_COMPARE(roomsInUse(), (QStringList{QStringLiteral("Salon"), QStringLiteral("Chambre")}));
        m_list->remove(0);
        QTRY_COMPARE(roomsInUse(), QStringList{QStringLiteral("Chambre")});
        m_list->clear();
        QTRY_COMPARE(roomsInUse(), QStringList());
    }

    void localProxy_ignoresTheUnitsOtherChanges()
    {
        m_list->add(-1);
        m_list->at(0)->setLocal(QStringLiteral("Salon"));
        QTRY_COMPARE(roomsInUse().size(), 1);
        SignalLog log;
        log.watch(m_list->localProxyModel(), &QAbstractItemModel::layoutChanged, QStringLiteral("layout"));
        log.watch(m_list->localProxyModel(), &QAbstractItemModel::rowsRemoved, QStringLiteral("removed"));
        m_list->at(0)->setObservation(QStringLiteral("Caché"));
        m_list->at(0)->setZone('B');
        QCoreApplication::processEvents();
        QCOMPARE(log.text(), QString());
    }

    void localProxy_ofManyUnits_isFilteredOnce()
    {
        m_tester.reset(); // which looks at every row at every change
        int filtered = 0;
        connect(m_list->localProxyModel(), &QAbstractItemModel::layoutChanged, this, [&] { ++filtered; });
        for (int i = 0; i < 1000; ++i) {
            m_list->add(-1);
            m_list->last()->setLocal(QStringLiteral("Salon"));
        }
        QTRY_COMPARE(roomsInUse(), QStringList{QStringLiteral("Salon")});
        QVERIFY2(filtered <= 1, qPrintable(QString::number(filtered)));
    }

    void listWithoutRooms_works()
    {
        UDListModel list(nullptr);
        list.add(-1);
        list.first()->setLocal(QStringLiteral("Salon"));
        QCoreApplication::processEvents();
        QCOMPARE(list.localProxyModel()->rowCount(), 0);
    }

    void listThatDiesWithWorkLeft_isNoDanger()
    {
        m_list->add(-1);
        m_list->last()->setLocal(QStringLiteral("Salon"));
        m_tester.reset();
        m_guard.reset();
        QPointer<ProxyLocalListModel> proxy = m_list->localProxyModel();
        m_list.reset();
        QVERIFY(!proxy);
        QCoreApplication::processEvents();
    }

    void roomsThatDieFirst_leaveNoRoom()
    {
        m_list->add(-1);
        m_list->last()->setLocal(QStringLiteral("Salon"));
        QTRY_COMPARE(roomsInUse().size(), 1);
        m_rooms.reset();
        QCOMPARE(m_list->localProxyModel()->rowCount(), 0);
        m_list->add(-1);
        QCoreApplication::processEvents();
        QCOMPARE(m_list->localProxyModel()->rowCount(), 0);
    }
};

QTEST_GUILESS_MAIN(TstUdListModel)
#include "tst_udlistmodel.moc"
