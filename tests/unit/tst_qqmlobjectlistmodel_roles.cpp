// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include "logrecorder.h"
#include "watchedlist.h"

/// An item whose every property name but the last is one that delegates use themselves.
class AwkwardItem : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int display MEMBER m_value NOTIFY changed)
    Q_PROPERTY(int modelData MEMBER m_value NOTIFY changed)
    Q_PROPERTY(int model MEMBER m_value NOTIFY changed)
    Q_PROPERTY(int index MEMBER m_value NOTIFY changed)
    Q_PROPERTY(int modeldata MEMBER m_value NOTIFY changed)

signals:
    void changed();

private:
    int m_value = 0;
};

class TstQQmlObjectListModelRoles : public QObject
{
    Q_OBJECT

private slots:
    void roles_followPropertyIndices_withGapsForRefusedNames();
    void refusedName_isWarnedOfOncePerModel();
    void refusedNames_areExactlyTheOnesADelegateUses();
    void roleForName_findsNumberOrMinusOne();
    void data_readsEachRole();
    void data_ofEnumeration_hasItsType_onceThatIsRegistered();
    void data_ofVariantProperty_hasTheTypeOfEachValue();
    void data_withoutItemOrName_isInvalid();
    void data_ofDisplayRole_needsADisplayRoleName();
    void data_ofDerivedItem_readsThePropertyDeclaredLast();
    void setData_writesTheProperty_andReportsItsSuccess();
    void setData_emitsNothingItself();
};

void TstQQmlObjectListModelRoles::roles_followPropertyIndices_withGapsForRefusedNames()
{
    const WatchedList list;
    const QHash<int, QByteArray> expected{
        {256, "qtObject"},
        {ListItem::ObjectNameRole, "objectName"},
        {ListItem::TitleRole, "title"},
        // 259 would be "index"
        {ListItem::RankRole, "rank"},
        {ListItem::UidRole, "uid"},
        {ListItem::StateRole, "state"},
        {ListItem::LeftRole, "left"},
        {ListItem::RightRole, "right"},
        {ListItem::FixedRole, "fixed"},
        {ListItem::AnythingRole, "anything"},
        {ListItem::FriendItemRole, "friendItem"},
    };
    QCOMPARE(list.roleNames(), expected);

    QHash<int, QByteArray> withDisplay = expected;
    withDisplay.insert(Qt::DisplayRole, "title");
    QCOMPARE(WatchedList(QByteArray(), "title").roleNames(), withDisplay);
    QCOMPARE(WatchedList("uid").roleNames(), expected);
}

void TstQQmlObjectListModelRoles::refusedName_isWarnedOfOncePerModel()
{
    LogRecorder log;
    const List first;
    const QStringList line{
        QStringLiteral("WARN Can't have \"index\" as a role name in QQmlObjectListModel<ListItem>")};
    QCOMPARE(log.lines(), line);
    const List second;
    QCOMPARE(log.lines(), line + line);
}

void TstQQmlObjectListModelRoles::refusedNames_areExactlyTheOnesADelegateUses()
{
    LogRecorder log;
    const QQmlObjectListModel<AwkwardItem> list;
    const QString tail = QStringLiteral("\" as a role name in QQmlObjectListModel<AwkwardItem>");
    QCOMPARE(log.lines(),
             QStringList({QStringLiteral("WARN Can't have \"display") + tail,
                          QStringLiteral("WARN Can't have \"modelData") + tail,
                          QStringLiteral("WARN Can't have \"model") + tail,
                          QStringLiteral("WARN Can't have \"index") + tail}));
    const QHash<int, QByteArray> expected{{256, "qtObject"}, {257, "objectName"}, {262, "modeldata"}};
    QCOMPARE(list.roleNames(), expected);
}

void TstQQmlObjectListModelRoles::roleForName_findsNumberOrMinusOne()
{
    const WatchedList list;
    QCOMPARE(list.roleForName("qtObject"), 256);
    QCOMPARE(list.roleForName("rank"), int(ListItem::RankRole));
    QCOMPARE(list.roleForName("Rank"), -1);
    QCOMPARE(list.roleForName("index"), -1);
    QCOMPARE(list.roleForName(QByteArray()), -1);
    // The display role and the property behind it share a name.
    QCOMPARE(WatchedList(QByteArray(), "rank").roleForName("rank"), int(Qt::DisplayRole));
}

void TstQQmlObjectListModelRoles::data_readsEachRole()
{
    WatchedList list;
    ListItem *item = list.add(QStringLiteral("Salon"));
    item->setRank(7);
    item->setLeft(1);
    item->setRight(2);
    item->setFriendItem(&list);
    for (int pass = 0; pass < 2; ++pass) { // the first read of a property settles how it is read from then on
        QCOMPARE(list.read(0, 256).value<QObject *>(), static_cast<QObject *>(item));
        QCOMPARE(list.read(0, ListItem::TitleRole), QVariant(QStringLiteral("Salon")));
        QCOMPARE(list.read(0, ListItem::RankRole), QVariant(7));
        QCOMPARE(list.read(0, ListItem::LeftRole), QVariant(1));
        QCOMPARE(list.read(0, ListItem::RightRole), QVariant(2));
        QCOMPARE(list.read(0, ListItem::FixedRole), QVariant(QStringLiteral("fixed")));
        QCOMPARE(list.read(0, ListItem::FriendItemRole), item->property("friendItem"));
        QCOMPARE(list.read(0, ListItem::FriendItemRole).value<QObject *>(), static_cast<QObject *>(&list));
    }
    QCOMPARE(list.read(0, 256).userType(), int(QMetaType::QObjectStar));
}

void TstQQmlObjectListModelRoles::data_ofEnumeration_hasItsType_onceThatIsRegistered()
{
    WatchedList list;
    ListItem *item = list.add(QString());
    item->setState(ListItem::Done);
    for (int pass = 0; pass < 2; ++pass) {
        const QVariant value = list.read(0, ListItem::StateRole);
        QCOMPARE(value.userType(), item->property("state").userType());
        QCOMPARE(value.toInt(), int(ListItem::Done));
    }
    qRegisterMetaType<ListItem::State>();
    for (int pass = 0; pass < 2; ++pass) {
        const QVariant value = list.read(0, ListItem::StateRole);
        QCOMPARE(value.userType(), qMetaTypeId<ListItem::State>());
        QCOMPARE(value.value<ListItem::State>(), ListItem::Done);
    }
}

void TstQQmlObjectListModelRoles::data_ofVariantProperty_hasTheTypeOfEachValue()
{
    WatchedList list;
    ListItem *item = list.add(QString());
    const QVariantList values{QVariant(), 3, QStringLiteral("three"), 3.0, QVariant()};
    for (const QVariant &value : values) {
        item->setAnything(value);
        QCOMPARE(list.read(0, ListItem::AnythingRole).userType(), value.userType());
        QCOMPARE(list.read(0, ListItem::AnythingRole), value);
    }
}

void TstQQmlObjectListModelRoles::data_withoutItemOrName_isInvalid()
{
    WatchedList list;
    list.fill(2);
    QVERIFY(!list.data(QModelIndex(), ListItem::TitleRole).isValid());
    QVERIFY(!list.data(QModelIndex(), 256).isValid());
    QVERIFY(!list.read(0, 259).isValid()); // the gap that "index" left
    QVERIFY(!list.read(0, 255).isValid());
    QVERIFY(!list.read(0, ListItem::FriendItemRole + 1).isValid());
    QVERIFY(!list.read(0, -1).isValid());
    QVERIFY(!list.read(0, Qt::EditRole).isValid());
}

void TstQQmlObjectListModelRoles::data_ofDisplayRole_needsADisplayRoleName()
{
    WatchedList plain;
    plain.add(QStringLiteral("Salon"));
    QVERIFY(!plain.read(0, Qt::DisplayRole).isValid());
    WatchedList titled(QByteArray(), "title");
    titled.add(QStringLiteral("Salon"));
    QCOMPARE(titled.read(0, Qt::DisplayRole), QVariant(QStringLiteral("Salon")));
    QVERIFY(titled.setData(titled.index(0), QStringLiteral("Entrée"), Qt::DisplayRole));
    QCOMPARE(titled.first()->title(), QStringLiteral("Entrée"));
}

void TstQQmlObjectListModelRoles::data_ofDerivedItem_readsThePropertyDeclaredLast()
{
    WatchedList list;
    list.add(QStringLiteral("Salon"));
    list.append(new ShoutingItem(QStringLiteral("Cuisine")));
    QCOMPARE(list.read(0, ListItem::TitleRole), QVariant(QStringLiteral("Salon")));
    QCOMPARE(list.read(1, ListItem::TitleRole), QVariant(QStringLiteral("CUISINE")));
}

void TstQQmlObjectListModelRoles::setData_writesTheProperty_andReportsItsSuccess()
{
    WatchedList list;
    ListItem *item = list.add(QStringLiteral("Salon"));
    QVERIFY(list.setData(list.index(0), QStringLiteral("Séjour"), ListItem::TitleRole));
    QCOMPARE(item->title(), QStringLiteral("Séjour"));
    QVERIFY(!list.setData(list.index(0), QStringLiteral("Salon"), ListItem::FixedRole));
    QVERIFY(!list.setData(list.index(0), QVariant::fromValue<QObject *>(item), 256));
    QVERIFY(!list.setData(list.index(0), 5, 259));
    QVERIFY(!list.setData(list.index(0), 5, Qt::DisplayRole));
    QVERIFY(!list.setData(QModelIndex(), 5, ListItem::RankRole));
    QCOMPARE(item->index(), 0);
}

void TstQQmlObjectListModelRoles::setData_emitsNothingItself()
{
    WatchedList list;
    ListItem *item = list.add(QStringLiteral("Salon"));
    item->blockSignals(true);
    list.log.clear();
    QVERIFY(list.setData(list.index(0), QStringLiteral("Séjour"), ListItem::TitleRole));
    QCOMPARE(list.log.text(), QString());
    item->blockSignals(false);
    QVERIFY(list.setData(list.index(0), QStringLiteral("Salon"), ListItem::TitleRole));
    QCOMPARE(list.log.text(), QStringLiteral("data"));
    QVERIFY(
        list.setData(list.index(0), QStringLiteral("Salon"), ListItem::TitleRole)); // no change to announce
    QCOMPARE(list.log.text(), QStringLiteral("data"));
}

QTEST_GUILESS_MAIN(TstQQmlObjectListModelRoles)
#include "tst_qqmlobjectlistmodel_roles.moc"
