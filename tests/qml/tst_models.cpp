// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QtQuickTest>

#include "databaseitemlistmodel.h"
#include "listitem.h"
#include "logrecorder.h"
#include "qqmlobjectlistmodel.h"

/// A list of test items and one of rooms, as the application hands its own to QML.
class Fixture : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QObject *list READ list CONSTANT)
    Q_PROPERTY(QObject *rooms READ rooms CONSTANT)

public:
    explicit Fixture(QObject *parent)
        : QObject(parent)
        , m_list(nullptr, "uid", "title")
    { }

    QObject *list() { return &m_list; }
    QObject *rooms() { return &m_rooms; }
    /// Its first owner is the engine, unless a list takes it.
    Q_INVOKABLE QObject *newItem(const QString &title, int rank)
    {
        auto *item = new ListItem(title);
        item->setRank(rank);
        item->setUid(QLatin1Char('#') + title);
        return item;
    }
    /// Empties both lists and starts a new record of the log.
    Q_INVOKABLE void reset()
    {
        m_list.clear();
        m_rooms.clear();
        m_log.clear();
    }
    Q_INVOKABLE QStringList warnings() const { return m_log.lines(QStringLiteral("WARN")); }

private:
    LogRecorder m_log;
    QQmlObjectListModel<ListItem> m_list;
    DatabaseItemListModel m_rooms;
};

class Setup : public QObject
{
    Q_OBJECT

public slots:
    void applicationAvailable() { QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software); }
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->rootContext()->setContextProperty(QStringLiteral("fixture"), new Fixture(engine));
    }
};

QUICK_TEST_MAIN_WITH_SETUP(models, Setup)
#include "tst_models.moc"
