// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include "jsonkeys.h"

using simulator::findRepeatedKey;
using simulator::RepeatedKey;

class TstJsonKeys : public QObject
{
    Q_OBJECT
private slots:
    void keyThatStandsTwice_isFound_data();
    void keyThatStandsTwice_isFound();
    void otherRepetitions_areNone_data();
    void otherRepetitions_areNone();
};

void TstJsonKeys::keyThatStandsTwice_isFound_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("offset");
    const auto row = [](const char *name, const QByteArray &json, const char *key, int offset) {
        QTest::newRow(name) << json << QString::fromUtf8(key) << offset;
    };
    row("side by side", R"({"a":1,"a":2})", "a", 7);
    row("far apart", R"({"a":{"b":[1,{"c":2}]},"d":{},"a":{}})", "a", 30);
    row("white space", "{ \"a\" \t\r\n:1,\n\"a\"\n: 2}", "a", 13);
    row("in an object of an object", R"({"a":{"b":1,"b":2}})", "b", 12);
    row("in an object of a list", R"([{"a":1},{"b":1,"b":2}])", "b", 16);
    row("after a list of objects", R"({"a":[{"b":1}],"a":2})", "a", 15);
    row("empty", R"({"":1,"":2})", "", 6);
    row("beyond ASCII", R"({"é":1,"é":2})", "é", 8);
    row("escaped once", R"({"a":1,"\u0061":2})", "a", 7);
    row("escaped in two ways", R"({"\/":1,"\u002f":2})", "/", 8);
    row("escaped for nothing", R"({"\a":1,"a":2})", "a", 8);
    row("with a quotation mark", R"({"\"":1,"\"":2})", "\"", 8);
    row("with a backslash", R"({"\\":1,"\\":2})", "\\", 8);
    row("two of them", R"({"a":1,"b":1,"b":2,"a":2})", "b", 13);
    row("behind a value with signs", R"({"a":"}]{[\",:","a":2})", "a", 16);
    row("before what is no JSON", R"({"a":1,"a":2}})", "a", 7);
    row("in what ends early", R"({"a":{},"a":{)", "a", 8);
}

void TstJsonKeys::keyThatStandsTwice_isFound()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, key);
    QFETCH(int, offset);
    const RepeatedKey repeated = findRepeatedKey(json);
    QVERIFY(repeated.isFound());
    QCOMPARE(repeated.key, key);
    QCOMPARE(repeated.offset, offset);
}

void TstJsonKeys::otherRepetitions_areNone_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("values") << QByteArray(R"({"a":"a","b":"a","c":["a","a"]})");
    QTest::newRow("in two objects of a list") << QByteArray(R"([{"a":1},{"a":1}])");
    QTest::newRow("in an object and one inside it") << QByteArray(R"({"a":{"a":{"a":1}}})");
    QTest::newRow("in an object and one that has ended") << QByteArray(R"({"b":{"a":1},"a":1})");
    QTest::newRow("of another case") << QByteArray(R"({"a":1,"A":2})");
    QTest::newRow("in a text") << QByteArray(R"({"a":"\"a\":1,\"a\":2"})");
    QTest::newRow("no object around them") << QByteArray(R"("a":1,"a":2)");
    QTest::newRow("without a colon") << QByteArray(R"({"a","a"})");
    QTest::newRow("text without an end") << QByteArray(R"({"a":1,"a)");
    QTest::newRow("backslash at the end") << QByteArray(R"({"a":1,"a\)");
    QTest::newRow("no UTF-8 in two keys") << QByteArray("{\"\xff\":1,\"\xfe\":2}");
    QTest::newRow("two broken escapes") << QByteArray(R"({"\u12":1,"\u34":2})");
    QTest::newRow("too many ends") << QByteArray(R"(}]{"a":1}}]})");
}

void TstJsonKeys::otherRepetitions_areNone()
{
    QFETCH(QByteArray, json);
    const RepeatedKey repeated = findRepeatedKey(json);
    QVERIFY2(!repeated.isFound(), qPrintable(repeated.key));
}

QTEST_GUILESS_MAIN(TstJsonKeys)
#include "tst_jsonkeys.moc"
