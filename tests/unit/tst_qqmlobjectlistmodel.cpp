// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "watchedlist.h"

namespace {

void deleteWhatIsDue()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QStringList signatures(const QMetaObject &meta)
{
    QStringList result;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        result.append(QLatin1String(method.typeName()) + QLatin1Char(' ')
                      + QString::fromLatin1(method.methodSignature()));
    }
    return result;
}

} // namespace

class TstQQmlObjectListModel : public QObject
{
    Q_OBJECT

private slots:
    void metaObject_offersCountAndTheOperationsInOrder();
    void rowCount_ignoresItsParent();
    void insertion_announcesRowsThenCount();
    void insertion_ofNullOrOtherClass_doesNothing();
    void insertion_givesAParentOnlyToOrphans();
    void removal_announcesRowsThenCount();
    void removal_outsideTheList_doesNothing();
    void removal_deletesLaterOnlyItsOwnItems();
    void removal_cutsEveryConnectionBetweenListAndItem();
    void clear_removesAllRowsAtOnce();
    void clear_ofEmptyList_emitsNothing();
    void move_takesTheHigherRowToTheLowerOne_data();
    void move_takesTheHigherRowToTheLowerOne();
    void move_announcesOneMoveAndNoCount();
    void lookups_findItemsOrGiveNull();
    void lookups_knowNothingOfOtherClasses();
    void toVarArray_holdsTheItemsInRowOrder();
    void iteration_visitsTheItemsInRowOrder();
    void identifier_findsItsItem();
    void identifier_followsTheProperty_withoutAnyListener();
    void identifier_isKnownBeforeRowsInserted_andUntilRowsRemoved();
    void identifier_changesAfterDataChanged();
    void identifier_sharedByTwoItems_belongsToTheLaterOne();
    void destruction_takesOwnItemsAndLeavesOthers();
    void anyItemClass_canBeListed();
};

void TstQQmlObjectListModel::metaObject_offersCountAndTheOperationsInOrder()
{
    const QMetaObject &meta = QQmlObjectListModelBase::staticMetaObject;
    const QStringList expected{
        QStringLiteral("void countChanged()"),
        QStringLiteral("int size()"),
        QStringLiteral("int count()"),
        QStringLiteral("bool isEmpty()"),
        QStringLiteral("bool contains(QObject*)"),
        QStringLiteral("int indexOf(QObject*)"),
        QStringLiteral("int roleForName(QByteArray)"),
        QStringLiteral("void clear()"),
        QStringLiteral("void append(QObject*)"),
        QStringLiteral("void prepend(QObject*)"),
        QStringLiteral("void insert(int,QObject*)"),
        QStringLiteral("void move(int,int)"),
        QStringLiteral("void remove(QObject*)"),
        QStringLiteral("void remove(int)"),
        QStringLiteral("QObject* get(int)"),
        QStringLiteral("QObject* get(QString)"),
        QStringLiteral("QObject* getFirst()"),
        QStringLiteral("QObject* getLast()"),
        QStringLiteral("QVariantList toVarArray()"),
        QStringLiteral("void onItemPropertyChanged()"),
    };
    QCOMPARE(signatures(meta), expected);
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const bool isSignal = method.name() == "countChanged";
        QCOMPARE(method.methodType(), isSignal ? QMetaMethod::Signal : QMetaMethod::Slot);
        QCOMPARE(method.access(),
                 method.name() == "onItemPropertyChanged" ? QMetaMethod::Protected : QMetaMethod::Public);
    }
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 1);
    const QMetaProperty count = meta.property(meta.propertyOffset());
    QCOMPARE(count.name(), "count");
    QCOMPARE(count.userType(), int(QMetaType::Int));
    QVERIFY(!count.isWritable());
    QCOMPARE(count.notifySignal().methodSignature(), QByteArrayLiteral("countChanged()"));
}

void TstQQmlObjectListModel::rowCount_ignoresItsParent()
{
    WatchedList list;
    list.fill(3);
    QCOMPARE(list.rowCount(), 3);
    QCOMPARE(list.rowCount(list.index(1)), 3);
}

void TstQQmlObjectListModel::insertion_announcesRowsThenCount()
{
    WatchedList list;
    QSignalSpy inserted(&list, &List::rowsInserted);
    int countSeenByRowsInserted = -1;
    connect(&list, &List::rowsInserted, this, [&] { countSeenByRowsInserted = list.count(); });
    list.append(static_cast<QObject *>(new ListItem(QStringLiteral("b"))));
    list.prepend(static_cast<QObject *>(new ListItem(QStringLiteral("a"))));
    list.insert(1, static_cast<QObject *>(new ListItem(QStringLiteral("c"))));
    list.insert(3, new ListItem(QStringLiteral("d")));
    QCOMPARE(list.titles(), QStringLiteral("a c b d"));
    QCOMPARE(list.log.text(),
             QStringLiteral("inserting inserted count inserting inserted count "
                            "inserting inserted count inserting inserted count"));
    const QList<int> rows{0, 0, 1, 3};
    for (int i = 0; i < rows.size(); ++i) {
        QVERIFY(!inserted.at(i).at(0).toModelIndex().isValid());
        QCOMPARE(inserted.at(i).at(1).toInt(), rows.at(i));
        QCOMPARE(inserted.at(i).at(2).toInt(), rows.at(i));
    }
    QCOMPARE(countSeenByRowsInserted, 4);
    QCOMPARE(list.count(), 4);
    QCOMPARE(list.size(), 4);
    QCOMPARE(list.property("count").toInt(), 4);
}

void TstQQmlObjectListModel::insertion_ofNullOrOtherClass_doesNothing()
{
    WatchedList list;
    QObject other;
    list.append(static_cast<QObject *>(nullptr));
    list.prepend(static_cast<ListItem *>(nullptr));
    list.insert(0, static_cast<QObject *>(nullptr));
    list.insert(5, static_cast<ListItem *>(nullptr));
    list.append(&other);
    QCOMPARE(list.log.text(), QString());
    QVERIFY(list.isEmpty());
    QVERIFY(!other.parent());
}

void TstQQmlObjectListModel::insertion_givesAParentOnlyToOrphans()
{
    WatchedList list;
    QObject owner;
    auto *owned = new ListItem(QString(), &owner);
    auto *orphan = new ListItem;
    list.append(owned);
    list.append(orphan);
    QCOMPARE(owned->parent(), &owner);
    QCOMPARE(orphan->parent(), static_cast<QObject *>(&list));
}

void TstQQmlObjectListModel::removal_announcesRowsThenCount()
{
    WatchedList list;
    list.fill(4);
    QSignalSpy removed(&list, &List::rowsRemoved);
    list.remove(1);
    list.remove(static_cast<QObject *>(list.at(2)));
    QCOMPARE(list.titles(), QStringLiteral("0 2"));
    QCOMPARE(list.log.text(), QStringLiteral("removing removed count removing removed count"));
    QCOMPARE(removed.at(0).at(1).toInt(), 1);
    QCOMPARE(removed.at(0).at(2).toInt(), 1);
    QCOMPARE(removed.at(1).at(1).toInt(), 2);
    list.log.clear();
    list.remove(0);
    list.remove(0);
    QCOMPARE(list.log.text(), QStringLiteral("removing removed count removing removed count"));
    QVERIFY(list.isEmpty());
}

void TstQQmlObjectListModel::removal_outsideTheList_doesNothing()
{
    WatchedList list;
    list.fill(2);
    ListItem stranger;
    QObject other;
    list.remove(-1);
    list.remove(2);
    list.remove(&stranger);
    list.remove(&other);
    list.remove(static_cast<QObject *>(nullptr));
    QCOMPARE(list.log.text(), QString());
    QCOMPARE(list.count(), 2);
}

void TstQQmlObjectListModel::removal_deletesLaterOnlyItsOwnItems()
{
    WatchedList list;
    QObject owner;
    const QPointer<ListItem> own(list.add(QStringLiteral("own")));
    const QPointer<ListItem> foreign(new ListItem(QStringLiteral("foreign"), &owner));
    list.append(foreign.data());
    list.remove(0);
    list.remove(0);
    QVERIFY(own); // whoever is using it just now may finish
    deleteWhatIsDue();
    QVERIFY(!own);
    QVERIFY(foreign);
}

void TstQQmlObjectListModel::removal_cutsEveryConnectionBetweenListAndItem()
{
    WatchedList list;
    QObject owner;
    auto *item = new ListItem(QString(), &owner);
    list.append(item);
    connect(item, &ListItem::greeted, &list, &List::clear);
    connect(&list, &List::countChanged, item, &ListItem::greeted);
    SignalLog greetings;
    greetings.watch(item, &ListItem::greeted, QStringLiteral("greeted"));
    list.remove(0);
    list.add(QStringLiteral("stays"));
    list.log.clear();
    QCOMPARE(greetings.text(), QString()); // not even by the countChanged that the removal itself emits
    emit item->greeted();
    item->setTitle(QStringLiteral("new"));
    item->setRank(1);
    item->setObjectName(QStringLiteral("name"));
    QCOMPARE(greetings.text(), QStringLiteral("greeted"));
    QCOMPARE(list.log.text(), QString());
    QCOMPARE(list.count(), 1);
}

void TstQQmlObjectListModel::clear_removesAllRowsAtOnce()
{
    WatchedList list("uid");
    QObject owner;
    list.fill(3);
    QPointer<ListItem> own(list.first());
    auto *foreign = new ListItem(QString(), &owner);
    foreign->setUid(QStringLiteral("f"));
    list.append(foreign);
    list.log.clear();
    QSignalSpy removed(&list, &List::rowsRemoved);
    list.clear();
    QCOMPARE(list.log.text(), QStringLiteral("removing removed count"));
    QCOMPARE(removed.at(0).at(1).toInt(), 0);
    QCOMPARE(removed.at(0).at(2).toInt(), 3);
    QVERIFY(list.isEmpty());
    QVERIFY(!list.get(QStringLiteral("f")));
    QVERIFY(own);
    deleteWhatIsDue();
    QVERIFY(!own);
    foreign->setTitle(QStringLiteral("new"));
    QCOMPARE(list.log.text(), QStringLiteral("removing removed count"));
}

void TstQQmlObjectListModel::clear_ofEmptyList_emitsNothing()
{
    WatchedList list;
    list.clear();
    QCOMPARE(list.log.text(), QString());
}

void TstQQmlObjectListModel::move_takesTheHigherRowToTheLowerOne_data()
{
    QTest::addColumn<int>("idx");
    QTest::addColumn<int>("pos");
    QTest::addColumn<QString>("titles");
    QTest::newRow("up") << 3 << 1 << QStringLiteral("0 3 1 2 4");
    QTest::newRow("down moves the same item up") << 1 << 3 << QStringLiteral("0 3 1 2 4");
    QTest::newRow("neighbours swap") << 1 << 2 << QStringLiteral("0 2 1 3 4");
    QTest::newRow("neighbours swap either way") << 2 << 1 << QStringLiteral("0 2 1 3 4");
    QTest::newRow("ends") << 0 << 4 << QStringLiteral("4 0 1 2 3");
    QTest::newRow("same row") << 2 << 2 << QStringLiteral("0 1 2 3 4");
    QTest::newRow("before the list") << -1 << 2 << QStringLiteral("0 1 2 3 4");
    QTest::newRow("behind the list") << 2 << 5 << QStringLiteral("0 1 2 3 4");
}

void TstQQmlObjectListModel::move_takesTheHigherRowToTheLowerOne()
{
    QFETCH(int, idx);
    QFETCH(int, pos);
    QFETCH(QString, titles);
    WatchedList list;
    list.fill(5);
    list.move(idx, pos);
    QCOMPARE(list.titles(), titles);
    const bool moved = titles != QStringLiteral("0 1 2 3 4");
    QCOMPARE(list.log.text(), moved ? QStringLiteral("moving moved") : QString());
}

void TstQQmlObjectListModel::move_announcesOneMoveAndNoCount()
{
    WatchedList list;
    list.fill(5);
    QSignalSpy moved(&list, &List::rowsMoved);
    list.move(1, 4);
    QCOMPARE(list.log.text(), QStringLiteral("moving moved"));
    QCOMPARE(moved.at(0).at(1).toInt(), 4);
    QCOMPARE(moved.at(0).at(2).toInt(), 4);
    QCOMPARE(moved.at(0).at(4).toInt(), 1);
}

void TstQQmlObjectListModel::lookups_findItemsOrGiveNull()
{
    WatchedList list;
    QVERIFY(!list.getFirst());
    QVERIFY(!list.getLast());
    QVERIFY(!list.get(0));
    list.fill(3);
    ListItem *middle = list.at(1);
    QCOMPARE(list.indexOf(static_cast<QObject *>(middle)), 1);
    QCOMPARE(list.indexOf(middle), 1);
    QVERIFY(list.contains(middle));
    QCOMPARE(list.get(1), static_cast<QObject *>(middle));
    QCOMPARE(list.getFirst(), list.get(0));
    QCOMPARE(list.getLast(), list.get(2));
    QCOMPARE(list.first()->title() + list.last()->title(), QStringLiteral("02"));
    QVERIFY(!list.get(-1));
    QVERIFY(!list.get(3));
    QVERIFY(!list.at(3));
    QVERIFY(!list.get(QStringLiteral("1"))); // no identifiers in this list
}

void TstQQmlObjectListModel::lookups_knowNothingOfOtherClasses()
{
    WatchedList list;
    list.fill(1);
    QObject other;
    ListItem stranger;
    QVERIFY(!list.contains(&other));
    QVERIFY(!list.contains(&stranger));
    QVERIFY(!list.contains(nullptr));
    QCOMPARE(list.indexOf(&other), -1);
    QCOMPARE(list.indexOf(static_cast<QObject *>(nullptr)), -1);
}

void TstQQmlObjectListModel::toVarArray_holdsTheItemsInRowOrder()
{
    WatchedList list;
    QCOMPARE(list.toVarArray(), QVariantList());
    list.fill(3);
    const QVariantList array = list.toVarArray();
    QCOMPARE(array.size(), 3);
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(array.at(row).userType(), qMetaTypeId<ListItem *>());
        QCOMPARE(array.at(row).value<ListItem *>(), list.at(row));
    }
}

void TstQQmlObjectListModel::iteration_visitsTheItemsInRowOrder()
{
    WatchedList list;
    list.fill(3);
    QCOMPARE(list.titles(), QStringLiteral("0 1 2"));
    QCOMPARE(int(std::distance(list.constBegin(), list.constEnd())), 3);
    QCOMPARE(*list.begin(), list.first());
    QCOMPARE(list.toList().size(), 3);
}

void TstQQmlObjectListModel::identifier_findsItsItem()
{
    WatchedList list("uid");
    ListItem *item = new ListItem;
    item->setUid(QStringLiteral("u1"));
    list.append(item);
    list.add(QStringLiteral("nameless"));
    QCOMPARE(list.get(QStringLiteral("u1")), static_cast<QObject *>(item));
    QCOMPARE(list.getByUid(QStringLiteral("u1")), item);
    QVERIFY(!list.get(QString())); // an empty identifier is never indexed
    QVERIFY(!list.get(QStringLiteral("u2")));
    list.remove(0);
    QVERIFY(!list.get(QStringLiteral("u1")));
}

void TstQQmlObjectListModel::identifier_followsTheProperty_withoutAnyListener()
{
    List list(nullptr, "uid");
    auto *item = new ListItem;
    list.append(item);
    item->setUid(QStringLiteral("u1"));
    QCOMPARE(list.getByUid(QStringLiteral("u1")), item);
    item->setUid(QStringLiteral("u2"));
    QCOMPARE(list.getByUid(QStringLiteral("u2")), item);
    QVERIFY(!list.getByUid(QStringLiteral("u1")));
    item->setUid(QString());
    QVERIFY(!list.getByUid(QStringLiteral("u2")));
}

void TstQQmlObjectListModel::identifier_isKnownBeforeRowsInserted_andUntilRowsRemoved()
{
    WatchedList list("uid");
    auto *item = new ListItem;
    item->setUid(QStringLiteral("u1"));
    QStringList seen;
    const auto note = [&] {
        seen.append(list.getByUid(QStringLiteral("u1")) ? QStringLiteral("yes") : QStringLiteral("no"));
    };
    connect(&list, &List::rowsAboutToBeInserted, this, note);
    connect(&list, &List::rowsInserted, this, note);
    connect(&list, &List::rowsAboutToBeRemoved, this, note);
    connect(&list, &List::rowsRemoved, this, note);
    list.append(item);
    list.remove(0);
    QCOMPARE(seen.join(QLatin1Char(' ')), QStringLiteral("no yes yes no"));
}

void TstQQmlObjectListModel::identifier_changesAfterDataChanged()
{
    WatchedList list("uid");
    ListItem *item = list.add(QString());
    item->setUid(QStringLiteral("old"));
    ListItem *foundByOld = nullptr;
    ListItem *foundByNew = item;
    connect(&list, &List::dataChanged, this, [&] {
        foundByOld = list.getByUid(QStringLiteral("old"));
        foundByNew = list.getByUid(QStringLiteral("new"));
    });
    item->setUid(QStringLiteral("new"));
    QCOMPARE(foundByOld, item);
    QVERIFY(!foundByNew);
    QCOMPARE(list.getByUid(QStringLiteral("new")), item);
    QVERIFY(!list.getByUid(QStringLiteral("old")));
}

void TstQQmlObjectListModel::identifier_sharedByTwoItems_belongsToTheLaterOne()
{
    WatchedList list("uid");
    ListItem *first = list.add(QStringLiteral("first"));
    ListItem *second = list.add(QStringLiteral("second"));
    const QString shared = QStringLiteral("shared");
    first->setUid(shared);
    second->setUid(shared);
    QCOMPARE(list.getByUid(shared), second);
    first->setUid(QStringLiteral("other")); // had lost the identifier already, so nothing of second's goes
    QCOMPARE(list.getByUid(shared), second);
    first->setUid(shared);
    QCOMPARE(list.getByUid(shared), first);
    list.remove(second);
    QCOMPARE(list.getByUid(shared), first);
    list.remove(first);
    QVERIFY(!list.getByUid(shared));
}

void TstQQmlObjectListModel::destruction_takesOwnItemsAndLeavesOthers()
{
    QObject owner;
    const QPointer<ListItem> foreign(new ListItem(QStringLiteral("foreign"), &owner));
    QPointer<ListItem> own;
    {
        WatchedList list("uid", "title");
        own = list.add(QStringLiteral("own"));
        list.append(foreign.data());
    }
    QVERIFY(!own);
    QVERIFY(foreign);
    foreign->setTitle(QStringLiteral("alive"));
    QCOMPARE(foreign->title(), QStringLiteral("alive"));
}

void TstQQmlObjectListModel::anyItemClass_canBeListed()
{
    QQmlObjectListModel<QTimer> list(nullptr, "objectName", "interval");
    auto *timer = new QTimer;
    list.append(timer);
    timer->setObjectName(QStringLiteral("t"));
    QCOMPARE(list.getByUid(QStringLiteral("t")), timer);
    QVERIFY(list.setData(list.index(0), 40, Qt::DisplayRole));
    QCOMPARE(timer->interval(), 40);
    QCOMPARE(list.roleForName("singleShot"), 257 + 1);
}

QTEST_GUILESS_MAIN(TstQQmlObjectListModel)
#include "tst_qqmlobjectlistmodel.moc"
