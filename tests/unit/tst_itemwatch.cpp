// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QMetaMethod>
#include <QTest>

#include <functional>
#include <memory>

#include "itemwatch.h"
#include "listitem.h"

namespace {

/// Writes down what the watch reports, and does more if asked to.
struct Recorder : ItemWatch::Listener
{
    void itemSignalled(ItemWatch::Entry &entry, int signal) override
    {
        const QObject *item = entry.item;
        lines.append(item->objectName() + QLatin1Char(' ')
                     + QString::fromLatin1(item->metaObject()->method(signal).name()));
        if (const auto call = during) // a copy: it may set another
            call();
    }
    void itemDestroyed(const ItemWatch::Entry &last) override
    {
        lines.append(QStringLiteral("destroyed, held by %1 at %2").arg(last.rows).arg(last.hint));
        ends.append(last.item);
    }
    QStringList lines;
    QList<QObject *> ends;
    std::function<void()> during;
};

std::unique_ptr<ListItem> named(const char *name)
{
    auto item = std::make_unique<ListItem>();
    item->setObjectName(QLatin1String(name));
    return item;
}

} // namespace

class TstItemWatch : public QObject
{
    Q_OBJECT

private slots:
    void eachSignal_isReportedWithItsItem();
    void inheritedAndPrivateSignals_areReported();
    void report_comesAfterTheSlotsOfThatSignal();
    void itemReferencedTwice_isReportedOnce();
    void dereferencedItem_isSilent_evenIfAnotherRowHoldsIt();
    void referencingAgain_listensAgain();
    void referencingAgain_restoresAConnectionCutByHand();
    void strangers_areUnknown();
    void end_isReportedWhateverElseIs();
    void end_ofDereferencedItem_isNotReported();
    void nestedEmissions_areReportedEachWithItsSignal();
    void itemDereferencedWhileReporting_isSilentFromThenOn();
    void itemDeletedWhileReporting_isForgotten();
    void otherItemDeletedWhileReporting_isReportedAtOnce();
    void allItemsDereferencedWhileReporting_isSurvived();
    void ends_makeRoomAgain();
    void watchDeletedWhileReporting_isSurvived();
    void itemTakingAFreedPlaceWhileReporting_isNotMistaken();
    void watchGone_leavesItemsWithoutConnections();
    void manyItems_comeAndGoInAnyOrder();
    void delivery_isTakenOnceAndOnlyWhileItLasts();
    void delivery_outlivedByNothing_whenItsWatchIsDeleted();
};

void TstItemWatch::eachSignal_isReportedWithItsItem()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    std::vector<std::unique_ptr<ListItem>> items;
    for (const char *name : {"a", "b", "c", "d", "e", "f"}) {
        items.push_back(named(name));
        watch.reference(items.back().get(), 0);
    }
    items.at(5)->setTitle(QStringLiteral("new"));
    items.at(0)->setRank(3);
    items.at(3)->setLeft(4);
    emit items.at(4)->greeted();
    QCOMPARE(recorder.lines,
             QStringList({QStringLiteral("f titleChanged"), QStringLiteral("a rankChanged"),
                          QStringLiteral("d sidesChanged"), QStringLiteral("e greeted")}));
}

void TstItemWatch::inheritedAndPrivateSignals_areReported()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    const auto item = named("a");
    watch.reference(item.get(), 0);
    item->setObjectName(QStringLiteral("b"));
    QCOMPARE(recorder.lines, QStringList(QStringLiteral("b objectNameChanged")));
}

void TstItemWatch::report_comesAfterTheSlotsOfThatSignal()
{
    const std::unique_ptr<ListItem> item = named("a");
    Recorder recorder;
    ItemWatch watch(recorder);
    connect(item.get(), &ListItem::titleChanged, this,
            [&] { recorder.lines.append(QStringLiteral("early")); });
    watch.reference(item.get(), 0);
    connect(item.get(), &ListItem::titleChanged, this,
            [&] { recorder.lines.append(QStringLiteral("late")); });
    item->setTitle(QStringLiteral("t"));
    QCOMPARE(recorder.lines.join(QLatin1Char(' ')), QStringLiteral("early late a titleChanged"));
}

void TstItemWatch::itemReferencedTwice_isReportedOnce()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    const auto item = named("a");
    QCOMPARE(watch.reference(item.get(), 3).rows, 1);
    QCOMPARE(watch.reference(item.get(), 8).rows, 2);
    item->setRank(1);
    QCOMPARE(recorder.lines, QStringList(QStringLiteral("a rankChanged")));
}

void TstItemWatch::dereferencedItem_isSilent_evenIfAnotherRowHoldsIt()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    const auto item = named("a");
    watch.reference(item.get(), 0);
    watch.reference(item.get(), 1);
    watch.dereference(item.get());
    item->setRank(1);
    QVERIFY(watch.find(item.get()));
    watch.dereference(item.get());
    item->setRank(2);
    QVERIFY(!watch.find(item.get()));
    QCOMPARE(recorder.lines, QStringList());
}

void TstItemWatch::referencingAgain_listensAgain()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    const auto item = named("a");
    watch.reference(item.get(), 0);
    watch.reference(item.get(), 1);
    watch.dereference(item.get());
    watch.reference(item.get(), 1);
    item->setRank(1);
    QCOMPARE(recorder.lines, QStringList(QStringLiteral("a rankChanged")));
}

void TstItemWatch::referencingAgain_restoresAConnectionCutByHand()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    const auto item = named("a");
    watch.reference(item.get(), 0);
    item->disconnect();
    item->setRank(1);
    QCOMPARE(recorder.lines, QStringList());
    watch.reference(item.get(), 1);
    item->setRank(2);
    QCOMPARE(recorder.lines, QStringList(QStringLiteral("a rankChanged")));
}

void TstItemWatch::strangers_areUnknown()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    const auto item = named("a");
    QVERIFY(!watch.find(item.get()));
    QVERIFY(!watch.find(nullptr));
    watch.dereference(item.get());
    item->setRank(1);
    QCOMPARE(recorder.lines, QStringList());
}

void TstItemWatch::end_isReportedWhateverElseIs()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    auto listened = named("a");
    auto muted = named("b");
    const QList<QObject *> expected{listened.get(), muted.get()};
    watch.reference(listened.get(), 7);
    watch.reference(muted.get(), 8);
    watch.reference(muted.get(), 9);
    watch.reference(muted.get(), 10);
    watch.dereference(muted.get());
    listened.reset();
    muted.reset();
    QCOMPARE(recorder.lines,
             QStringList(
                 {QStringLiteral("destroyed, held by 1 at 7"), QStringLiteral("destroyed, held by 2 at 8")}));
    QCOMPARE(recorder.ends, expected);
    QVERIFY(!watch.find(expected.first()));
}

void TstItemWatch::end_ofDereferencedItem_isNotReported()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    auto item = named("a");
    watch.reference(item.get(), 0);
    watch.dereference(item.get());
    item.reset();
    QCOMPARE(recorder.lines, QStringList());
}

void TstItemWatch::nestedEmissions_areReportedEachWithItsSignal()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    const auto a = named("a");
    const auto b = named("b");
    watch.reference(a.get(), 0);
    watch.reference(b.get(), 1);
    recorder.during = [&] {
        recorder.during = [&] {
            recorder.during = nullptr;
            a->setTitle(QStringLiteral("new"));
        };
        b->setLeft(1);
        b->setRank(1);
    };
    a->setRank(1);
    a->setRank(2);
    QCOMPARE(recorder.lines,
             QStringList({QStringLiteral("a rankChanged"), QStringLiteral("b sidesChanged"),
                          QStringLiteral("a titleChanged"), QStringLiteral("b rankChanged"),
                          QStringLiteral("a rankChanged")}));
}

void TstItemWatch::itemDereferencedWhileReporting_isSilentFromThenOn()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    const auto item = named("a");
    watch.reference(item.get(), 0);
    recorder.during = [&] {
        watch.dereference(item.get());
        item->setRank(2);
    };
    item->setRank(1);
    item->setRank(3);
    QCOMPARE(recorder.lines, QStringList(QStringLiteral("a rankChanged")));
}

void TstItemWatch::itemDeletedWhileReporting_isForgotten()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    ListItem *item = named("a").release();
    watch.reference(item, 0);
    recorder.during = [&] { delete item; };
    emit item->greeted(); // touches nothing of its own afterwards
    QCOMPARE(recorder.lines,
             QStringList({QStringLiteral("a greeted"), QStringLiteral("destroyed, held by 1 at 0")}));
    QVERIFY(!watch.find(item));
}

void TstItemWatch::otherItemDeletedWhileReporting_isReportedAtOnce()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    const auto a = named("a");
    auto b = named("b");
    watch.reference(a.get(), 0);
    watch.reference(b.get(), 1);
    recorder.during = [&] {
        recorder.during = nullptr;
        b.reset();
        a->setLeft(1);
    };
    a->setRank(1);
    QCOMPARE(recorder.lines,
             QStringList({QStringLiteral("a rankChanged"), QStringLiteral("destroyed, held by 1 at 1"),
                          QStringLiteral("a sidesChanged")}));
}

void TstItemWatch::allItemsDereferencedWhileReporting_isSurvived()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    std::vector<std::unique_ptr<ListItem>> items;
    for (uint i = 0; i < 10; ++i) {
        items.push_back(named("a"));
        watch.reference(items.back().get(), i);
    }
    recorder.during = [&] {
        recorder.during = nullptr;
        for (const auto &item : items)
            watch.dereference(item.get());
        items.at(3)->setRank(7);
        watch.reference(items.at(2).get(), 0);
    };
    items.at(1)->setRank(1); // its receiver is gone before this returns
    for (const auto &item : items)
        item->setRank(2);
    QCOMPARE(recorder.lines, QStringList({QStringLiteral("a rankChanged"), QStringLiteral("a rankChanged")}));
}

void TstItemWatch::ends_makeRoomAgain()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    auto first = named("first");
    auto second = named("second");
    const ItemRelay *receiver = watch.reference(first.get(), 0).relay;
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(watch.reference(second.get(), 0).relay, receiver);
        first = named("first");
        second.reset();
        second = named("second");
        QCOMPARE(watch.reference(first.get(), 0).relay, receiver);
        if (i % 2)
            watch.dereference(first.get());
    }
}

void TstItemWatch::watchDeletedWhileReporting_isSurvived()
{
    Recorder recorder;
    auto watch = std::make_unique<ItemWatch>(recorder);
    std::vector<std::unique_ptr<ListItem>> items;
    for (int i = 0; i < 6; ++i) {
        items.push_back(named("a"));
        watch->reference(items.back().get(), 0);
    }
    recorder.during = [&] { watch.reset(); };
    items.at(1)->setRank(1);
    items.at(1)->setRank(2);
    items.at(5)->setRank(1);
    QCOMPARE(recorder.lines, QStringList(QStringLiteral("a rankChanged")));
}

void TstItemWatch::itemTakingAFreedPlaceWhileReporting_isNotMistaken()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    const auto first = named("first");
    const auto second = named("second");
    watch.reference(first.get(), 0);
    recorder.during = [&] {
        recorder.during = nullptr;
        watch.dereference(first.get());
        watch.reference(second.get(), 0);
    };
    first->setRank(1);
    first->setRank(2);
    second->setRank(1);
    QCOMPARE(recorder.lines,
             QStringList({QStringLiteral("first rankChanged"), QStringLiteral("second rankChanged")}));
}

void TstItemWatch::watchGone_leavesItemsWithoutConnections()
{
    struct Open : ListItem
    {
        using QObject::isSignalConnected;
    };
    Open item;
    Recorder recorder;
    {
        ItemWatch watch(recorder);
        watch.reference(&item, 0);
        QVERIFY(item.isSignalConnected(QMetaMethod::fromSignal(&ListItem::rankChanged)));
    }
    QVERIFY(!item.disconnect()); // nothing was left to disconnect
    item.setRank(1);
    QCOMPARE(recorder.lines, QStringList());
}

void TstItemWatch::manyItems_comeAndGoInAnyOrder()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    std::vector<std::unique_ptr<ListItem>> items;
    for (int i = 0; i < 50; ++i) {
        items.push_back(named("x"));
        items.back()->setObjectName(QString::number(i));
        watch.reference(items.back().get(), uint(i));
    }
    for (int i = 0; i < 50; i += 3) // leaves receivers with some of their places free
        watch.dereference(items.at(std::size_t(i)).get());
    for (int i = 1; i < 50; i += 3)
        items.at(std::size_t(i)).reset();
    recorder.lines.clear();
    for (int i = 0; i < 50; i += 3)
        watch.reference(items.at(std::size_t(i)).get(), uint(i));
    QStringList expected;
    for (int i = 0; i < 50; ++i) {
        if (const auto &item = items.at(std::size_t(i))) {
            QCOMPARE(watch.find(item.get())->hint, uint(i));
            item->setRank(1);
            expected.append(QString::number(i) + QStringLiteral(" rankChanged"));
        }
    }
    QCOMPARE(recorder.lines, expected);
}

void TstItemWatch::delivery_isTakenOnceAndOnlyWhileItLasts()
{
    Recorder recorder;
    ItemWatch watch(recorder);
    const auto item = named("a");
    ItemWatch::Entry &entry = watch.reference(item.get(), 0);
    QVERIFY(!watch.takeDelivery());
    {
        const ItemWatch::Delivery outer(watch, entry, 5);
        {
            const ItemWatch::Delivery inner(watch, entry, 6);
            QCOMPARE(watch.takeDelivery(), &inner);
            QVERIFY(!watch.takeDelivery()); // the outer one is not this call's to take
        }
        QCOMPARE(watch.takeDelivery(), &outer);
        QVERIFY(!watch.takeDelivery());
    }
    QVERIFY(!watch.takeDelivery());
}

void TstItemWatch::delivery_outlivedByNothing_whenItsWatchIsDeleted()
{
    Recorder recorder;
    auto watch = std::make_unique<ItemWatch>(recorder);
    const auto item = named("a");
    ItemWatch::Entry &entry = watch->reference(item.get(), 0);
    const ItemWatch::Delivery outer(*watch, entry, 5);
    const ItemWatch::Delivery inner(*watch, entry, 6);
    watch.reset(); // the deliveries end after it, and must not touch it
    QCOMPARE(inner.signal, 6);
}

QTEST_GUILESS_MAIN(TstItemWatch)
#include "tst_itemwatch.moc"
