// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QRegularExpression>
#include <QTest>

#include <functional>
#include <memory>

#include "logrecorder.h"
#include "qqmlsortfilterproxymodel.h"
#include "watchedlist.h"

namespace {

using Proxy = QQmlSortFilterProxyModel;

/// What an expression can reach from outside: it notes what it is told and does what the test wants.
class Probe : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE bool note(const QVariant &value)
    {
        notes.append(value);
        if (during)
            std::exchange(during, nullptr)();
        return true;
    }
    QString takeNotes()
    {
        QStringList texts;
        for (const QVariant &value : std::exchange(notes, {}))
            texts.append(value.toString());
        return texts.join(QLatin1Char(' '));
    }
    QVariantList notes;
    std::function<void()> during;
};

} // namespace

class TstQQmlSortFilterProxyModelExpressions : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void filter_seesEachRoleAndTheSourceRow();
    void filter_modelHoldsEveryRoleAndNothingElse();
    void filter_namesReachNoFurther();
    void filter_namesCoverThoseOfTheProxyAndItsContext();
    void filter_isEvaluatedInTheProxysOwnContext();
    void filter_acceptsWhatConvertsToTrue_data();
    void filter_acceptsWhatConvertsToTrue();
    void filter_thatThrows_keepsEveryRowAndWarnsOncePerRow();
    void filter_thatThrowsForSomeRows_warnsForThoseOnly();
    void filter_setAgain_filtersAgain();
    void filter_emptied_keepsEveryRow();
    void filter_isNotFollowedByItself_whenOtherThingsChange();
    void sort_seesBothRows();
    void sort_namesReachNoFurther();
    void sort_thatThrows_warnsAndComparesByRole();
    void sort_setAgain_sortsAgainWithoutFiltering();
    void sort_setBeforeAColumnIsChosen_keepsTheOrder();
    void sort_setWhileNotDynamic_sortsAgain();
    void sort_follows_changesOfRows();
    void expression_thatMakesTheProxyEvaluateAgain_keepsItsNames();
    void expression_thatReplacesItself_isFinishedFirst();
    void expression_thatReplacesItself_leavesTheNextRowsToTheNew();
    void expression_thatEmptiesTheOther_isSurvived();

private:
    Proxy *make(const QByteArray &body);
    QString titles(const QAbstractItemModel *model) const;
    static QStringList warnings(const LogRecorder &log);

    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<List> m_list;
    std::unique_ptr<Probe> m_probe;
    std::vector<std::unique_ptr<QObject>> m_objects;
};

void TstQQmlSortFilterProxyModelExpressions::init()
{
    m_engine = std::make_unique<QQmlEngine>();
    m_list = std::make_unique<List>();
    m_probe = std::make_unique<Probe>();
    m_engine->rootContext()->setContextProperty(QStringLiteral("list"), m_list.get());
    m_engine->rootContext()->setContextProperty(QStringLiteral("probe"), m_probe.get());
    int rank = 0;
    for (const char *title : {"b", "d", "a", "c"}) {
        auto *item = new ListItem(QString::fromLatin1(title));
        item->setRank(++rank);
        m_list->append(item);
    }
}

void TstQQmlSortFilterProxyModelExpressions::cleanup()
{
    m_objects.clear();
    m_engine.reset();
    m_list.reset();
}

Proxy *TstQQmlSortFilterProxyModelExpressions::make(const QByteArray &body)
{
    QQmlComponent component(m_engine.get());
    component.setData("import QtQml 2.2\nimport SortFilterProxyModel 0.1\nSortFilterProxyModel {\n" + body
                          + "\n}",
                      QUrl(QStringLiteral("proxy.qml")));
    m_objects.emplace_back(component.create());
    auto *proxy = qobject_cast<Proxy *>(m_objects.back().get());
    if (!proxy)
        qFatal("%s", qPrintable(component.errorString()));
    return proxy;
}

QString TstQQmlSortFilterProxyModelExpressions::titles(const QAbstractItemModel *model) const
{
    QStringList result;
    for (int row = 0; row < model->rowCount(); ++row)
        result.append(model->index(row, 0).data(ListItem::TitleRole).toString());
    return result.join(QLatin1Char(' '));
}

// The line number is left out: the JavaScript engine loses it once it has compiled an expression to
// machine code, after a few evaluations.
QStringList TstQQmlSortFilterProxyModelExpressions::warnings(const LogRecorder &log)
{
    QStringList lines = log.lines(QStringLiteral("WARN"));
    lines.replaceInStrings(QRegularExpression(QStringLiteral("^\"proxy.qml:\\d+: ")), QStringLiteral("\""));
    return lines;
}

void TstQQmlSortFilterProxyModelExpressions::filter_seesEachRoleAndTheSourceRow()
{
    const LogRecorder log;
    QCOMPARE(titles(make("sourceModel: list; filterExpression: model.rank > 1 && model.title < 'd'")),
             QStringLiteral("a c"));
    QCOMPARE(titles(make("sourceModel: list; filterExpression: index % 2 === 0")), QStringLiteral("b a"));
    QCOMPARE(titles(make("sourceModel: list; filterExpression: model.qtObject === list.get(1)")),
             QStringLiteral("d"));
    // Behind another proxy, the row is that of its own source.
    QCOMPARE(
        titles(make("filterExpression: index > 0;"
                    "sourceModel: SortFilterProxyModel { sourceModel: list; filterExpression: index > 0 }")),
        QStringLiteral("a c"));
    QCOMPARE(warnings(log), QStringList());
}

void TstQQmlSortFilterProxyModelExpressions::filter_modelHoldsEveryRoleAndNothingElse()
{
    make("sourceModel: list; filterExpression: probe.note(Object.keys(model).sort().join())")->rowCount();
    QStringList names;
    for (const QByteArray &name : m_list->roleNames())
        names.append(QString::fromUtf8(name));
    names.sort();
    QCOMPARE(m_probe->notes,
             QVariantList({names.join(QLatin1Char(',')), names.join(QLatin1Char(',')),
                           names.join(QLatin1Char(',')), names.join(QLatin1Char(','))}));
}

void TstQQmlSortFilterProxyModelExpressions::filter_namesReachNoFurther()
{
    Proxy *proxy = make("sourceModel: list; filterExpression: model.rank < 3;"
                        "function kind() { return typeof model }");
    QCOMPARE(proxy->rowCount(), 2);
    QVariant kind;
    QVERIFY(QMetaObject::invokeMethod(proxy, "kind", Q_RETURN_ARG(QVariant, kind)));
    QCOMPARE(kind.toString(), QStringLiteral("undefined"));
}

void TstQQmlSortFilterProxyModelExpressions::filter_namesCoverThoseOfTheProxyAndItsContext()
{
    m_engine->rootContext()->setContextProperty(QStringLiteral("model"), QStringLiteral("outer"));
    QCOMPARE(
        titles(make("property int index: 99; sourceModel: list; filterExpression: index === model.rank - 1")),
        QStringLiteral("b d a c"));
}

void TstQQmlSortFilterProxyModelExpressions::filter_isEvaluatedInTheProxysOwnContext()
{
    m_engine->rootContext()->setContextProperty(QStringLiteral("limit"), 2);
    QCOMPARE(titles(make(
                 "id: self; property int most: 3; sourceModel: list;"
                 "filterExpression: model.rank >= limit && model.rank <= self.most && model.rank <= most")),
             QStringLiteral("d a"));
}

void TstQQmlSortFilterProxyModelExpressions::filter_acceptsWhatConvertsToTrue_data()
{
    QTest::addColumn<QByteArray>("expression");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("true") << QByteArray("true") << true;
    QTest::newRow("false") << QByteArray("false") << false;
    QTest::newRow("number") << QByteArray("model.rank") << true;
    QTest::newRow("zero") << QByteArray("model.rank * 0") << false;
    QTest::newRow("text") << QByteArray("model.title") << true;
    QTest::newRow("empty text") << QByteArray("''") << false;
    QTest::newRow("undefined") << QByteArray("undefined") << false;
    QTest::newRow("null") << QByteArray("null") << false;
    QTest::newRow("role that is not there") << QByteArray("model.nothing") << false;
    QTest::newRow("block with return") << QByteArray("{ return model.rank > 0 }") << true;
}

void TstQQmlSortFilterProxyModelExpressions::filter_acceptsWhatConvertsToTrue()
{
    QFETCH(QByteArray, expression);
    QFETCH(bool, accepted);
    const LogRecorder log;
    QCOMPARE(make("sourceModel: list; filterExpression: " + expression)->rowCount(), accepted ? 4 : 0);
    QCOMPARE(warnings(log), QStringList());
}

void TstQQmlSortFilterProxyModelExpressions::filter_thatThrows_keepsEveryRowAndWarnsOncePerRow()
{
    const LogRecorder log;
    QCOMPARE(titles(make("sourceModel: list\nfilterExpression: nowhere + 1")), QStringLiteral("b d a c"));
    const QString line = QStringLiteral("\"ReferenceError: nowhere is not defined\"");
    QCOMPARE(warnings(log), QStringList({line, line, line, line}));
}

void TstQQmlSortFilterProxyModelExpressions::filter_thatThrowsForSomeRows_warnsForThoseOnly()
{
    const LogRecorder log;
    QCOMPARE(titles(make("sourceModel: list; filterExpression: index % 2 ? nowhere : false")),
             QStringLiteral("d c"));
    QCOMPARE(warnings(log).size(), 2);
}

void TstQQmlSortFilterProxyModelExpressions::filter_setAgain_filtersAgain()
{
    Proxy *proxy = make("sourceModel: list; filterExpression: model.rank < 3");
    QCOMPARE(titles(proxy), QStringLiteral("b d"));
    SignalLog log;
    log.watch(proxy, &Proxy::rowsRemoved, QStringLiteral("removed"));
    log.watch(proxy, &Proxy::rowsInserted, QStringLiteral("inserted"));
    log.watch(proxy, &Proxy::filterExpressionChanged, QStringLiteral("changed"));
    proxy->setFilterExpression(make("filterExpression: model.rank > 3")->filterExpression());
    QCOMPARE(log.text(), QStringLiteral("removed inserted changed"));
    QCOMPARE(titles(proxy), QStringLiteral("c"));
}

void TstQQmlSortFilterProxyModelExpressions::filter_emptied_keepsEveryRow()
{
    Proxy *proxy = make("sourceModel: list; filterExpression: false");
    QCOMPARE(proxy->rowCount(), 0);
    proxy->setFilterExpression(QQmlScriptString());
    QCOMPARE(proxy->rowCount(), 4);
}

void TstQQmlSortFilterProxyModelExpressions::filter_isNotFollowedByItself_whenOtherThingsChange()
{
    Proxy *proxy = make("property int limit: 2; sourceModel: list; filterExpression: model.rank <= limit");
    QCOMPARE(proxy->rowCount(), 2);
    proxy->setProperty("limit", 3);
    QCOMPARE(proxy->rowCount(), 2);
    m_list->at(0)->setTitle(QStringLiteral("touched"));
    m_list->at(2)->setTitle(QStringLiteral("touched too")); // only rows that change are looked at again
    QCOMPARE(proxy->rowCount(), 3);
    proxy->setProperty("limit", 4);
    QVERIFY(QMetaObject::invokeMethod(proxy, "invalidateFilter"));
    QCOMPARE(proxy->rowCount(), 4);
}

void TstQQmlSortFilterProxyModelExpressions::sort_seesBothRows()
{
    const LogRecorder log;
    QCOMPARE(titles(make("sourceModel: list; sortOrder: Qt.AscendingOrder;"
                         "sortExpression: modelLeft.title < modelRight.title")),
             QStringLiteral("a b c d"));
    QCOMPARE(
        titles(make("sourceModel: list; sortOrder: Qt.AscendingOrder;"
                    "sortExpression: JSON.stringify(modelLeft) > JSON.stringify(modelRight)"
                    "&& probe.note(Object.keys(modelLeft).length) || modelLeft.title > modelRight.title")),
        QStringLiteral("d c b a"));
    QCOMPARE(titles(make("sourceModel: list; sortOrder: Qt.AscendingOrder;"
                         "sortExpression: indexLeft > indexRight")),
             QStringLiteral("c a d b"));
    QCOMPARE(titles(make("sourceModel: list; sortOrder: Qt.DescendingOrder; filterExpression: index > 0;"
                         "sortExpression: modelLeft.title < modelRight.title")),
             QStringLiteral("d c a"));
    QCOMPARE(warnings(log), QStringList());
}

void TstQQmlSortFilterProxyModelExpressions::sort_namesReachNoFurther()
{
    const LogRecorder log;
    const Proxy *proxy = make("sourceModel: list; sortRoleName: 'title'; sortOrder: Qt.AscendingOrder;"
                              "sortExpression: model.rank + index");
    QCOMPARE(titles(proxy), QStringLiteral("a b c d")); // the names of the filter mean nothing here
    QVERIFY(!warnings(log).isEmpty());
}

void TstQQmlSortFilterProxyModelExpressions::sort_thatThrows_warnsAndComparesByRole()
{
    const LogRecorder log;
    const Proxy *proxy = make("sourceModel: list; sortRoleName: 'title'\nsortOrder: Qt.DescendingOrder\n"
                              "sortExpression: probe.note(0) && nowhere");
    QCOMPARE(titles(proxy), QStringLiteral("d c b a"));
    const QString line = QStringLiteral("\"ReferenceError: nowhere is not defined\"");
    QVERIFY(!warnings(log).isEmpty());
    QCOMPARE(warnings(log).count(line), m_probe->notes.size()); // one for each comparison
    QCOMPARE(warnings(log).size(), m_probe->notes.size());
}

void TstQQmlSortFilterProxyModelExpressions::sort_setAgain_sortsAgainWithoutFiltering()
{
    Proxy *proxy =
        make("sourceModel: list; sortOrder: Qt.AscendingOrder; filterExpression: probe.note(index)");
    QCOMPARE(titles(proxy), QStringLiteral("b d a c"));
    m_probe->notes.clear();
    SignalLog log;
    log.watch(proxy, &Proxy::layoutChanged, QStringLiteral("layout"));
    log.watch(proxy, &Proxy::sortExpressionChanged, QStringLiteral("changed"));
    const QPersistentModelIndex first(proxy->index(0, 0));
    proxy->setSortExpression(make("sortExpression: modelLeft.title < modelRight.title")->sortExpression());
    QCOMPARE(titles(proxy), QStringLiteral("a b c d"));
    QCOMPARE(log.text(), QStringLiteral("layout changed"));
    QCOMPARE(first.row(), 1);
    proxy->setSortExpression(QQmlScriptString());
    QCOMPARE(titles(proxy), QStringLiteral("a b c d")); // by role all are equal, and stay where they are
    QCOMPARE(m_probe->notes.size(), 0);
}

void TstQQmlSortFilterProxyModelExpressions::sort_setBeforeAColumnIsChosen_keepsTheOrder()
{
    Proxy *proxy = make("sourceModel: list");
    proxy->setSortExpression(make("sortExpression: modelLeft.title < modelRight.title")->sortExpression());
    QCOMPARE(proxy->sortColumn(), -1);
    QCOMPARE(titles(proxy), QStringLiteral("b d a c"));
    proxy->setSortOrder(Qt::AscendingOrder);
    QCOMPARE(titles(proxy), QStringLiteral("a b c d"));
}

void TstQQmlSortFilterProxyModelExpressions::sort_setWhileNotDynamic_sortsAgain()
{
    Proxy *proxy = make("sourceModel: list; sortOrder: Qt.AscendingOrder; dynamicSortFilter: false");
    proxy->setSortExpression(make("sortExpression: modelLeft.title < modelRight.title")->sortExpression());
    QCOMPARE(titles(proxy), QStringLiteral("a b c d"));
    QVERIFY(!proxy->dynamicSortFilter());
}

void TstQQmlSortFilterProxyModelExpressions::sort_follows_changesOfRows()
{
    const Proxy *proxy = make("sourceModel: list; sortOrder: Qt.AscendingOrder;"
                              "sortExpression: modelLeft.title < modelRight.title");
    QCOMPARE(titles(proxy), QStringLiteral("a b c d"));
    m_list->at(2)->setTitle(QStringLiteral("x"));
    QCOMPARE(titles(proxy), QStringLiteral("b c d x"));
    m_list->append(new ListItem(QStringLiteral("bb")));
    QCOMPARE(titles(proxy), QStringLiteral("b bb c d x"));
}

void TstQQmlSortFilterProxyModelExpressions::expression_thatMakesTheProxyEvaluateAgain_keepsItsNames()
{
    Proxy *proxy = make("sourceModel: list; filterExpression:"
                        "{ probe.note(index); probe.note(model.title); return index < 2 }");
    QCOMPARE(proxy->rowCount(), 2);
    m_probe->notes.clear();
    // Between its two notes, the evaluation of row 0 makes the proxy evaluate row 3.
    m_probe->during = [this] { m_list->at(3)->setTitle(QStringLiteral("e")); };
    m_list->at(0)->setTitle(QStringLiteral("f"));
    QCOMPARE(m_probe->takeNotes(), QStringLiteral("0 3 e f"));
    m_list->at(1)->setTitle(QStringLiteral("g"));
    QCOMPARE(m_probe->takeNotes(), QStringLiteral("1 g"));
}

void TstQQmlSortFilterProxyModelExpressions::expression_thatReplacesItself_isFinishedFirst()
{
    const LogRecorder log;
    const QQmlScriptString next = make("filterExpression: model.rank !== 1")->filterExpression();
    Proxy *proxy = make("sourceModel: list; filterExpression:"
                        "{ probe.note(index); return model.title === 'f' }");
    QCOMPARE(proxy->rowCount(), 0);
    m_probe->notes.clear();
    m_probe->during = [&] { proxy->setFilterExpression(next); };
    m_list->at(2)->setTitle(QStringLiteral("f"));
    QCOMPARE(m_probe->takeNotes(), QStringLiteral("2"));
    proxy->invalidate();
    QCOMPARE(titles(proxy), QStringLiteral("d f c"));
    QCOMPARE(m_probe->takeNotes(), QString()); // the old expression is never asked again
    QCOMPARE(warnings(log), QStringList());
}

void TstQQmlSortFilterProxyModelExpressions::expression_thatReplacesItself_leavesTheNextRowsToTheNew()
{
    const QQmlScriptString next = make("filterExpression: model.rank === 2")->filterExpression();
    Proxy *proxy = make("sourceModel: list; filterExpression: probe.note(index)");
    m_probe->during = [&] { proxy->setFilterExpression(next); };
    QCOMPARE(titles(proxy), QStringLiteral("b d"));
    QCOMPARE(m_probe->takeNotes(), QStringLiteral("0"));
}

void TstQQmlSortFilterProxyModelExpressions::expression_thatEmptiesTheOther_isSurvived()
{
    Proxy *proxy =
        make("sourceModel: list; sortOrder: Qt.AscendingOrder;"
             "filterExpression: probe.note(index); sortExpression: modelLeft.title < modelRight.title");
    QCOMPARE(titles(proxy), QStringLiteral("a b c d"));
    m_probe->during = [&] { proxy->setSortExpression(QQmlScriptString()); };
    m_list->at(0)->setTitle(QStringLiteral("z"));
    QCOMPARE(proxy->rowCount(), 4);
    QVERIFY(proxy->sortExpression().isEmpty());
}

QTEST_GUILESS_MAIN(TstQQmlSortFilterProxyModelExpressions)
#include "tst_qqmlsortfilterproxymodel_expressions.moc"
