// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QDir>
#include <QFile>
#include <QMetaProperty>
#include <QTemporaryDir>
#include <QTest>

#include "databaseitem.h"
#include "logrecorder.h"
#include "signallog.h"

class TstDatabaseItem : public QObject
{
    Q_OBJECT

private:
    /// A home with the one picture database/locaux/cuisine.png.
    QTemporaryDir m_directory;
    QString home() const { return m_directory.path() + QLatin1Char('/'); }
    void watch(SignalLog &log, const DatabaseItem &item) const
    {
        log.watch(&item, &DatabaseItem::activatedChanged, QStringLiteral("activated"));
        log.watch(&item, &DatabaseItem::imageChanged, QStringLiteral("image"));
        log.watch(&item, &DatabaseItem::titleChanged, QStringLiteral("title"));
        log.watch(&item, &DatabaseItem::typeChanged, QStringLiteral("type"));
        log.watch(&item, &DatabaseItem::originalChanged, QStringLiteral("original"));
    }

private slots:
    void initTestCase()
    {
        QVERIFY(QDir(m_directory.path()).mkpath(QStringLiteral("database/locaux/vide.png")));
        for (const char *name : {"cuisine.png", "n#1 100%.png"}) {
            QFile picture(home() + QStringLiteral("database/locaux/") + QLatin1String(name));
            QVERIFY(picture.open(QIODevice::WriteOnly));
        }
    }

    void newItem_isActivatedOriginalAndEmpty()
    {
        QObject parent;
        const auto *item = new DatabaseItem(home(), &parent);
        QCOMPARE(item->parent(), &parent);
        QVERIFY(item->activated());
        QVERIFY(item->original());
        QCOMPARE(item->image(), QString());
        QCOMPARE(item->title(), QString());
        QCOMPARE(item->type(), QString());
    }

    void properties_areInOrder()
    {
        const QMetaObject &metaObject = DatabaseItem::staticMetaObject;
        QStringList found;
        for (int i = metaObject.propertyOffset(); i < metaObject.propertyCount(); ++i) {
            const QMetaProperty property = metaObject.property(i);
            QVERIFY(property.isReadable() && property.isWritable());
            found.append(QStringLiteral("%1 %2 %3")
                             .arg(QLatin1String(property.typeName()), QLatin1String(property.name()),
                                  QString::fromLatin1(property.notifySignal().methodSignature())));
        }
        QCOMPARE(found,
                 (QStringList{QStringLiteral("bool activated activatedChanged()"),
                              QStringLiteral("QString image imageChanged()"),
                              QStringLiteral("QString title titleChanged()"),
                              QStringLiteral("QString type typeChanged()"),
                              QStringLiteral("bool original originalChanged()")}));
    }

    void setter_announcesOnlyAChange()
    {
        DatabaseItem item(home());
        SignalLog log;
        watch(log, item);
        for (int i = 0; i < 2; ++i) {
            item.setActivated(false);
            item.setTitle(QStringLiteral("Cuisine"));
            item.setType(QStringLiteral("locaux"));
            item.setOriginal(false);
            item.setImage(QStringLiteral("cuisine.png"));
        }
        QCOMPARE(log.text(), QStringLiteral("activated title type original image"));
    }

    void listener_readsTheNewValue()
    {
        DatabaseItem item(home());
        QString seen;
        connect(&item, &DatabaseItem::titleChanged, this, [&] { seen = item.title(); });
        item.setTitle(QStringLiteral("Salon"));
        QCOMPARE(seen, QStringLiteral("Salon"));
    }

    void image_isResolved_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("stored");
        const QString locaux = QStringLiteral("locaux");
        const QString folder = QStringLiteral("file:") + home() + QStringLiteral("database/locaux/");
        const auto stands = [&](const char *name, const QString &value) {
            QTest::newRow(name) << locaux << value << value;
        };
        QTest::newRow("existing picture")
            << locaux << QStringLiteral("cuisine.png") << folder + QStringLiteral("cuisine.png");
        QTest::newRow("marks that URLs use")
            << locaux << QStringLiteral("n#1 100%.png") << folder + QStringLiteral("n#1 100%.png");
        QTest::newRow("missing picture") << locaux << QStringLiteral("salon.png") << QString();
        QTest::newRow("folder of that name") << locaux << QStringLiteral("vide.png") << QString();
        QTest::newRow("no type") << QString() << QStringLiteral("cuisine.png") << QString();
        QTest::newRow("other type") << QStringLiteral("elements") << QStringLiteral("cuisine.png")
                                    << QString();
        QTest::newRow("prefix in capitals") << locaux << QStringLiteral("FILE:cuisine.png") << QString();
        stands("empty", QString());
        stands("resource", QStringLiteral("qrc:/images/none.png"));
        stands("file URL of nothing", QStringLiteral("file:/nowhere/none.png"));
        stands("prefix inside the text", QStringLiteral("a file: that is none"));
    }
    void image_isResolved()
    {
        QFETCH(QString, type);
        QFETCH(QString, given);
        QFETCH(QString, stored);
        DatabaseItem item(home());
        item.setType(type);
        SignalLog log;
        watch(log, item);
        item.setImage(given);
        QCOMPARE(item.image(), stored);
        QCOMPARE(log.text(), stored.isEmpty() ? QString() : QStringLiteral("image"));
    }

    void missingPicture_emptiesTheOldOne()
    {
        DatabaseItem item(home());
        item.setImage(QStringLiteral("qrc:/a.png"));
        SignalLog log;
        watch(log, item);
        item.setImage(QStringLiteral("missing.png"));
        QCOMPARE(item.image(), QString());
        QCOMPARE(log.text(), QStringLiteral("image"));
    }

    void existingPicture_isLoggedInThreeSteps()
    {
        DatabaseItem item(home());
        item.setType(QStringLiteral("locaux"));
        LogRecorder log;
        item.setImage(QStringLiteral("cuisine.png"));
        const QString path = home() + QStringLiteral("database/locaux/cuisine.png");
        QCOMPARE(log.lines(),
                 (QStringList{QStringLiteral("DEBUG PATH 1:  \"%1\"").arg(path),
                              QStringLiteral("DEBUG PATH 2:  \"%1\"").arg(path),
                              QStringLiteral("DEBUG PATH 3:  \"file:%1\"").arg(path)}));
    }

    void missingPicture_isLoggedInOneStep()
    {
        DatabaseItem item(home());
        item.setType(QStringLiteral("locaux"));
        LogRecorder log;
        item.setImage(QStringLiteral("salon.png"));
        QCOMPARE(log.lines(),
                 QStringList{QStringLiteral("DEBUG PATH 1:  \"%1database/locaux/salon.png\"").arg(home())});
    }

    void urlAndEmptyImage_areNotLogged()
    {
        DatabaseItem item(home());
        LogRecorder log;
        item.setImage(QStringLiteral("qrc:/a.png"));
        item.setImage(QString());
        QCOMPARE(log.lines(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TstDatabaseItem)
#include "tst_databaseitem.moc"
