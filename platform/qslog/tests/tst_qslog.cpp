// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QDateTime>
#include <QMutex>
#include <QRegularExpression>
#include <QTest>

#include <thread>
#include <vector>

#include <QsLog.h>
#include <QsLogDest.h>

using QsLogging::DestinationFactory;
using QsLogging::DestinationPtr;
using QsLogging::Logger;

namespace {

/// What the destinations received, in the order in which they were called.
QMutex mutex;
QStringList received;

void record(const QString &name, const QString &message)
{
    const QMutexLocker lock(&mutex);
    received.append(name + message);
}

class NamedDestination : public QsLogging::Destination
{
public:
    explicit NamedDestination(const QString &name)
        : m_name(name)
    { }
    void write(const QString &message, QsLogging::Level level) override
    {
        record(m_name + QString::number(level) + QLatin1Char('|'), message.section(QLatin1Char(' '), -2));
    }
    bool isValid() override { return true; }

private:
    const QString m_name;
};

void recordLine(const QString &message, QsLogging::Level)
{
    record(QString(), message);
}

QsLogging::Level functorsLevel = QsLogging::OffLevel;

void recordLevel(const QString &, QsLogging::Level level)
{
    functorsLevel = level;
}

int composed = 0;

int compose()
{
    return ++composed;
}

void logAtEveryLevel()
{
    QLOG_TRACE() << compose();
    QLOG_DEBUG() << compose();
    QLOG_INFO() << compose();
    QLOG_WARN() << compose();
    QLOG_ERROR() << compose();
    QLOG_FATAL() << compose();
}

} // namespace

class TstQsLog : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void levels_haveTheirOrder();
    void level_letsItselfAndEverythingAboveThrough_data();
    void level_letsItselfAndEverythingAboveThrough();
    void line_hasLevelTimeAndText_data();
    void line_hasLevelTimeAndText();
    void line_isStreamedAsADebugStreamDoes();
    void macro_isOneStatement();
    void helper_isALineOfItsLevel();
    void destinations_areCalledInTheirOrder();
    void removedDestination_receivesNothingMore();
    void unknownDestination_isRemovedWithoutHarm();
    void functor_receivesTheLevel();
    void functors_validity();
    void linesOfManyThreads_arriveWhole();
    void levelChangedWhileOthersLog_isSafe();

private:
    void add(const DestinationPtr &destination);

    QVector<DestinationPtr> m_added;
};

void TstQsLog::initTestCase()
{
    QCOMPARE(Logger::instance().loggingLevel(), QsLogging::InfoLevel);
}

void TstQsLog::init()
{
    received.clear();
    composed = 0;
    Logger::instance().setLoggingLevel(QsLogging::TraceLevel);
}

void TstQsLog::cleanup()
{
    for (const DestinationPtr &destination : qAsConst(m_added))
        Logger::instance().removeDestination(destination);
    m_added.clear();
}

void TstQsLog::add(const DestinationPtr &destination)
{
    Logger::instance().addDestination(destination);
    m_added.append(destination);
}

void TstQsLog::levels_haveTheirOrder()
{
    QCOMPARE(int(QsLogging::TraceLevel), 0);
    QCOMPARE(int(QsLogging::DebugLevel), 1);
    QCOMPARE(int(QsLogging::InfoLevel), 2);
    QCOMPARE(int(QsLogging::WarnLevel), 3);
    QCOMPARE(int(QsLogging::ErrorLevel), 4);
    QCOMPARE(int(QsLogging::FatalLevel), 5);
    QCOMPARE(int(QsLogging::OffLevel), 6);
}

void TstQsLog::level_letsItselfAndEverythingAboveThrough_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("lines");
    QTest::newRow("trace") << int(QsLogging::TraceLevel) << 6;
    QTest::newRow("debug") << int(QsLogging::DebugLevel) << 5;
    QTest::newRow("info") << int(QsLogging::InfoLevel) << 4;
    QTest::newRow("warn") << int(QsLogging::WarnLevel) << 3;
    QTest::newRow("error") << int(QsLogging::ErrorLevel) << 2;
    QTest::newRow("fatal") << int(QsLogging::FatalLevel) << 1;
    QTest::newRow("off") << int(QsLogging::OffLevel) << 0;
}

void TstQsLog::level_letsItselfAndEverythingAboveThrough()
{
    QFETCH(const int, level);
    QFETCH(const int, lines);
    add(DestinationFactory::MakeFunctorDestination(&recordLine));
    Logger::instance().setLoggingLevel(QsLogging::Level(level));
    QCOMPARE(int(Logger::instance().loggingLevel()), level);
    logAtEveryLevel();
    QCOMPARE(received.size(), lines);
    // What is kept out is not even composed.
    QCOMPARE(composed, lines);
}

void TstQsLog::line_hasLevelTimeAndText_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("name");
    QTest::newRow("trace") << int(QsLogging::TraceLevel) << QStringLiteral("TRACE");
    QTest::newRow("debug") << int(QsLogging::DebugLevel) << QStringLiteral("DEBUG");
    QTest::newRow("info") << int(QsLogging::InfoLevel) << QStringLiteral("INFO ");
    QTest::newRow("warn") << int(QsLogging::WarnLevel) << QStringLiteral("WARN ");
    QTest::newRow("error") << int(QsLogging::ErrorLevel) << QStringLiteral("ERROR");
    QTest::newRow("fatal") << int(QsLogging::FatalLevel) << QStringLiteral("FATAL");
}

void TstQsLog::line_hasLevelTimeAndText()
{
    QFETCH(const int, level);
    QFETCH(const QString, name);
    add(DestinationFactory::MakeFunctorDestination(&recordLine));
    const QDateTime before = QDateTime::currentDateTime();
    {
        Logger::Helper helper{QsLogging::Level(level)};
        helper.stream() << "[Halvar Controller]: Négative";
    }
    const QDateTime after = QDateTime::currentDateTime();
    QCOMPARE(received.size(), 1);
    const QRegularExpression pattern(
        QStringLiteral("^%1 (\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}) "
                       "\\[Halvar Controller\\]: Négative ?$")
            .arg(name));
    const QRegularExpressionMatch match = pattern.match(received.at(0));
    QVERIFY2(match.hasMatch(), qPrintable(received.at(0)));
    const QDateTime time =
        QDateTime::fromString(match.captured(1), QStringLiteral("yyyy-MM-ddThh:mm:ss.zzz"));
    QVERIFY(time.isValid());
    QVERIFY(before <= time);
    QVERIFY(time <= after);
}

void TstQsLog::line_isStreamedAsADebugStreamDoes()
{
    add(DestinationFactory::MakeFunctorDestination(&recordLine));
    QLOG_INFO() << "count: " << 3 << QStringLiteral("text") << true;
    QCOMPARE(received.size(), 1);
    const int textStart = 5 + 1 + 23 + 1;
    QCOMPARE(received.at(0).mid(textStart).trimmed(), QStringLiteral("count:  3 \"text\" true"));
}

void TstQsLog::macro_isOneStatement()
{
    add(DestinationFactory::MakeFunctorDestination(&recordLine));
    bool otherwise = false;
    // A dangling else would belong to the macro's own condition.
    if (composed != 0)
        QLOG_INFO() << compose();
    else
        otherwise = true;
    QVERIFY(otherwise);
    QCOMPARE(received.size(), 0);
}

void TstQsLog::helper_isALineOfItsLevel()
{
    add(DestinationFactory::MakeFunctorDestination(&recordLevel));
    QLOG_WARN() << "";
    QCOMPARE(functorsLevel, QsLogging::WarnLevel);
    QLOG_FATAL() << "";
    QCOMPARE(functorsLevel, QsLogging::FatalLevel);
}

void TstQsLog::destinations_areCalledInTheirOrder()
{
    add(DestinationPtr(new NamedDestination(QStringLiteral("first"))));
    add(DestinationPtr(new NamedDestination(QStringLiteral("second"))));
    add(DestinationPtr(new NamedDestination(QStringLiteral("third"))));
    QLOG_ERROR() << "x";
    QCOMPARE(received,
             (QStringList{QStringLiteral("first4|x "), QStringLiteral("second4|x "),
                          QStringLiteral("third4|x ")}));
}

void TstQsLog::removedDestination_receivesNothingMore()
{
    const DestinationPtr first(new NamedDestination(QStringLiteral("first")));
    add(first);
    add(DestinationPtr(new NamedDestination(QStringLiteral("second"))));
    Logger::instance().removeDestination(first);
    QLOG_INFO() << "x";
    QCOMPARE(received, QStringList{QStringLiteral("second2|x ")});
}

void TstQsLog::unknownDestination_isRemovedWithoutHarm()
{
    add(DestinationPtr(new NamedDestination(QStringLiteral("first"))));
    Logger::instance().removeDestination(DestinationPtr(new NamedDestination(QStringLiteral("other"))));
    QLOG_INFO() << "x";
    QCOMPARE(received.size(), 1);
}

void TstQsLog::functor_receivesTheLevel()
{
    add(DestinationFactory::MakeFunctorDestination(&recordLevel));
    QLOG_DEBUG() << "";
    QCOMPARE(functorsLevel, QsLogging::DebugLevel);
}

void TstQsLog::functors_validity()
{
    QVERIFY(DestinationFactory::MakeFunctorDestination(&recordLine)->isValid());
    QVERIFY(DestinationFactory::MakeDebugOutputDestination()->isValid());
}

void TstQsLog::linesOfManyThreads_arriveWhole()
{
    add(DestinationFactory::MakeFunctorDestination(&recordLine));
    constexpr int threadCount = 4;
    constexpr int linesEach = 250;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([thread] {
            for (int line = 0; line < linesEach; ++line)
                QLOG_INFO() << "thread" << thread << "line" << line << "end";
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    QCOMPARE(received.size(), threadCount * linesEach);
    const QRegularExpression whole(QStringLiteral("^INFO  \\S{23} thread (\\d) line (\\d+) end ?$"));
    QVector<int> next(threadCount, 0);
    for (const QString &line : qAsConst(received)) {
        const QRegularExpressionMatch match = whole.match(line);
        QVERIFY2(match.hasMatch(), qPrintable(line));
        // The lines of one thread keep their order.
        QCOMPARE(match.captured(2).toInt(), next[match.captured(1).toInt()]++);
    }
}

void TstQsLog::levelChangedWhileOthersLog_isSafe()
{
    add(DestinationFactory::MakeFunctorDestination(&recordLine));
    std::thread logging([] {
        for (int line = 0; line < 2000; ++line)
            QLOG_DEBUG() << line;
    });
    for (int change = 0; change < 200; ++change) {
        Logger::instance().setLoggingLevel(change % 2 ? QsLogging::OffLevel : QsLogging::TraceLevel);
        const DestinationPtr other(new NamedDestination(QStringLiteral("other")));
        Logger::instance().addDestination(other);
        Logger::instance().removeDestination(other);
    }
    logging.join();
    Logger::instance().setLoggingLevel(QsLogging::TraceLevel);
    received.clear();
    QLOG_DEBUG() << "x";
    QCOMPARE(received.size(), 1);
}

QTEST_GUILESS_MAIN(TstQsLog)
#include "tst_qslog.moc"
