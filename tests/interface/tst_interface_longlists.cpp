// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// How many delegates the lists make, with more rows than anybody scrolls through.
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <QsLog.h>

#include <databaseitemlistmodel.h>
#include <failure.h>
#include <halvar-error.h>
#include <measure.h>
#include <measurelistmodel.h>
#include <ud.h>
#include <udlistmodel.h>

#include "eye.h"
#include "showcasetest.h"

namespace {

/// The delegates of a list that exist, shown or put aside for the next row.
int delegatesOf(QQuickItem *list)
{
    auto *content = list->property("contentItem").value<QQuickItem *>();
    int count = 0;
    const QList<QQuickItem *> children = content->childItems();
    for (const QQuickItem *child : children)
        count += child->inherits("QQuickAbstractButton") ? 1 : 0;
    return count;
}

} // namespace

class TstInterfaceLongLists : public ShowcaseTest
{
    Q_OBJECT

private slots:
    void tenThousandUnits_needNoMoreDelegatesThanFit();
    void rowAboveAList_isWholeWhenItOpens();
    void everyLongList_makesNoMoreDelegatesThanFit_data();
    void everyLongList_makesNoMoreDelegatesThanFit();
    void linesThatCome_standOneBelowTheOther();
};

void TstInterfaceLongLists::tenThousandUnits_needNoMoreDelegatesThanFit()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    // 9,000 in one room, the others in 199.
    constexpr int rooms = 200;
    constexpr int units = 10000;
    for (int room = 1; room < rooms; ++room)
        showcase.database.m_LocalItemsListModel->add(QStringLiteral("Pièce %1").arg(room), QString(),
                                                     QStringLiteral("locaux"));
    for (int i = 0; i < units; ++i) {
        auto *unit = new UD;
        unit->setLocal(i < 9000 ? QStringLiteral("Cuisine")
                                : QStringLiteral("Pièce %1").arg(1 + i % (rooms - 1)));
        unit->setElement(QStringLiteral("Mur"));
        showcase->uds->append(unit);
    }
    // Rows of 64 px and more on 720 px, and one above and below.
    constexpr int fit = 14;
    showcase.open(QStringLiteral("RoomsScreen"));
    QQuickItem *list = itemNamed(QStringLiteral("roomList"));
    QCOMPARE(list->property("count").toInt(), rooms);
    QVERIFY2(delegatesOf(list) <= fit, qPrintable(QString::number(delegatesOf(list))));

    showcase.open(QStringLiteral("UnitsScreen"), {{QStringLiteral("room"), QStringLiteral("Cuisine")}});
    list = itemNamed(QStringLiteral("unitList"));
    QCOMPARE(list->property("count").toInt(), 9000);
    QVERIFY(delegatesOf(list) > 4);
    QVERIFY2(delegatesOf(list) <= fit, qPrintable(QString::number(delegatesOf(list))));
    // All the way down, screen by screen: delegates are used again.
    QSet<const QQuickItem *> made;
    auto *content = list->property("contentItem").value<QQuickItem *>();
    const double height = list->property("contentHeight").toDouble();
    for (double y = 0; y < height; y += list->height() * 7) {
        list->setProperty("contentY", y);
        showcase.hand->pause(1);
        const QList<QQuickItem *> children = content->childItems();
        for (const QQuickItem *child : children)
            made.insert(child);
        QVERIFY2(delegatesOf(list) <= 2 * fit, qPrintable(QString::number(delegatesOf(list))));
    }
    QVERIFY2(made.size() <= 3 * fit, qPrintable(QString::number(made.size())));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceLongLists::rowAboveAList_isWholeWhenItOpens()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.window->resize(480, 640);
    showcase.hand->pause(50);
    showcase.open(QStringLiteral("PickScreen"),
                  {{QStringLiteral("items"), showcase.object(QStringLiteral("statesOfDegradation"))},
                   {QStringLiteral("allowNone"), true}});
    showcase.hand->pause(100);
    const QQuickItem *list = itemNamed(QStringLiteral("pickList"));
    const QQuickItem *row = itemNamed(QStringLiteral("none"));
    const double y = row->mapToItem(list, QPointF()).y();
    QVERIFY2(y >= 0, qPrintable(QString::number(y)));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceLongLists::everyLongList_makesNoMoreDelegatesThanFit_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<double>("lowestRow"); // px
    QTest::newRow("PickScreen") << "pickList" << 64.;
    QTest::newRow("DirectScreen") << "directList" << 100.;
    QTest::newRow("UnitScreen") << "measureList" << 100.;
    QTest::newRow("ShocksScreen") << "shockList" << 64.;
    QTest::newRow("LogScreen") << "logList" << 20.;
    QTest::newRow("DiagnosticsScreen") << "diagnosticList" << 64.;
}

void TstInterfaceLongLists::everyLongList_makesNoMoreDelegatesThanFit()
try {
    QFETCH(QString, list);
    QFETCH(double, lowestRow);
    const QString screen = QString::fromLatin1(QTest::currentDataTag());
    const int entries = screen == QLatin1String("DiagnosticsScreen") ? 2000 : 400;
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    QVariantMap properties;
    auto *unit = new UD;
    showcase->uds->append(unit);
    for (int i = 0; i < entries; ++i) {
        showcase.database.m_LocalItemsListModel->add(QStringLiteral("Pièce %1").arg(i), QString(),
                                                     QStringLiteral("locaux"));
        showcase->directMeasures->append(new Measure);
        unit->measures()->append(new Measure);
        if (screen == QLatin1String("LogScreen")) {
            QLOG_FATAL() << "line" << i;
        }
        if (screen == QLatin1String("ShocksScreen"))
            showcase->error->setShock(true);
        if (screen == QLatin1String("DiagnosticsScreen"))
            QVERIFY(QFile::copy(Showcase::home() + QStringLiteral("files/Cave-7.xml"),
                                Showcase::home() + QStringLiteral("files/Cave %1.xml").arg(i)));
    }
    if (screen == QLatin1String("PickScreen"))
        properties.insert(QStringLiteral("items"), showcase.object(QStringLiteral("rooms")));
    else if (screen == QLatin1String("UnitScreen"))
        properties.insert(QStringLiteral("row"), 0);
    showcase.open(screen, properties);
    showcase.hand->pause(100);

    QQuickItem *view = itemNamed(list);
    QVERIFY(view->property("count").toInt() >= entries);
    // One cut at each end, and what is no row: header, footer, highlight.
    const int fit = int(view->height() / lowestRow) + 2;
    // A list that is led to its end has put its first rows aside for the next ones.
    const int bound = (view->property("atYBeginning").toBool() ? fit : 2 * fit) + 3;
    const int made = view->property("contentItem").value<QQuickItem *>()->childItems().size();
    QVERIFY2(made > 3, qPrintable(QString::number(made)));
    QVERIFY2(made <= bound, qPrintable(QStringLiteral("%1 of %2").arg(made).arg(bound)));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceLongLists::linesThatCome_standOneBelowTheOther()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    QStringList found;
    for (int round = 0; round < 25; ++round) {
        showcase.open(QStringLiteral("LogScreen"));
        for (int i = 0; i < round % 4; ++i) {
            QLOG_FATAL() << "Sent"
                         << QString(round * 13 % 160, QLatin1Char('x')).replace(9, 1, QLatin1Char(' '));
            showcase.hand->pause(round % 3);
        }
        QLOG_FATAL() << "Short";
        QLOG_FATAL() << "Sent"
                     << QString(round * 29 % 160, QLatin1Char('x')).replace(20, 1, QLatin1Char(' '));
        showcase.hand->pause(100);
        const QStringList seen = complaints(showcase.window);
        for (const QString &complaint : seen)
            found.append(QStringLiteral("round %1: %2").arg(round).arg(complaint));
        showcase.hand->key(Qt::Key_Escape);
        showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    }
    QVERIFY2(found.isEmpty(), qUtf8Printable(QLatin1Char('\n') + found.join(QLatin1Char('\n'))));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

QTEST_MAIN(TstInterfaceLongLists)
#include "tst_interface_longlists.moc"
