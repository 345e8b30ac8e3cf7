// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <cmath>
#include <limits>
#include <thread>

#include <tessel/tessel.h>

using namespace tessel;

namespace {

class Counted : public RefCounted
{
public:
    explicit Counted(int &alive)
        : m_alive(alive)
    {
        ++m_alive;
    }

protected:
    ~Counted() override { --m_alive; }

private:
    int &m_alive;
};

class Special : public Counted
{
public:
    using Counted::Counted;
};

QList<QByteArray> namesOf(const Tuple &tuple)
{
    QList<QByteArray> names;
    for (int i = 0; i < tuple.size(); ++i)
        names << tuple.name(i);
    return names;
}

} // namespace

class TstTesselValues : public QObject
{
    Q_OBJECT

private slots:
    void value_knowsItsTypeAndReadsOtherTypesAsZero_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i <= T_TIME_PERIOD; ++i)
            QTest::addRow("type %d", i) << i;
    }
    void value_knowsItsTypeAndReadsOtherTypesAsZero()
    {
        QFETCH(int, index);
        Tuple inner("Inner");
        inner.set("x", Value(1));
        const Value values[] = {Value(),
                                Value(true),
                                Value(7),
                                Value(2.5),
                                Value(AString("text")),
                                Value(inner),
                                Value(TimeDate(5)),
                                Value(TimePeriod(6))};
        const Value &value = values[index];
        QCOMPARE(int(value.type()), index);
        QCOMPARE(value.toBool(), index == T_BOOL);
        QCOMPARE(value.toInt(), index == T_INT ? 7 : 0);
        QCOMPARE(value.toDouble(), index == T_DOUBLE ? 2.5 : 0.0);
        QCOMPARE(value.toAString().toUtf8(), index == T_ASTRING ? QByteArray("text") : QByteArray());
        QCOMPARE(value.toTuple() == inner, index == T_TUPLE);
        QCOMPARE(value.toTuple().isEmpty(), index != T_TUPLE);
        QCOMPARE(value.toTimeDate().milliseconds(), index == T_TIME_DATE ? 5 : 0);
        QCOMPARE(value.toTimePeriod().microseconds(), index == T_TIME_PERIOD ? 6 : 0);
        for (int other = 0; other <= T_TIME_PERIOD; ++other)
            QCOMPARE(value == values[other], other == index);
    }

    void tuple_startsEmpty()
    {
        const Tuple tuple("Class");
        QCOMPARE(tuple.class_name(), QByteArray("Class"));
        QVERIFY(tuple.isEmpty());
        QVERIFY(!tuple.is_set("a"));
        QCOMPARE(int(tuple.get("a").type()), int(T_NONE));
        QCOMPARE(Tuple().class_name(), QByteArray());
    }

    void tuple_keepsItsFieldsInTheOrderOfTheirFirstSetting()
    {
        Tuple tuple;
        tuple.set("b", Value(1));
        tuple.set("a", Value(2));
        tuple.set("b", Value(AString("other type")));
        QCOMPARE(namesOf(tuple), (QList<QByteArray>{"b", "a"}));
        QCOMPARE(tuple.get("b").toAString().toUtf8(), QByteArray("other type"));
        QVERIFY(tuple.is_set("b", T_ASTRING));
        QVERIFY(!tuple.is_set("b", T_INT));
        QVERIFY(tuple.is_set("b"));
        QCOMPARE(tuple.value(1).toInt(), 2);
    }

    void tuple_indexOutsideGivesNothing()
    {
        Tuple tuple;
        tuple.set("a", Value(1));
        for (const int index : {-1, 1, std::numeric_limits<int>::max()}) {
            QCOMPARE(tuple.name(index), QByteArray());
            QCOMPARE(int(tuple.value(index).type()), int(T_NONE));
        }
    }

    void tuple_settingNothingRemovesTheField()
    {
        Tuple tuple;
        tuple.set("a", Value(1));
        tuple.set("b", Value(2));
        tuple.set("a", Value());
        tuple.set("absent", Value());
        QCOMPARE(namesOf(tuple), QList<QByteArray>{"b"});
        tuple.clear();
        QVERIFY(tuple.isEmpty());
    }

    void tuple_copiesShareUntilOneIsWrittenTo()
    {
        Tuple tuple("Class");
        tuple.set("a", Value(1));
        Tuple copy = tuple;
        QVERIFY(copy == tuple);
        copy.set("a", Value(2));
        copy.set_class_name(QByteArray("Other"));
        QCOMPARE(tuple.get("a").toInt(), 1);
        QCOMPARE(tuple.class_name(), QByteArray("Class"));
        QVERIFY(copy != tuple);
    }

    void tuple_nestedTupleIsAValueNotAReference()
    {
        Tuple inner;
        inner.set("x", Value(1));
        Tuple outer;
        outer.set("inner", Value(inner));
        inner.set("x", Value(2));
        QCOMPARE(outer.get("inner").toTuple().get("x").toInt(), 1);
        outer.set("self", Value(outer));
        QCOMPARE(outer.get("self").toTuple().size(), 1);
    }

    void tuple_movedFromCanBeUsedAgain()
    {
        Tuple tuple("Class");
        tuple.set("a", Value(1));
        const Tuple taken(std::move(tuple));
        QCOMPARE(taken.get("a").toInt(), 1);
        // NOLINTNEXTLINE(bugprone-use-after-move): that it can be used again is promised
        tuple.clear();
        tuple.set("b", Value(2));
        QCOMPARE(tuple.get("b").toInt(), 2);
        QCOMPARE(taken.size(), 1);
    }

    void tuple_thatWasNeverWrittenToIsEmpty()
    {
        Tuple tuple;
        QCOMPARE(tuple.size(), 0);
        QCOMPARE(tuple.class_name(), QByteArray());
        QVERIFY(!tuple.is_set("a"));
        QCOMPARE(int(tuple.get("a").type()), int(T_NONE));
        tuple.clear();
        tuple.set("a", Value());
        QVERIFY(tuple == Tuple());
        Tuple cleared("");
        cleared.set("a", Value(1));
        QVERIFY(tuple != cleared);
        cleared.clear();
        QVERIFY(tuple == cleared);
        tuple.splice(cleared);
        tuple.set_class_name(QByteArray());
        QVERIFY(tuple.isEmpty());
    }

    void tuple_valueOfATemporaryOutlivesIt()
    {
        const auto make = [] {
            Tuple tuple;
            tuple.set("text", Value(AString("kept")));
            return tuple;
        };
        const Value &value = make().get("text");
        QCOMPARE(value.toAString().toUtf8(), QByteArray("kept"));
    }

    void tuple_namesOfOneLengthAreTakenApart()
    {
        Tuple tuple;
        tuple.set("value", Value(1));
        tuple.set("sigma", Value(2));
        tuple.set(QByteArray("val\0e", 5), Value(3));
        QCOMPARE(tuple.get("value").toInt(), 1);
        QCOMPARE(tuple.get("sigma").toInt(), 2);
        QVERIFY(!tuple.is_set("val"));
        QVERIFY(!tuple.is_set(""));
        QCOMPARE(tuple.size(), 3);
    }

    void tuple_spliceTakesOverAndKeepsTheOthers()
    {
        Tuple tuple("Class");
        tuple.set("kept", Value(1));
        tuple.set("both", Value(2));
        Tuple other("Other");
        other.set("new", Value(3));
        other.set("both", Value(4.5));
        tuple.splice(other);
        QCOMPARE(namesOf(tuple), (QList<QByteArray>{"kept", "both", "new"}));
        QCOMPARE(tuple.get("both").toDouble(), 4.5);
        QCOMPARE(tuple.class_name(), QByteArray("Class"));
        const Tuple before = tuple;
        tuple.splice(tuple);
        QVERIFY(tuple == before);
    }

    void tuple_comparesOrderNamesAndClass()
    {
        Tuple a;
        a.set("x", Value(1));
        a.set("y", Value(2));
        Tuple b;
        b.set("y", Value(2));
        b.set("x", Value(1));
        QVERIFY(a != b);
        Tuple c = a;
        QVERIFY(a == c);
        c.set_class_name(QByteArray("C"));
        QVERIFY(a != c);
    }

    void tuple_nameWithAZeroByteIsANameOfItsOwn()
    {
        Tuple tuple;
        tuple.set(QByteArray("a"), Value(1));
        tuple.set(QByteArray("a\0b", 3), Value(2));
        QCOMPARE(tuple.size(), 2);
        QCOMPARE(tuple.get("a").toInt(), 1);
    }

    void tuple_canBeReadByManyThreadsAndCopiedThere()
    {
        Tuple tuple("Class");
        tuple.set("a", Value(0));
        std::vector<std::thread> threads;
        std::atomic<int> sum{0};
        for (int i = 1; i <= 8; ++i) {
            threads.emplace_back([copy = tuple, i, &sum]() mutable {
                for (int round = 0; round < 200; ++round) {
                    Tuple own = copy;
                    own.set("a", Value(i));
                    copy = own;
                }
                sum += copy.get("a").toInt();
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(sum.load(), 36);
        QCOMPARE(tuple.get("a").toInt(), 0);
    }

    void symbol_isTheSameForTheSameName()
    {
        const QByteArray copy("com.example");
        QVERIFY(Symbol("com.example") == Symbol(copy.constData()));
        QVERIFY(Symbol("com.example") != Symbol("com.example2"));
        QCOMPARE(Symbol("com.example").c_str(), Symbol(copy.constData()).c_str());
        Tuple tuple;
        tuple.set_class_name(Symbol("com.example"));
        QCOMPARE(tuple.class_name(), QByteArray("com.example"));
    }

    void symbol_staysWhenTheTableGrows()
    {
        const Symbol first("first of many");
        const char *const text = first.c_str();
        for (int i = 0; i < 2000; ++i)
            Symbol(QByteArray::number(i).constData());
        QCOMPARE(Symbol("first of many").c_str(), text);
    }

    void timeDate_isTheFirstOfJanuary1970UnlessGiven()
    {
        const TimeDate date;
        QVERIFY(date == TimeDate(0));
        QCOMPARE(date.year(), 1970);
        QCOMPARE(date.month(), 1);
        QCOMPARE(date.day(), 1);
        QCOMPARE(date.hour() + date.minute() + date.second() + date.millisecond(), 0);
    }

    void timeDate_isUtcWhateverTheZone()
    {
        QCOMPARE(qgetenv("TZ"), QByteArray("Europe/Paris")); // set by the test's environment: not UTC
        const TimeDate date(2024, 2, 29);
        QCOMPARE(date.milliseconds(), Q_INT64_C(1709164800000));
        const TimeDate late(date.milliseconds() + 86399999);
        QCOMPARE(late.day(), 29);
        QCOMPARE(late.hour(), 23);
        QCOMPARE(late.minute(), 59);
        QCOMPARE(late.second(), 59);
        QCOMPARE(late.millisecond(), 999);
        QCOMPARE(TimeDate(date.milliseconds() - 1).day(), 28);
        QVERIFY(TimeDate::now().year() >= 2024);
    }

    void timeDate_noSuchDayIsTheFirstOfJanuary1970()
    {
        QVERIFY(TimeDate(2023, 2, 29) == TimeDate(0));
        QVERIFY(TimeDate(0, 0, 0) == TimeDate(0));
    }

    void timeDate_extremesDoNotOverflow()
    {
        QCOMPARE(TimeDate(-1).year(), 1969);
        // Beyond what a date can hold there is still no undefined behaviour.
        TimeDate(std::numeric_limits<qint64>::max()).year();
        TimeDate(std::numeric_limits<qint64>::min()).day();
    }

    void timePeriod_namesItsSeconds()
    {
        QCOMPARE(TimePeriod(1250000).to_string().toUtf8(), QByteArray("1.250000 s"));
        QCOMPARE(TimePeriod().to_string().toUtf8(), QByteArray("0.000000 s"));
        QCOMPARE(TimePeriod(-1).to_string().toUtf8(), QByteArray("-0.000001 s"));
        QCOMPARE(TimePeriod(2500000).seconds(), 2.5);
    }

    void aString_isUtf8()
    {
        const AString text(QStringLiteral("Négative"));
        QCOMPARE(text.toUtf8(), QByteArray("N\xc3\xa9gative"));
        QCOMPARE(text.size(), 9);
        QCOMPARE(text.toString(), QStringLiteral("Négative"));
        QVERIFY(AString().isEmpty());
        QVERIFY(AString("a") != AString("b"));
    }

    void autoRef_deletesWithTheLastReference()
    {
        int alive = 0;
        {
            AutoRef<Counted> first(new Counted(alive));
            QCOMPARE(alive, 1);
            AutoRef<Counted> second = first;
            first.reset();
            QVERIFY(!first);
            QCOMPARE(alive, 1);
            AutoRef<Counted> third(std::move(second));
            // cppcheck-suppress accessMoved ; that it is empty then is promised
            QVERIFY(!second); // NOLINT(bugprone-use-after-move)
            const AutoRef<Counted> &itself = third;
            third = itself;
            QCOMPARE(alive, 1);
            third = AutoRef<Counted>(new Counted(alive));
            QCOMPARE(alive, 1);
        }
        QCOMPARE(alive, 0);
    }

    void autoRef_convertsToABase()
    {
        int alive = 0;
        AutoRef<Counted> base;
        {
            AutoRef<Special> special(new Special(alive));
            base = special;
            QVERIFY(base.get() == special.get());
        }
        QCOMPARE(alive, 1);
        base.reset();
        QCOMPARE(alive, 0);
    }

    void autoRef_countsAcrossThreads()
    {
        int alive = 0;
        AutoRef<Counted> handle(new Counted(alive));
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([handle] {
                for (int round = 0; round < 1000; ++round) {
                    AutoRef<Counted> copy = handle;
                    AutoRef<Counted> other = copy;
                }
            });
        }
        handle.reset();
        for (std::thread &thread : threads)
            thread.join();
        threads.clear();
        QCOMPARE(alive, 0);
    }

    void description_isParsed_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("parts");
        const QByteArray none;
        QTest::newRow("plain") << QByteArray("nap_server@TCPIP:localhost:3555")
                               << QByteArray("|nap_server|localhost|3555");
        QTest::newRow("with an interface") << QByteArray("com.halvar.nap.NAPServer:n@TCPIP:127.0.0.1:1")
                                           << QByteArray("com.halvar.nap.NAPServer|n|127.0.0.1|1");
        QTest::newRow("IPv6") << QByteArray("n@TCPIP:::1:65535") << QByteArray("|n|::1|65535");
        QTest::newRow("empty") << none << none;
        QTest::newRow("no name") << QByteArray("@TCPIP:localhost:1") << none;
        QTest::newRow("interface without a name") << QByteArray("i:@TCPIP:localhost:1") << none;
        QTest::newRow("no address") << QByteArray("n") << none;
        QTest::newRow("other transport") << QByteArray("n@UDPIP:localhost:1") << none;
        QTest::newRow("no host") << QByteArray("n@TCPIP::1") << none;
        QTest::newRow("no port") << QByteArray("n@TCPIP:localhost") << none;
        QTest::newRow("empty port") << QByteArray("n@TCPIP:localhost:") << none;
        QTest::newRow("port too large") << QByteArray("n@TCPIP:localhost:65536") << none;
        QTest::newRow("negative port") << QByteArray("n@TCPIP:localhost:-1") << none;
        QTest::newRow("port and more") << QByteArray("n@TCPIP:localhost:1x") << none;
    }
    void description_isParsed()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, parts);
        Description description;
        description.name = "left over";
        const bool parsed = Description::parse(text, description);
        QCOMPARE(parsed, !parts.isEmpty());
        if (!parsed) {
            QCOMPARE(description.name + description.interfaceName + description.host, QByteArray());
            QCOMPARE(description.port, quint16(0));
            return;
        }
        QCOMPARE(description.interfaceName + '|' + description.name + '|' + description.host + '|'
                     + QByteArray::number(description.port),
                 parts);
    }

    void description_fillsTheFixedArraysOfItsUsers()
    {
        QCOMPARE(qstrlen("nap_server@TCPIP:localhost:3555"), 31u);
    }
};

QTEST_GUILESS_MAIN(TstTesselValues)
#include "tst_tessel_values.moc"
