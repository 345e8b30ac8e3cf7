// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include "expressionroles.h"
#include "watchedlist.h"

class TstExpressionRoles : public QObject
{
    Q_OBJECT

private slots:
    void members_areThoseOfPlainReads_data();
    void members_areThoseOfPlainReads();
    void members_areUnknownWhenAnythingElseIsDone_data();
    void members_areUnknownWhenAnythingElseIsDone();
    void mention_isToldFromItsAbsence();
    void changes_areSeenInTheText_data();
    void changes_areSeenInTheText();
    void reader_readsOnlyWhatIsRead();
    void reader_readsEverythingWhenItCannotTell();
    void reader_followsTheRoleNames();
    void reader_withoutExpression_readsEverything();
};

void TstExpressionRoles::members_areThoseOfPlainReads_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("members");
    const auto row = [](const char *expression, const char *members) {
        QTest::newRow(expression) << QString::fromUtf8(expression) << QString::fromUtf8(members);
    };
    row("model.rank > 1", "rank");
    row("model.rank > 1 && model.title !== model.title", "rank title");
    row("model . rank", "rank");
    row("model\n    .rank", "rank");
    row("{ return model.rank }", "rank");
    row("`${model.title}!`", "title");
    row("model.title.indexOf('x') >= 0", "title");
    row("model.tags[index]", "tags");
    row("keep(model.rank, index)", "rank");
    row("model.rank_2 + model.$3", "$3 rank_2");
    row("index > 3", "");
    row("models.rank + remodel.rank + $model.rank", "");
    row("other.model.rank", "rank");
    row("// model.title\nmodel.rank", "rank title");
    row("model.rank = 3", "rank");
    row("model.qualité >= 2 && model.œuvre", "qualité œuvre");
    row("/\\d+/.test(model.title)", "title");
}

void TstExpressionRoles::members_areThoseOfPlainReads()
{
    QFETCH(QString, expression);
    QFETCH(QString, members);
    const auto read = halvar::membersRead(expression, QStringLiteral("model"));
    QVERIFY(read);
    QStringList names = read->values();
    names.sort();
    QCOMPARE(names.join(QLatin1Char(' ')), members);
}

void TstExpressionRoles::members_areUnknownWhenAnythingElseIsDone_data()
{
    QTest::addColumn<QString>("expression");
    for (const char *expression : {"",
                                   "model",
                                   "keep(model)",
                                   "model['rank']",
                                   "model[index]",
                                   "model.r\\u0061nk",
                                   "Object.keys(model).length",
                                   "'rank' in model",
                                   "for (let k in model) k",
                                   "JSON.stringify(model)",
                                   "model.hasOwnProperty('rank')",
                                   "model.title ()",
                                   "model.title`x`",
                                   "(model.valueOf)()",
                                   "model.__proto__",
                                   "model /* here */ .rank",
                                   "let { rank } = model",
                                   "function(model) { return model.rank }",
                                   "({ model: 1 })",
                                   "other.model",
                                   "this.model",
                                   "eval('mo' + 'del.rank')",
                                   "new Function('return 1')",
                                   "with (other) rank",
                                   "mod\\u0065l.rank",
                                   "Qt.createQmlObject('x', other)",
                                   "'model'",
                                   "model.rank && model"})
        QTest::newRow(*expression ? expression : "unknown text") << QString::fromUtf8(expression);
}

void TstExpressionRoles::members_areUnknownWhenAnythingElseIsDone()
{
    QFETCH(QString, expression);
    QVERIFY(!halvar::membersRead(expression, QStringLiteral("model")));
    QVERIFY(halvar::isMentioned(expression, QStringLiteral("model")));
}

void TstExpressionRoles::mention_isToldFromItsAbsence()
{
    QVERIFY(halvar::isMentioned(QStringLiteral("index > 3"), QStringLiteral("index")));
    QVERIFY(halvar::isMentioned(QStringLiteral("model.title + index"), QStringLiteral("model")));
    QVERIFY(!halvar::isMentioned(QStringLiteral("model.title.indexOf('x')"), QStringLiteral("index")));
    QVERIFY(!halvar::isMentioned(QStringLiteral("indexLeft < indexRight"), QStringLiteral("index")));
    QVERIFY(halvar::isMentioned(QStringLiteral("eval(text)"), QStringLiteral("index")));
}

void TstExpressionRoles::changes_areSeenInTheText_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<bool>("changes");
    for (const char *expression :
         {"model.rank > 1", "model.rank >= 1", "model.rank <= 1", "1 <= model.rank", "model.rank == 1",
          "model.rank === other", "model.rank != 1", "model.rank !== 1", "[model.rank] == other",
          "(model.rank) >= 2", "{ const x = model.rank; let y = 3; return x > y }",
          "list.some(entry => entry.rank == model.rank)", "-model.rank - 1 + +model.left",
          "model.title.indexOf('x') % 2 ? 1 : 0", "forward(model.rank)"})
        QTest::newRow(expression) << QString::fromUtf8(expression) << false;
    for (const char *expression : {"",
                                   "model.rank = 1",
                                   "model.rank=1",
                                   "model.rank\n= 1",
                                   "(model.rank) = 1",
                                   "[model.rank] = list",
                                   "({ x: model.rank } = other)",
                                   "model.rank += 1",
                                   "model.rank -= 1",
                                   "model.rank *= 1",
                                   "model.rank /= 1",
                                   "model.rank %= 1",
                                   "model.rank **= 1",
                                   "model.rank <<= 1",
                                   "model.rank >>= 1",
                                   "model.rank >>>= 1",
                                   "model.rank &= 1",
                                   "model.rank |= 1",
                                   "model.rank ^= 1",
                                   "model.rank &&= 1",
                                   "model.rank ||= 1",
                                   "model.rank ?\?= 1",
                                   "model.rank++",
                                   "--model.rank",
                                   "delete model.rank",
                                   "for (model.rank of list) 1",
                                   "for (model.rank in list) 1",
                                   "model.rank /* */ = 1",
                                   "model.rank // >\n = 1",
                                   "model.qualité = 1",
                                   "x = model.rank",
                                   "let [x] = [model.rank]",
                                   "let x = 1, y = 2",
                                   "model.r\\u0061nk",
                                   "other[model.rank] = 1",
                                   "f(x = model.rank)"})
        QTest::newRow(*expression ? expression : "unknown text") << QString::fromUtf8(expression) << true;
}

void TstExpressionRoles::changes_areSeenInTheText()
{
    QFETCH(QString, expression);
    QFETCH(bool, changes);
    QCOMPARE(!halvar::changesNothing(expression), changes);
    if (changes)
        QVERIFY(!halvar::RoleReader(expression, QStringLiteral("model")).readsMembersOnly());
}

void TstExpressionRoles::reader_readsOnlyWhatIsRead()
{
    WatchedList list;
    list.add(QStringLiteral("a"))->setRank(5);
    const halvar::RoleReader reader(QStringLiteral("model.rank > model.nothing"), QStringLiteral("model"));
    QVERIFY(reader.isMentioned());
    QCOMPARE(reader.read(list.index(0)), QVariantMap({{QStringLiteral("rank"), 5}}));
    list.first()->setRank(6);
    QCOMPARE(reader.read(list.index(0)), QVariantMap({{QStringLiteral("rank"), 6}}));
    QVERIFY(!halvar::RoleReader(QStringLiteral("1 < 2"), QStringLiteral("model")).isMentioned());
}

void TstExpressionRoles::reader_readsEverythingWhenItCannotTell()
{
    WatchedList list;
    list.add(QStringLiteral("a"));
    const halvar::RoleReader reader(QStringLiteral("keep(model)"), QStringLiteral("model"));
    const QVariantMap values = reader.read(list.index(0));
    QCOMPARE(values.size(), list.roleNames().size());
    QCOMPARE(values.value(QStringLiteral("title")).toString(), QStringLiteral("a"));
    QCOMPARE(values.value(QStringLiteral("qtObject")).value<QObject *>(),
             static_cast<QObject *>(list.first()));
}

void TstExpressionRoles::reader_followsTheRoleNames()
{
    struct Renaming : QAbstractListModel
    {
        int rowCount(const QModelIndex &) const override { return 1; }
        QVariant data(const QModelIndex &, int role) const override { return role; }
        QHash<int, QByteArray> roleNames() const override { return names; }
        QHash<int, QByteArray> names{{1, "rank"}, {2, "title"}};
    } model;
    const halvar::RoleReader reader(QStringLiteral("model.rank"), QStringLiteral("model"));
    QCOMPARE(reader.read(model.index(0)), QVariantMap({{QStringLiteral("rank"), 1}}));
    model.names = {{7, "rank"}};
    QCOMPARE(reader.read(model.index(0)), QVariantMap({{QStringLiteral("rank"), 7}}));
    model.names.insert(8, "later"); // in place
    model.names.remove(7);
    QCOMPARE(reader.read(model.index(0)), QVariantMap());
}

void TstExpressionRoles::reader_withoutExpression_readsEverything()
{
    WatchedList list;
    list.add(QStringLiteral("a"));
    const halvar::RoleReader reader;
    QVERIFY(reader.isMentioned());
    QCOMPARE(reader.read(list.index(0)).size(), list.roleNames().size());
}

QTEST_GUILESS_MAIN(TstExpressionRoles)
#include "tst_expressionroles.moc"
