// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// A notification, from where the middleware's thread calls the observer to the QML binding that shows it,
// beside a bare queued signal with a number on the same way: events a second in bursts, and the time that the
// slowest of a hundred single ones takes. Both threads share one processor.
#include <QCoreApplication>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QThread>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>
#include <nap/records.h>

#include "core.h"
#include "detectionrequest.h"
#include "goals.h"
#include "napobserver.h"
#include "quantile.h"

namespace nap = com::halvar::nap;

namespace {
using Clock = std::chrono::steady_clock;
}

/// What stands on the interface thread: a property that a binding reads. Knows which values must come, 0, 1
/// and so on to a last one and again.
class Display : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double value READ value NOTIFY valueChanged)

public:
    double value() const { return m_value; }
    int received() const { return m_received; }
    bool isInOrder() const { return m_inOrder; }
    Clock::time_point lastShown() const { return m_lastShown; }
    void expect(int values)
    {
        m_values = values;
        m_received = 0;
        m_next = 0;
        m_inOrder = true;
        m_value = -1;
    }
    void stampEach(bool on) { m_stamps = on; }
    void show(double value)
    {
        ++m_received;
        m_inOrder = m_inOrder && value == double(m_next);
        if (++m_next == m_values)
            m_next = 0;
        if (std::exchange(m_value, value) != value)
            emit valueChanged();
        if (m_stamps)
            m_lastShown = Clock::now();
    }
    void showDetection(const nap::DetectionResult &result) { show(result.get_value()); }

signals:
    void valueChanged();

private:
    double m_value = -1;
    int m_received = 0;
    int m_values = 0;
    int m_next = 0;
    bool m_inOrder = true;
    bool m_stamps = false;
    Clock::time_point m_lastShown;
};

/// Emits on the thread it is called on.
class Source : public QObject
{
    Q_OBJECT

signals:
    void measured(double value);
};

namespace {

constexpr int burst = 20000;
// As many different messages go round: in reality each has just been decoded and is in the processor's cache.
constexpr int messages = 250;
constexpr int singles = 1000;
constexpr std::chrono::microseconds pause(100); // between singles: enough for both threads to fall asleep
constexpr int patience = 10000; // pauses, before a single counts as lost

/// The interface thread's end, with a binding that shows what arrives, and the thread at the other end.
class Bound
{
public:
    Bound()
        : m_component(&m_engine)
    {
        m_engine.rootContext()->setContextProperty(QStringLiteral("display"), &display);
        m_component.setData("import QtQml 2.2\nQtObject { property string text: display.value.toFixed(2) }",
                            QUrl());
        m_bound.reset(m_component.create());
        m_worker.moveToThread(&m_thread);
        m_thread.start();
    }
    ~Bound()
    {
        m_thread.quit();
        m_thread.wait();
    }

    /// \return whether emission(0), emission(1) and so on, called in the other thread, have all been shown
    /// here, in their order.
    template <class Emission>
    bool showAll(int count, int values, Emission &emission)
    {
        display.expect(values);
        runThere([count, values, &emission] {
            for (int i = 0; i < count; ++i)
                emission(i % values);
        });
        while (m_isRunning)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return display.received() == count && display.isInOrder() && showsLast();
    }

    /// Times from before each emission to when it has been shown; empty when one was not.
    template <class Emission>
    std::vector<double> timeSingles(int count, int values, Emission &emission)
    {
        std::vector<double> seconds;
        seconds.reserve(std::size_t(count));
        display.expect(values);
        display.stampEach(true);
        std::atomic<int> shown{0};
        Clock::time_point start;
        runThere([count, values, &emission, &shown, &start] {
            for (int i = 0; i < count; ++i) {
                for (int waits = 0; (waits == 0 || shown < i) && waits < patience; ++waits)
                    std::this_thread::sleep_for(pause);
                if (shown < i)
                    return; // one was lost
                start = Clock::now();
                emission(i % values);
            }
        });
        while (m_isRunning) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            if (display.received() > shown) {
                seconds.push_back(std::chrono::duration<double>(display.lastShown() - start).count());
                shown = display.received();
            }
        }
        display.stampEach(false);
        if (display.received() != count || !display.isInOrder() || !showsLast())
            seconds.clear();
        return seconds;
    }

    Display display;

private:
    template <class Work>
    void runThere(Work work)
    {
        m_isRunning = true;
        // What says that it is over arrives behind all that the work has sent.
        QMetaObject::invokeMethod(
            &m_worker,
            [this, work] {
                work();
                QMetaObject::invokeMethod(
                    &display, [this] { m_isRunning = false; }, Qt::QueuedConnection);
            },
            Qt::QueuedConnection);
    }
    bool showsLast() const
    {
        return m_bound && m_bound->property("text").toString() == QString::number(display.value(), 'f', 2);
    }

    QQmlEngine m_engine;
    QQmlComponent m_component;
    std::unique_ptr<QObject> m_bound;
    QThread m_thread;
    QObject m_worker;
    bool m_isRunning = false; // there; known here
};

template <class Emission>
void runBursts(benchmark::State &state, Bound &bound, int values, Emission emission)
{
    for (auto _ : state) {
        if (!bound.showAll(burst, values, emission)) {
            state.SkipWithError("an event of the burst was lost, came twice or out of its order");
            return;
        }
    }
    state.SetItemsProcessed(state.iterations() * burst);
}

template <class Emission>
void runSingles(benchmark::State &state, Bound &bound, int values, Emission emission)
{
    for (auto _ : state) {
        std::vector<double> seconds = bound.timeSingles(singles, values, emission);
        if (seconds.empty()) {
            state.SkipWithError("an event was not shown");
            return;
        }
        state.SetIterationTime(quantile(seconds, 0.99));
    }
}

using Run = decltype(&runBursts<std::function<void(int)>>);

void notification(benchmark::State &state, Run run)
{
    const OneCore core;
    Bound bound;
    const tessel::AutoRef<NAPObserver> observer(new NAPObserver);
    QObject::connect(observer->nap_client(), &NAPClient::nap_DetectionResult, &bound.display,
                     &Display::showDetection);
    std::vector<tessel::Tuple> requests;
    for (int i = 0; i < messages; ++i)
        requests.push_back(detectionRequest(i));
    tessel::Service &service = *observer;
    run(state, bound, messages, [&requests, &service](int value) {
        tessel::Tuple reply;
        service.call(requests[std::size_t(value)], reply);
    });
}

void bareSignal(benchmark::State &state, Run run)
{
    const OneCore core;
    Bound bound;
    Source source;
    QObject::connect(&source, &Source::measured, &bound.display, &Display::show);
    run(state, bound, messages, [&source](int value) { emit source.measured(value); });
}

const bool registered = [] {
    using benchmark::RegisterBenchmark;
    const Run bursts = &runBursts<std::function<void(int)>>;
    const Run single = &runSingles<std::function<void(int)>>;
    RegisterBenchmark("link, notification to a binding:library", notification, bursts)
        ->UseRealTime()
        ->Iterations(1);
    RegisterBenchmark("link, notification to a binding:queued signal", bareSignal, bursts)
        ->UseRealTime()
        ->Iterations(1);
    RegisterBenchmark("link, single notification:library", notification, single)
        ->UseManualTime()
        ->Iterations(1);
    RegisterBenchmark("link, single notification:queued signal", bareSignal, single)
        ->UseManualTime()
        ->Iterations(1);

    goal("link, notification to a binding", "queued signal", 1.25);
    goal("link, single notification", "queued signal", 1.5);
    return true;
}();

} // namespace

#include "notifications.moc"
