// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QAbstractItemModelTester>
#include <QPointer>
#include <QTest>

#include <memory>

#include "databaseitemlistmodel.h"
#include "listguard.h"
#include "proxylocallistmodel.h"
#include "udlistmodel.h"

namespace {

/// The proxy under the eyes of the model tester, which needs a guard between it and the rooms.
struct WatchedProxy : ProxyLocalListModel
{
    WatchedProxy(DatabaseItemListModel *rooms, UDListModel *units)
        : ProxyLocalListModel(rooms, units)
        , guard(rooms)
    {
        setSourceModel(&guard);
        new QAbstractItemModelTester(this, QAbstractItemModelTester::FailureReportingMode::QtTest, this);
    }
    ListGuard guard;
};

} // namespace

class TstProxyLocalListModel : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void metaObject_offersTheTwoLookups();
    void rooms_areShownOnceAUnitUsesThem();
    void rooms_keepTheOrderOfTheReferenceList();
    void rooms_areMatchedExactly();
    void rooms_ofTheSameTitle_areAllShown();
    void withoutUnits_noRoomIsShown();
    void withoutLists_noRoomIsShown();
    void unitsThatChange_countOnceTheOwnerInvalidates();
    void roomsThatChange_areFollowed();
    void unitsThatChangeWhileAViewIsRefreshed_countAtOnce();
    void proxyDeletedByAView_isLeftAlone();
    void roomsThatComeOrChange_standWhereTheirListHasThem();
    void unitsDeletedOutside_areSkipped();
    void unitListGone_showsNoRoom();
    void roomListGone_showsNoRoom();
    void findCurrentIndex_findsTheRowOrMinusOne();
    void firstTitle_isThatOfRow0OrEmpty();

private:
    void addUnit(const char *local);
    QString titles(const QAbstractItemModel &proxy) const;

    std::unique_ptr<DatabaseItemListModel> m_rooms;
    std::unique_ptr<UDListModel> m_units;
};

void TstProxyLocalListModel::init()
{
    m_units.reset();
    m_rooms = std::make_unique<DatabaseItemListModel>();
    m_units = std::make_unique<UDListModel>(nullptr);
    for (const char *title : {"Salon", "Cuisine", "Entrée", "Chambre"})
        m_rooms->add(QString::fromUtf8(title), QString());
}

void TstProxyLocalListModel::addUnit(const char *local)
{
    m_units->add(-1);
    m_units->last()->setLocal(QString::fromUtf8(local));
}

QString TstProxyLocalListModel::titles(const QAbstractItemModel &proxy) const
{
    QStringList result;
    for (int row = 0; row < proxy.rowCount(); ++row)
        result.append(proxy.index(row, 0).data(m_rooms->roleForName("title")).toString());
    return result.join(QLatin1Char(' '));
}

void TstProxyLocalListModel::metaObject_offersTheTwoLookups()
{
    const QMetaObject &meta = ProxyLocalListModel::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods.append(QLatin1String(meta.method(i).typeName()) + QLatin1Char(' ')
                       + QString::fromLatin1(meta.method(i).methodSignature()));
    QCOMPARE(methods,
             QStringList(
                 {QStringLiteral("int findCurrentIndex(QString)"), QStringLiteral("QString firstTitle()")}));
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
}

void TstProxyLocalListModel::rooms_areShownOnceAUnitUsesThem()
{
    addUnit("Cuisine");
    addUnit("Chambre");
    addUnit("Chambre");
    addUnit("Grenier"); // a room that the reference list does not have
    ProxyLocalListModel proxy(m_rooms.get(), m_units.get());
    QCOMPARE(titles(proxy), QStringLiteral("Cuisine Chambre"));
    QCOMPARE(proxy.sourceModel(), m_rooms.get());
}

void TstProxyLocalListModel::rooms_keepTheOrderOfTheReferenceList()
{
    for (const char *local : {"Chambre", "Entrée", "Cuisine", "Salon"})
        addUnit(local);
    ProxyLocalListModel proxy(m_rooms.get(), m_units.get());
    QCOMPARE(titles(proxy), QStringLiteral("Salon Cuisine Entrée Chambre"));
    QVERIFY(proxy.dynamicSortFilter());
    QCOMPARE(proxy.sortColumn(), 0);
    QCOMPARE(proxy.sortOrder(), Qt::AscendingOrder);
    QCOMPARE(proxy.sortRole(), -1); // reference items have no rank of their own
    m_rooms->move(0, 3);
    QCOMPARE(titles(proxy), QStringLiteral("Chambre Salon Cuisine Entrée"));
}

void TstProxyLocalListModel::rooms_areMatchedExactly()
{
    addUnit("salon");
    addUnit("Entree");
    addUnit("Cuisine ");
    ProxyLocalListModel proxy(m_rooms.get(), m_units.get());
    QCOMPARE(titles(proxy), QString());
}

void TstProxyLocalListModel::rooms_ofTheSameTitle_areAllShown()
{
    m_rooms->add(QStringLiteral("Salon"), QString());
    addUnit("Salon");
    ProxyLocalListModel proxy(m_rooms.get(), m_units.get());
    QCOMPARE(titles(proxy), QStringLiteral("Salon Salon"));
    QCOMPARE(proxy.findCurrentIndex(QStringLiteral("Salon")), 0);
}

void TstProxyLocalListModel::withoutUnits_noRoomIsShown()
{
    m_rooms->add(QString(), QString()); // not even one without a title
    ProxyLocalListModel proxy(m_rooms.get(), m_units.get());
    QCOMPARE(proxy.rowCount(), 0);
}

void TstProxyLocalListModel::withoutLists_noRoomIsShown()
{
    addUnit("Salon");
    ProxyLocalListModel withoutRooms(nullptr, m_units.get());
    QCOMPARE(withoutRooms.rowCount(), 0);
    QCOMPARE(withoutRooms.firstTitle(), QString());
    QCOMPARE(withoutRooms.findCurrentIndex(QStringLiteral("Salon")), -1);
    ProxyLocalListModel withoutUnits(m_rooms.get(), nullptr);
    QCOMPARE(withoutUnits.rowCount(), 0);
}

void TstProxyLocalListModel::unitsThatChange_countOnceTheOwnerInvalidates()
{
    WatchedProxy proxy(m_rooms.get(), m_units.get());
    QCOMPARE(proxy.rowCount(), 0);
    addUnit("Salon");
    QCOMPARE(proxy.rowCount(), 0);
    proxy.invalidate();
    QCOMPARE(titles(proxy), QStringLiteral("Salon"));
    m_units->first()->setLocal(QStringLiteral("Cuisine"));
    QCOMPARE(titles(proxy), QStringLiteral("Salon"));
    proxy.invalidate();
    QCOMPARE(titles(proxy), QStringLiteral("Cuisine"));
}

void TstProxyLocalListModel::roomsThatChange_areFollowed()
{
    addUnit("Salon");
    const WatchedProxy proxy(m_rooms.get(), m_units.get());
    QCOMPARE(titles(proxy), QStringLiteral("Salon"));
    m_rooms->add(QStringLiteral("Salon"), QString(), QString(), 0);
    QCOMPARE(titles(proxy), QStringLiteral("Salon Salon"));
    m_rooms->first()->setTitle(QStringLiteral("Grenier"));
    QCOMPARE(titles(proxy), QStringLiteral("Salon"));
    m_rooms->clear();
    QCOMPARE(proxy.rowCount(), 0);
}

void TstProxyLocalListModel::unitsThatChangeWhileAViewIsRefreshed_countAtOnce()
{
    UDListModel units(m_rooms.get());
    ProxyLocalListModel &proxy = *units.localProxyModel();
    QStringList seen;
    connect(&proxy, &QAbstractItemModel::layoutChanged, this, [&] {
        seen.append(titles(proxy));
        if (seen.size() > 1)
            return;
        units.first()->setLocal(QStringLiteral("Grenier"));
        m_rooms->last()->setTitle(QStringLiteral("Grenier"));
        seen.append(titles(proxy));
    });
    units.add(-1);
    units.first()->setLocal(QStringLiteral("Cuisine"));
    QTRY_COMPARE(seen.size(), 3);
    QCOMPARE(seen,
             (QStringList{QStringLiteral("Cuisine"), QStringLiteral("Cuisine Grenier"),
                          QStringLiteral("Grenier")}));
}

void TstProxyLocalListModel::proxyDeletedByAView_isLeftAlone()
{
    addUnit("Salon");
    QPointer<ProxyLocalListModel> proxy = new ProxyLocalListModel(m_rooms.get(), m_units.get());
    connect(proxy, &QAbstractItemModel::layoutChanged, this, [&proxy] { delete proxy; });
    proxy->invalidateLater();
    QTRY_VERIFY(proxy.isNull());
}

void TstProxyLocalListModel::roomsThatComeOrChange_standWhereTheirListHasThem()
{
    for (const char *local : {"Salon", "Cuisine", "Chambre", "Cave"})
        addUnit(local);
    const WatchedProxy proxy(m_rooms.get(), m_units.get());
    QCOMPARE(titles(proxy), QStringLiteral("Salon Cuisine Chambre"));
    m_rooms->add(QStringLiteral("Cave"), QString(), QString(), 0);
    QCOMPARE(titles(proxy), QStringLiteral("Cave Salon Cuisine Chambre"));
    m_rooms->at(2)->setTitle(QStringLiteral("Salon"));
    QCOMPARE(titles(proxy), QStringLiteral("Cave Salon Salon Chambre"));
    m_rooms->at(3)->setTitle(QStringLiteral("Cuisine")); // the entrance, which no unit used
    QCOMPARE(titles(proxy), QStringLiteral("Cave Salon Salon Cuisine Chambre"));
}

void TstProxyLocalListModel::unitsDeletedOutside_areSkipped()
{
    addUnit("Salon");
    addUnit("Cuisine");
    delete m_units->first();
    ProxyLocalListModel proxy(m_rooms.get(), m_units.get());
    QCOMPARE(titles(proxy), QStringLiteral("Cuisine"));
}

void TstProxyLocalListModel::unitListGone_showsNoRoom()
{
    addUnit("Salon");
    ProxyLocalListModel proxy(m_rooms.get(), m_units.get());
    QCOMPARE(proxy.rowCount(), 1);
    m_units.reset();
    proxy.invalidate();
    QCOMPARE(proxy.rowCount(), 0);
}

void TstProxyLocalListModel::roomListGone_showsNoRoom()
{
    addUnit("Salon");
    ProxyLocalListModel proxy(m_rooms.get(), m_units.get());
    QCOMPARE(proxy.rowCount(), 1);
    m_rooms.reset();
    QCOMPARE(proxy.rowCount(), 0);
    QCOMPARE(proxy.firstTitle(), QString());
}

void TstProxyLocalListModel::findCurrentIndex_findsTheRowOrMinusOne()
{
    addUnit("Cuisine");
    addUnit("Chambre");
    ProxyLocalListModel proxy(m_rooms.get(), m_units.get());
    QCOMPARE(proxy.findCurrentIndex(QStringLiteral("Cuisine")), 0);
    QCOMPARE(proxy.findCurrentIndex(QStringLiteral("Chambre")), 1);
    QCOMPARE(proxy.findCurrentIndex(QStringLiteral("Salon")), -1); // used by no unit
    QCOMPARE(proxy.findCurrentIndex(QStringLiteral("Grenier")), -1);
    QCOMPARE(proxy.findCurrentIndex(QString()), -1);
}

void TstProxyLocalListModel::firstTitle_isThatOfRow0OrEmpty()
{
    WatchedProxy proxy(m_rooms.get(), m_units.get());
    QCOMPARE(proxy.firstTitle(), QString());
    addUnit("Chambre");
    addUnit("Cuisine");
    proxy.invalidate();
    QCOMPARE(proxy.firstTitle(), QStringLiteral("Cuisine"));
}

QTEST_GUILESS_MAIN(TstProxyLocalListModel)
#include "tst_proxylocallistmodel.moc"
