// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <rapidcheck.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

#include "watchedlist.h"

namespace {

void deleteWhatIsDue()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// "row:role,role" of each dataChanged.
struct Changes : QObject
{
    explicit Changes(List *list)
    {
        connect(list, &List::dataChanged, this,
                [this](const QModelIndex &from, const QModelIndex &to, const QVector<int> &roles) {
                    QStringList numbers;
                    for (int role : roles)
                        numbers.append(QString::number(role));
                    QString line =
                        QString::number(from.row()) + QLatin1Char(':') + numbers.join(QLatin1Char(','));
                    if (to != from || from.column() != 0 || from.parent().isValid())
                        line += QStringLiteral(" and more");
                    lines.append(line);
                });
    }
    QString take() { return std::exchange(lines, {}).join(QLatin1Char(' ')); }
    QStringList lines;
};

/// Counts the calls of the slot, which a subclass may take over.
struct CountingList : List
{
    using List::List;
    void onItemPropertyChanged() override
    {
        ++calls;
        if (forward)
            List::onItemPropertyChanged();
    }
    int calls = 0;
    bool forward = true;
};

} // namespace

class TstQQmlObjectListModelChanges : public QObject
{
    Q_OBJECT

private slots:
    void propertyChange_isReportedByRowAndRole();
    void propertyChange_ofDisplayedProperty_reportsTheDisplayRoleToo();
    void propertiesSharingASignal_reportTheLaterOnesRole();
    void refusedNamesAndOtherSignals_reportNothing();
    void propertyChange_findsTheRowAfterEveryKindOfShift();
    void propertyChange_insideAnother_isReportedInside();
    void itemInsertedTwice_isReportedOnceForItsFirstRow();
    void itemInsertedTwiceAndRemovedOnce_isSilent();
    void itemInsertedTwiceAndRemovedOnce_leavesASafeRow();
    void itemInTwoLists_isReportedByBoth();
    void slot_reportsForWhoeverConnectsASignalToIt();
    void slot_ignoresOtherSenders();
    void slot_isCalledWhenASubclassTakesItOver();
    void listener_mayRemoveTheItem();
    void listener_mayDeleteTheItem();
    void listener_mayClearTheList();
    void listener_mayDeleteTheList();
    void listener_mayInsertAndMove();
    void itemDeletedOutside_leavesANullRow();
    void itemDeletedOutside_losesItsIdentifier();
    void nullRows_canBeRemovedMovedAndCleared();
    void propertyChange_takesNoLongerInALongList();
    void anyHistory_matchesAPlainVector();
};

void TstQQmlObjectListModelChanges::propertyChange_isReportedByRowAndRole()
{
    WatchedList list;
    list.fill(3);
    Changes changes(&list);
    list.at(1)->setTitle(QStringLiteral("new"));
    list.at(2)->setRank(4);
    list.at(0)->setState(ListItem::Busy);
    list.at(0)->setObjectName(QStringLiteral("name"));
    QCOMPARE(changes.take(), QStringLiteral("1:258 2:260 0:262 0:257"));
    QVERIFY(list.setData(list.index(2), QStringLiteral("set"), ListItem::TitleRole));
    QCOMPARE(changes.take(), QStringLiteral("2:258"));
}

void TstQQmlObjectListModelChanges::propertyChange_ofDisplayedProperty_reportsTheDisplayRoleToo()
{
    WatchedList list(QByteArray(), "title");
    list.fill(1);
    Changes changes(&list);
    list.first()->setTitle(QStringLiteral("new"));
    list.first()->setRank(1);
    QCOMPARE(changes.take(), QStringLiteral("0:258,0 0:260"));
}

void TstQQmlObjectListModelChanges::propertiesSharingASignal_reportTheLaterOnesRole()
{
    WatchedList list;
    list.fill(1);
    Changes changes(&list);
    list.first()->setLeft(1);
    list.first()->setRight(1);
    QCOMPARE(changes.take(), QStringLiteral("0:264 0:264"));
}

void TstQQmlObjectListModelChanges::refusedNamesAndOtherSignals_reportNothing()
{
    WatchedList list;
    list.fill(1);
    Changes changes(&list);
    list.first()->setIndex(5);
    emit list.first()->greeted();
    QCOMPARE(changes.take(), QString());
}

void TstQQmlObjectListModelChanges::propertyChange_findsTheRowAfterEveryKindOfShift()
{
    WatchedList list;
    list.fill(9);
    Changes changes(&list);
    ListItem *item = list.at(4);
    int rank = 0;
    const auto rowReported = [&] {
        item->setRank(++rank);
        return changes.take();
    };
    list.prepend(new ListItem);
    QCOMPARE(rowReported(), QStringLiteral("5:260"));
    list.insert(2, new ListItem);
    list.insert(2, new ListItem);
    QCOMPARE(rowReported(), QStringLiteral("7:260"));
    list.insert(9, new ListItem);
    list.append(new ListItem);
    QCOMPARE(rowReported(), QStringLiteral("7:260"));
    list.remove(0);
    list.remove(0);
    list.remove(0);
    QCOMPARE(rowReported(), QStringLiteral("4:260"));
    list.move(7, 1);
    QCOMPARE(rowReported(), QStringLiteral("5:260"));
    list.move(5, 0);
    QCOMPARE(rowReported(), QStringLiteral("0:260"));
    list.move(0, list.count() - 1);
    QCOMPARE(rowReported(), QStringLiteral("1:260"));
    while (list.count() > 2)
        list.remove(2);
    list.remove(0);
    QCOMPARE(rowReported(), QStringLiteral("0:260"));
}

void TstQQmlObjectListModelChanges::propertyChange_insideAnother_isReportedInside()
{
    WatchedList list;
    list.fill(2);
    Changes changes(&list);
    connect(&list, &List::dataChanged, this, [&] { list.at(1)->setRank(qMin(3, list.at(1)->rank() + 1)); });
    list.at(0)->setTitle(QStringLiteral("new"));
    QCOMPARE(changes.take(), QStringLiteral("0:258 1:260 1:260 1:260"));
}

void TstQQmlObjectListModelChanges::itemInsertedTwice_isReportedOnceForItsFirstRow()
{
    WatchedList list;
    list.fill(2);
    auto *item = new ListItem;
    list.append(item);
    list.add(QStringLiteral("between"));
    list.append(item);
    Changes changes(&list);
    item->setRank(1);
    QCOMPARE(changes.take(), QStringLiteral("2:260"));
    list.prepend(item);
    changes.take();
    item->setRank(2);
    QCOMPARE(changes.take(), QStringLiteral("0:260"));
    QCOMPARE(list.indexOf(item), 0);
}

void TstQQmlObjectListModelChanges::itemInsertedTwiceAndRemovedOnce_isSilent()
{
    WatchedList list;
    QObject owner;
    auto *item = new ListItem(QString(), &owner);
    list.append(item);
    list.append(item);
    list.remove(0);
    Changes changes(&list);
    item->setRank(1);
    QCOMPARE(changes.take(), QString());
    QCOMPARE(list.indexOf(item), 0);
    list.append(item); // entering again connects again
    item->setRank(2);
    QCOMPARE(changes.take(), QStringLiteral("0:260"));
}

void TstQQmlObjectListModelChanges::itemInsertedTwiceAndRemovedOnce_leavesASafeRow()
{
    WatchedList list;
    auto *item = list.add(QStringLiteral("twice"));
    list.append(item);
    list.remove(0); // the list is its parent, so it goes, though a row still holds it
    QCOMPARE(list.at(0), item);
    deleteWhatIsDue();
    QCOMPARE(list.count(), 1);
    QVERIFY(!list.at(0));
}

void TstQQmlObjectListModelChanges::itemInTwoLists_isReportedByBoth()
{
    WatchedList first;
    WatchedList second;
    second.fill(1);
    ListItem *item = first.add(QString());
    second.append(item);
    Changes ofFirst(&first);
    Changes ofSecond(&second);
    item->setRank(1);
    QCOMPARE(ofFirst.take(), QStringLiteral("0:260"));
    QCOMPARE(ofSecond.take(), QStringLiteral("1:260"));
    second.remove(item);
    deleteWhatIsDue();
    item->setRank(2);
    QCOMPARE(ofFirst.take(), QStringLiteral("0:260"));
    QCOMPARE(ofSecond.take(), QString());
}

void TstQQmlObjectListModelChanges::slot_reportsForWhoeverConnectsASignalToIt()
{
    WatchedList list("uid");
    list.fill(2);
    ListItem *item = list.at(1);
    item->setUid(QStringLiteral("u"));
    Changes changes(&list);
    QVERIFY(connect(item, SIGNAL(titleChanged()), &list, SLOT(onItemPropertyChanged())));
    QVERIFY(connect(item, SIGNAL(greeted()), &list, SLOT(onItemPropertyChanged())));
    item->setTitle(QStringLiteral("new"));
    QCOMPARE(changes.take(), QStringLiteral("1:258 1:258"));
    emit item->greeted(); // a signal of no property
    QCOMPARE(changes.take(), QString());
    // With the list's own notification blocked out, the hand-made connection alone re-keys.
    list.remove(item);
    deleteWhatIsDue();
    auto *second = list.add(QString());
    QVERIFY(connect(second, SIGNAL(uidChanged()), &list, SLOT(onItemPropertyChanged())));
    changes.take();
    second->setUid(QStringLiteral("v"));
    QCOMPARE(changes.take(), QStringLiteral("1:261 1:261"));
    QCOMPARE(list.getByUid(QStringLiteral("v")), second);
}

void TstQQmlObjectListModelChanges::slot_ignoresOtherSenders()
{
    WatchedList list("uid");
    list.fill(1);
    Changes changes(&list);
    ListItem stranger;
    QObject other;
    QVERIFY(connect(&stranger, SIGNAL(uidChanged()), &list, SLOT(onItemPropertyChanged())));
    QVERIFY(connect(&other, SIGNAL(objectNameChanged(QString)), &list, SLOT(onItemPropertyChanged())));
    stranger.setUid(QStringLiteral("u"));
    other.setObjectName(QStringLiteral("name"));
    QVERIFY(QMetaObject::invokeMethod(&list, "onItemPropertyChanged"));
    QCOMPARE(changes.take(), QString());
    QVERIFY(!list.getByUid(QStringLiteral("u")));
}

void TstQQmlObjectListModelChanges::slot_isCalledWhenASubclassTakesItOver()
{
    CountingList list;
    auto *item = new ListItem;
    list.append(item);
    Changes changes(&list);
    item->setRank(1);
    item->setTitle(QStringLiteral("new"));
    emit item->greeted();
    QCOMPARE(list.calls, 2);
    QCOMPARE(changes.take(), QStringLiteral("0:260 0:258"));
    list.forward = false;
    item->setRank(2);
    QCOMPARE(list.calls, 3);
    // cppcheck-suppress redundantAssignment ; the slot has asked for it meanwhile
    list.forward = true;
    // What nobody took is over: a call of the slot from elsewhere has no item to report.
    QVERIFY(QMetaObject::invokeMethod(&list, "onItemPropertyChanged"));
    QCOMPARE(changes.take(), QString());
}

void TstQQmlObjectListModelChanges::listener_mayRemoveTheItem()
{
    WatchedList list("uid");
    list.fill(2);
    ListItem *item = list.at(0);
    connect(&list, &List::dataChanged, this, [&] { list.remove(0); });
    item->setUid(QStringLiteral("u"));
    QCOMPARE(list.titles(), QStringLiteral("1"));
    QVERIFY(!list.getByUid(QStringLiteral("u"))); // not in the list, hence not to be found in it
    deleteWhatIsDue();
    QVERIFY(!list.getByUid(QStringLiteral("u")));
}

void TstQQmlObjectListModelChanges::listener_mayDeleteTheItem()
{
    WatchedList list("uid");
    list.fill(2);
    ListItem *item = list.at(0);
    connect(&list, &List::dataChanged, this, [&] { delete item; });
    item->setUid(QStringLiteral("u"));
    QCOMPARE(list.count(), 2);
    QVERIFY(!list.at(0));
    QVERIFY(!list.getByUid(QStringLiteral("u")));
}

void TstQQmlObjectListModelChanges::listener_mayClearTheList()
{
    WatchedList list("uid");
    list.fill(9);
    connect(&list, &List::dataChanged, this, [&] { list.clear(); });
    list.at(5)->setUid(QStringLiteral("u"));
    QVERIFY(list.isEmpty());
    list.add(QStringLiteral("next"));
    QCOMPARE(list.titles(), QStringLiteral("next"));
}

void TstQQmlObjectListModelChanges::listener_mayDeleteTheList()
{
    QObject owner;
    auto *item = new ListItem(QString(), &owner);
    for (const char *uidRole : {"", "uid"}) {
        QPointer<List> list(new List(nullptr, uidRole));
        list->append(item);
        connect(list, &List::dataChanged, &owner, [&] { delete list; });
        item->setUid(item->uid() + QLatin1Char('u'));
        QVERIFY(!list);
    }
    item->setUid(QStringLiteral("v"));
}

void TstQQmlObjectListModelChanges::listener_mayInsertAndMove()
{
    WatchedList list("uid");
    list.fill(3);
    ListItem *item = list.at(1);
    connect(&list, &List::dataChanged, this, [&] {
        if (list.count() > 4)
            return;
        list.prepend(new ListItem(QStringLiteral("new")));
        list.move(0, 2);
        item->setRank(item->rank() + 1);
    });
    Changes changes(&list);
    item->setUid(QStringLiteral("u"));
    QCOMPARE(list.getByUid(QStringLiteral("u")), item);
    QCOMPARE(list.indexOf(item), list.toList().indexOf(item));
    QCOMPARE(list.count(), 5);
}

void TstQQmlObjectListModelChanges::itemDeletedOutside_leavesANullRow()
{
    WatchedList list;
    list.fill(3);
    delete list.at(1);
    QCOMPARE(list.log.text(), QString()); // the row stays until somebody removes it
    QCOMPARE(list.count(), 3);
    QVERIFY(!list.get(1));
    QVERIFY(!list.read(1, ListItem::TitleRole).isValid());
    QVERIFY(!list.read(1, 256).isValid());
    QVERIFY(!list.setData(list.index(1), QStringLiteral("new"), ListItem::TitleRole));
    QVERIFY(!list.contains(nullptr));
    QCOMPARE(list.indexOf(static_cast<ListItem *>(nullptr)), -1);
    QVERIFY(!list.toVarArray().at(1).value<ListItem *>());
    QCOMPARE(list.indexOf(list.at(2)), 2);
    list.remove(static_cast<QObject *>(nullptr));
    QCOMPARE(list.count(), 3);
    ListItem *twice = list.at(0);
    list.append(twice);
    delete twice;
    QVERIFY(!list.at(0));
    QVERIFY(!list.at(3));
}

void TstQQmlObjectListModelChanges::itemDeletedOutside_losesItsIdentifier()
{
    WatchedList list("uid");
    list.fill(1);
    list.first()->setUid(QStringLiteral("u"));
    delete list.first();
    QVERIFY(!list.getByUid(QStringLiteral("u")));
}

void TstQQmlObjectListModelChanges::nullRows_canBeRemovedMovedAndCleared()
{
    WatchedList list("uid");
    list.fill(5);
    delete list.at(1);
    delete list.at(3);
    list.move(3, 0);
    QVERIFY(!list.at(0));
    QVERIFY(!list.at(2));
    list.remove(2);
    QCOMPARE(list.count(), 4);
    list.clear();
    QVERIFY(list.isEmpty());
}

void TstQQmlObjectListModelChanges::propertyChange_takesNoLongerInALongList()
{
    // Walking the rows, or the connections of the rows, would cost some hundred times more in the longer
    // list; the bound leaves room for a machine that is busy with something else.
    constexpr int changes = 500;
    const auto fastest = [](int rows) {
        List list;
        for (int row = 0; row < rows; ++row)
            list.append(new ListItem);
        int reported = 0;
        QObject::connect(&list, &List::dataChanged, &list, [&] { ++reported; });
        qint64 best = std::numeric_limits<qint64>::max();
        int rank = 0;
        for (int repetition = 0; repetition < 20; ++repetition) {
            QElapsedTimer timer;
            timer.start();
            for (int i = 0; i < changes; ++i) {
                list.at(0)->setRank(++rank);
                list.at(rows / 2)->setRank(rank);
                list.at(rows - 1)->setRank(rank);
            }
            best = qMin(best, timer.nsecsElapsed());
        }
        return reported == 20 * changes * 3 ? best : std::numeric_limits<qint64>::max();
    };
    const qint64 ofShort = fastest(50);
    const qint64 ofLong = fastest(20000);
    QVERIFY2(ofLong < 8 * ofShort,
             qPrintable(QStringLiteral("%1 ns against %2 ns").arg(ofLong).arg(ofShort)));
}

void TstQQmlObjectListModelChanges::anyHistory_matchesAPlainVector()
{
    enum Operation {
        Append,
        Prepend,
        Insert,
        InsertAgain,
        Remove,
        RemoveItem,
        Move,
        Write,
        WriteUid,
        DeleteOutside,
        Clear,
        OperationCount
    };
    QVERIFY(rc::check("a list behaves as a vector of its rows", [](const std::vector<unsigned> &steps) {
        WatchedList list("uid");
        Changes changes(&list);
        std::vector<QPointer<ListItem>> naive;
        int number = 0;
        for (unsigned step : steps) {
            const auto count = naive.size();
            const std::size_t a = count ? step / 16 % count : 0;
            const std::size_t b = count ? step / 1024 % count : 0;
            const auto at = [&naive](std::size_t row) {
                return naive.begin() + std::vector<QPointer<ListItem>>::difference_type(row);
            };
            const auto firstRowOf = [&naive](const ListItem *item) {
                return int(std::find(naive.begin(), naive.end(), item) - naive.begin());
            };
            switch (count ? step % OperationCount : unsigned(Append)) {
            case Append:
                naive.emplace_back(list.add(QString::number(++number)));
                break;
            case Prepend:
                naive.insert(at(0), new ListItem(QString::number(++number)));
                list.prepend(naive.front().data());
                break;
            case Insert:
                naive.insert(at(a), new ListItem(QString::number(++number)));
                list.insert(int(a), naive[a].data());
                break;
            case InsertAgain:
                if (ListItem *item = naive[a]) {
                    naive.insert(at(b), item);
                    list.insert(int(b), item);
                }
                break;
            case Remove: {
                const QPointer<ListItem> item = naive[a];
                naive.erase(at(a));
                list.remove(int(a));
                break;
            }
            case RemoveItem:
                if (const QPointer<ListItem> item = naive[a]) {
                    naive.erase(at(std::size_t(firstRowOf(item))));
                    list.remove(static_cast<QObject *>(item.data()));
                }
                break;
            case Move: {
                const QPointer<ListItem> item = naive[qMax(a, b)];
                naive.erase(at(qMax(a, b)));
                naive.insert(at(qMin(a, b)), item);
                list.move(int(a), int(b));
                break;
            }
            case Write:
                if (ListItem *item = naive[a]) {
                    changes.take();
                    item->setRank(++number);
                    RC_ASSERT(changes.take() == QString::number(firstRowOf(item)) + QStringLiteral(":260"));
                }
                break;
            case WriteUid:
                if (ListItem *item = naive[a]) {
                    const QString uid = QString::number(++number);
                    item->setUid(uid);
                    RC_ASSERT(list.getByUid(uid) == item);
                }
                break;
            case DeleteOutside:
                delete naive[a].data();
                break;
            case Clear:
                naive.clear();
                list.clear();
                break;
            }
            deleteWhatIsDue();
            RC_ASSERT(list.count() == int(naive.size()));
            for (std::size_t row = 0; row < naive.size(); ++row) {
                RC_ASSERT(list.at(int(row)) == naive[row].data());
                if (naive[row])
                    RC_ASSERT(list.indexOf(naive[row].data()) == firstRowOf(naive[row]));
            }
        }
    }));
}

QTEST_GUILESS_MAIN(TstQQmlObjectListModelChanges)
#include "tst_qqmlobjectlistmodel_changes.moc"
