// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QSignalSpy>
#include <QTest>

#include <QMutex>
#include <QSemaphore>

#include <nap/notificationobserver.h>

#include "observers.h"

namespace nap = com::halvar::nap;
using simulator::Observers;

namespace {

/// Published at a free port of this process; records what it hears, and can be held up.
class Observer : public nap::NotificationObserver
{
public:
    explicit Observer(const char *name)
    {
        set_name(name);
        publish();
    }
    int onMessage(const nap::NotificationMessage &message) override
    {
        if (holding)
            held.acquire();
        const QMutexLocker lock(&m_mutex);
        m_heard.append(message.get_id().toString());
        return 1;
    }
    QStringList heard() const
    {
        const QMutexLocker lock(&m_mutex);
        QStringList copy = m_heard;
        copy.detach(); // no data in common with what another thread goes on writing to
        return copy;
    }
    QString description() const
    {
        return QStringLiteral("%1@TCPIP:localhost:%2")
            .arg(QString::fromUtf8(name()))
            .arg(tessel::ServiceManager::auto_create().port());
    }
    std::atomic<bool> holding{false};
    QSemaphore held;

private:
    mutable QMutex m_mutex;
    QStringList m_heard;
};

nap::NotificationMessage message(const char *id)
{
    nap::NotificationMessage message;
    message.set_id(tessel::AString(id));
    return message;
}

} // namespace

class TstObservers : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void observers_hearEverythingInOrder();
    void slowObserver_holdsUpNobody();
    void vanishedObserver_isDropped_data();
    void vanishedObserver_isDropped();
    void removedObserver_hearsNothingMore();
    void registeredTwice_hearsOnce();
    void silence_losesWhatIsSent();
};

void TstObservers::initTestCase()
{
    tessel::init();
    QVERIFY(tessel::ServiceManager::auto_create().listen("TCPIP:localhost:0"));
}

void TstObservers::observers_hearEverythingInOrder()
{
    tessel::AutoRef<Observer> one(new Observer("one"));
    tessel::AutoRef<Observer> two(new Observer("two"));
    Observers observers;
    observers.add(one->description());
    observers.add(QStringLiteral("com.halvar.nap.NotificationObserver:") + two->description());
    QStringList expected;
    for (int i = 0; i < 50; ++i) {
        expected.append(QString::number(i));
        observers.send(message(qPrintable(expected.last())));
    }
    QTRY_COMPARE(one->heard(), expected);
    QTRY_COMPARE(two->heard(), expected);
}

void TstObservers::slowObserver_holdsUpNobody()
{
    tessel::AutoRef<Observer> slow(new Observer("slow"));
    tessel::AutoRef<Observer> quick(new Observer("quick"));
    slow->holding = true;
    Observers observers;
    observers.add(slow->description());
    observers.add(quick->description());
    for (const char *id : {"a", "b", "c"})
        observers.send(message(id));
    QTRY_COMPARE(quick->heard().size(), 3);
    QVERIFY(slow->heard().isEmpty());
    slow->held.release(3);
    QTRY_COMPARE(slow->heard().size(), 3);
}

void TstObservers::vanishedObserver_isDropped_data()
{
    QTest::addColumn<QString>("description");
    QTest::newRow("nobody of that name")
        << QStringLiteral("nobody@TCPIP:localhost:%1").arg(tessel::ServiceManager::auto_create().port());
    QTest::newRow("nothing listens") << QStringLiteral("nap_server@TCPIP:localhost:1");
    QTest::newRow("no description") << QStringLiteral("observer");
    QTest::newRow("empty") << QString();
}

void TstObservers::vanishedObserver_isDropped()
{
    QFETCH(QString, description);
    tessel::AutoRef<Observer> present(new Observer("present"));
    Observers observers;
    QSignalSpy dropped(&observers, &Observers::dropped);
    observers.add(present->description());
    observers.add(description);
    observers.send(message("a"));
    QTRY_COMPARE(dropped.size(), 1);
    QCOMPARE(dropped.first().first().toString(), description);
    QCOMPARE(observers.descriptions(), QStringList(present->description()));
    QTRY_COMPARE(present->heard().size(), 1);
}

void TstObservers::removedObserver_hearsNothingMore()
{
    tessel::AutoRef<Observer> observer(new Observer("gone"));
    Observers observers;
    observers.add(observer->description());
    observers.send(message("a"));
    QTRY_COMPARE(observer->heard().size(), 1);
    QVERIFY(observers.remove(observer->description()));
    QVERIFY(!observers.remove(observer->description()));
    observers.send(message("b"));
    // A later observer hears its message: so would the removed one have by then.
    tessel::AutoRef<Observer> later(new Observer("later"));
    observers.add(later->description());
    observers.send(message("c"));
    QTRY_COMPARE(later->heard().size(), 1);
    QCOMPARE(observer->heard().size(), 1);
}

void TstObservers::registeredTwice_hearsOnce()
{
    tessel::AutoRef<Observer> observer(new Observer("twice"));
    Observers observers;
    observers.add(observer->description());
    observers.add(observer->description());
    observers.send(message("a"));
    observers.send(message("b"));
    QTRY_COMPARE(observer->heard(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(observers.descriptions().size(), 1);
}

void TstObservers::silence_losesWhatIsSent()
{
    tessel::AutoRef<Observer> observer(new Observer("silence"));
    Observers observers;
    observers.add(observer->description());
    observers.setSilent(true);
    observers.send(message("a"));
    observers.setSilent(false);
    observers.send(message("b"));
    QTRY_COMPARE(observer->heard(), QStringList(QStringLiteral("b")));
}

QTEST_GUILESS_MAIN(TstObservers)
#include "tst_observers.moc"
