// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QAbstractItemModelTester>
#include <QMetaMethod>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

#include <memory>

#include "databaseitemlistmodel.h"
#include "listguard.h"
#include "logrecorder.h"
#include "signallog.h"

class TstDatabaseItemListModel : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<DatabaseItemListModel> m_list;
    std::unique_ptr<ListGuard> m_guard;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    QStringList titles() const
    {
        QStringList result;
        for (const DatabaseItem *item : *m_list)
            result.append(item->title());
        return result;
    }

private slots:
    void init()
    {
        m_list = std::make_unique<DatabaseItemListModel>();
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

    void roles_followTheProperties()
    {
        const QHash<int, QByteArray> expected{{256, "qtObject"}, {257, "objectName"}, {258, "activated"},
                                              {259, "image"},    {260, "title"},      {261, "type"},
                                              {262, "original"}};
        QCOMPARE(m_list->roleNames(), expected);
    }

    void ownInterface_isInOrder()
    {
        const QMetaObject &metaObject = DatabaseItemListModel::staticMetaObject;
        QStringList found;
        for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
            const QMetaMethod method = metaObject.method(i);
            QCOMPARE(method.access(), QMetaMethod::Public);
            found.append(
                (method.methodType() == QMetaMethod::Slot ? QStringLiteral("slot ") : QStringLiteral("call "))
                + QLatin1String(method.typeName()) + QLatin1Char(' ')
                + QString::fromLatin1(method.methodSignature()));
        }
        QCOMPARE(found,
                 (QStringList{QStringLiteral("slot void add(QString,QString,QString,int)"),
                              QStringLiteral("slot void add(QString,QString,QString)"),
                              QStringLiteral("slot void add(QString,QString)"),
                              QStringLiteral("call QString findImageFromTitle(QString)")}));
    }

    void addedItem_isActivatedAndNotOriginal()
    {
        SignalLog log;
        log.watch(m_list.get(), &QAbstractItemModel::rowsAboutToBeInserted, QStringLiteral("about"));
        log.watch(m_list.get(), &QAbstractItemModel::rowsInserted, QStringLiteral("inserted"));
        log.watch(m_list.get(), &QAbstractItemModel::dataChanged, QStringLiteral("data"));
        log.watch(m_list.get(), &DatabaseItemListModel::countChanged, QStringLiteral("count"));
        m_list->add(QStringLiteral("Cuisine"), QStringLiteral("qrc:/c.png"), QStringLiteral("locaux"));
        // Complete before it enters: no view sees an entry without its title.
        QCOMPARE(log.text(), QStringLiteral("about inserted count"));
        const DatabaseItem *item = m_list->first();
        QCOMPARE(item->title(), QStringLiteral("Cuisine"));
        QCOMPARE(item->image(), QStringLiteral("qrc:/c.png"));
        QCOMPARE(item->type(), QStringLiteral("locaux"));
        QVERIFY(item->activated());
        QVERIFY(!item->original());
        QCOMPARE(item->parent(), m_list.get());
    }

    void addWithoutType_leavesItEmpty()
    {
        m_list->add(QStringLiteral("Cuisine"), QStringLiteral("qrc:/c.png"));
        QCOMPARE(m_list->first()->type(), QString());
    }

    void addWithEmptyImage_logsNoPath()
    {
        LogRecorder log;
        m_list->add(QStringLiteral("Cuisine"), QString(), QStringLiteral("locaux"));
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(m_list->first()->image(), QString());
    }

    void addWithMissingPicture_storesNone()
    {
        m_list->setHome(QStringLiteral("/nowhere/"));
        LogRecorder log;
        m_list->add(QStringLiteral("Cuisine"), QStringLiteral("c.png"), QStringLiteral("locaux"));
        QCOMPARE(m_list->first()->image(), QString());
        QCOMPARE(log.lines(),
                 QStringList{QStringLiteral("DEBUG PATH 1:  \"/nowhere/database/locaux/c.png\"")});
    }

    void setHome_leavesItemsAlreadyThere()
    {
        m_list->setHome(QStringLiteral("/first/"));
        m_list->add(QStringLiteral("Cuisine"), QString());
        m_list->setHome(QStringLiteral("/second/"));
        LogRecorder log;
        m_list->first()->setImage(QStringLiteral("c.png"));
        QCOMPARE(log.lines(), QStringList{QStringLiteral("DEBUG PATH 1:  \"/first/database//c.png\"")});
    }

    void addAtIndex_inserts()
    {
        m_list->add(QStringLiteral("a"), QString());
        m_list->add(QStringLiteral("c"), QString(), QString(), -1);
        m_list->add(QStringLiteral("b"), QString(), QString(), 1);
        m_list->add(QStringLiteral("first"), QString(), QString(), 0);
        m_list->add(QStringLiteral("last"), QString(), QString(), 4);
        QCOMPARE(titles().join(QLatin1Char(' ')), QStringLiteral("first a b c last"));
    }

    void sameTitle_isAddedAgain_andTheFirstOneIsFound()
    {
        m_list->add(QStringLiteral("Mur"), QStringLiteral("qrc:/1.png"));
        m_list->add(QStringLiteral("Mur"), QStringLiteral("qrc:/2.png"));
        m_list->at(0)->setActivated(false);
        m_list->at(1)->setActivated(false);
        QCOMPARE(m_list->size(), 2);
        QCOMPARE(m_list->findImageFromTitle(QStringLiteral("Mur")), QStringLiteral("qrc:/1.png"));
        QVERIFY(m_list->activateIfTitleExist(QStringLiteral("Mur")));
        QVERIFY(m_list->at(0)->activated());
        QVERIFY(!m_list->at(1)->activated());
    }

    void unknownTitle_isNotFound_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("other") << QStringLiteral("Porte");
        QTest::newRow("letter case") << QStringLiteral("mur");
        QTest::newRow("blank") << QStringLiteral("Mur ");
        QTest::newRow("part") << QStringLiteral("Mu");
        QTest::newRow("empty") << QString();
    }
    void unknownTitle_isNotFound()
    {
        QFETCH(QString, title);
        m_list->add(QStringLiteral("Mur"), QStringLiteral("qrc:/1.png"));
        m_list->first()->setActivated(false);
        QCOMPARE(m_list->findImageFromTitle(title), QString());
        QVERIFY(!m_list->activateIfTitleExist(title));
        QCOMPARE(m_list->size(), 1);
        QVERIFY(!m_list->first()->activated());
    }

    void activation_isDataOfItsRow()
    {
        m_list->add(QStringLiteral("Mur"), QString());
        m_list->add(QStringLiteral("Porte"), QString());
        m_list->at(1)->setActivated(false);
        QSignalSpy spy(m_list.get(), &QAbstractItemModel::dataChanged);
        QVERIFY(m_list->activateIfTitleExist(QStringLiteral("Porte")));
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy[0][0].toModelIndex().row(), 1);
        QCOMPARE(spy[0][2].value<QVector<int>>(), QVector<int>{258});
    }

    void itemDeletedBySomebodyElse_isPassedOver()
    {
        m_tester.reset();
        m_list->add(QStringLiteral("Mur"), QStringLiteral("qrc:/1.png"));
        m_list->add(QStringLiteral("Mur"), QStringLiteral("qrc:/2.png"));
        delete m_list->first();
        QCOMPARE(m_list->first(), nullptr);
        QCOMPARE(m_list->findImageFromTitle(QStringLiteral("Mur")), QStringLiteral("qrc:/2.png"));
        QVERIFY(!m_list->activateIfTitleExist(QStringLiteral("Porte")));
    }

    void itemDeletedAfterALookup_isPassedOver()
    {
        m_tester.reset();
        m_list->add(QStringLiteral("Mur"), QStringLiteral("qrc:/1.png"));
        m_list->add(QStringLiteral("Mur"), QStringLiteral("qrc:/2.png"));
        QCOMPARE(m_list->findImageFromTitle(QStringLiteral("Mur")), QStringLiteral("qrc:/1.png"));
        delete m_list->first();
        QCOMPARE(m_list->findImageFromTitle(QStringLiteral("Mur")), QStringLiteral("qrc:/2.png"));
        delete m_list->at(1);
        QCOMPARE(m_list->findImageFromTitle(QStringLiteral("Mur")), QString());
    }

    void rowsChangedAfterALookup_areSeenByTheNext()
    {
        const QString wall = QStringLiteral("Mur");
        const QString door = QStringLiteral("Porte");
        const auto images = [&] {
            return QStringList{m_list->findImageFromTitle(wall), m_list->findImageFromTitle(door)}.join(
                QLatin1Char(' '));
        };
        m_list->add(wall, QStringLiteral("qrc:/1"));
        QCOMPARE(images(), QStringLiteral("qrc:/1 "));
        m_list->add(door, QStringLiteral("qrc:/2"));
        m_list->add(wall, QStringLiteral("qrc:/3"));
        QCOMPARE(images(), QStringLiteral("qrc:/1 qrc:/2"));
        m_list->move(2, 0);
        QCOMPARE(images(), QStringLiteral("qrc:/3 qrc:/2"));
        m_list->add(door, QStringLiteral("qrc:/4"), QString(), 0);
        QCOMPARE(images(), QStringLiteral("qrc:/3 qrc:/4"));
        m_list->remove(0);
        QCOMPARE(images(), QStringLiteral("qrc:/3 qrc:/2"));
        m_list->at(2)->setTitle(wall);
        m_list->at(0)->setTitle(door);
        QCOMPARE(images(), QStringLiteral("qrc:/1 qrc:/3"));
        m_list->clear();
        QCOMPARE(images(), QStringLiteral(" "));
    }

    void renaming_isSeenByWhoIsToldOfIt()
    {
        QQmlEngine engine;
        engine.rootContext()->setContextProperty(QStringLiteral("list"), m_list.get());
        m_list->add(QStringLiteral("Mur"), QStringLiteral("qrc:/m.png"));
        engine.rootContext()->setContextProperty(QStringLiteral("item"), m_list->first());
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.15\n"
                          "QtObject { property string image: list.findImageFromTitle(item.title) }",
                          QUrl());
        const std::unique_ptr<QObject> object(component.create());
        QVERIFY2(object, qPrintable(component.errorString()));
        QCOMPARE(object->property("image").toString(), QStringLiteral("qrc:/m.png"));
        m_list->first()->setTitle(QStringLiteral("Porte"));
        QCOMPARE(object->property("image").toString(), QStringLiteral("qrc:/m.png"));
    }

    void qml_addsAndFinds()
    {
        QQmlEngine engine;
        engine.rootContext()->setContextProperty(QStringLiteral("list"), m_list.get());
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.15\nQtObject {\n"
                          "  property string image\n  property bool hidden\n"
                          "  Component.onCompleted: {\n"
                          "    list.add('Mur', 'qrc:/m.png', 'elements');\n"
                          "    list.add('Porte', 'qrc:/p.png');\n"
                          "    list.add('Sol', 'qrc:/s.png', 'elements', 0);\n"
                          "    image = list.findImageFromTitle('Porte');\n"
                          "    hidden = list.activateIfTitleExist === undefined"
                          " && list.setHome === undefined;\n"
                          "  }\n}",
                          QUrl());
        const std::unique_ptr<QObject> object(component.create());
        QVERIFY2(object, qPrintable(component.errorString()));
        QCOMPARE(object->property("image").toString(), QStringLiteral("qrc:/p.png"));
        QVERIFY(object->property("hidden").toBool());
        QCOMPARE(titles().join(QLatin1Char(' ')), QStringLiteral("Sol Mur Porte"));
    }
};

QTEST_GUILESS_MAIN(TstDatabaseItemListModel)
#include "tst_databaseitemlistmodel.moc"
