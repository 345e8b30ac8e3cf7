// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QAbstractItemModelTester>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QTest>

#include <memory>

#include "databaseitemlistmodel.h"
#include "logrecorder.h"
#include "qqmlsortfilterproxymodel.h"
#include "watchedlist.h"

namespace {

using Proxy = QQmlSortFilterProxyModel;

// Asked before main() makes an application: whoever loads the library has the type at once.
const int typeAtLoad = qmlTypeId("SortFilterProxyModel", 0, 1, "SortFilterProxyModel");

/// One row whose role names change with a reset.
struct RenamingModel : QAbstractListModel
{
    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : 1; }
    QVariant data(const QModelIndex &, int role) const override { return role; }
    QHash<int, QByteArray> roleNames() const override { return names; }
    void rename(const QHash<int, QByteArray> &newNames)
    {
        beginResetModel();
        names = newNames;
        endResetModel();
    }
    QHash<int, QByteArray> names;
};

QString titles(const QAbstractItemModel &model, int role = ListItem::TitleRole)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result.append(model.index(row, 0).data(role).toString());
    return result.join(QLatin1Char(' '));
}

} // namespace

class TstQQmlSortFilterProxyModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void type_isRegisteredWhenTheLibraryIsLoaded();
    void metaObject_offersThePropertiesInOrder();
    void patternSyntaxes_haveTheirNumbers();
    void withoutAnySetting_rowsPassInOrder();
    void setters_announceOnlyRealChanges();
    void filterPattern_matchesTheFilterRole();
    void filterPattern_keepsSyntaxAndCaseSensitivity();
    void filterPatternSyntax_changesHowThePatternIsRead();
    void filterPatternSyntax_refusesOtherNumbers();
    void filterValue_keepsEqualRowsOnly();
    void filterValue_left_doesNotFilter();
    void filterValue_comparesEnumerations();
    void filterValue_changesOfTypeCount();
    void filterRoleName_unknown_fallsBackToTheDisplayRole();
    void filterRoleName_sharedWithTheDisplayRole_works();
    void roleNames_areLookedUpWhenTheSourceArrivesOrResets();
    void roleNames_lookedUpDuringAReset_areNotToldAsRows();
    void settings_changedDuringAReset_areNotToldAsRows();
    void sortRoleName_sortsOnceAColumnIsChosen();
    void sortOrder_ascending_choosesColumn0();
    void sortRoleName_unknown_fallsBackToTheDisplayRole();
    void valueThenPatternThenExpression_areAppliedInThisOrder();
    void changeOfARow_movesItInTheProxy();
    void findOriginalAndProxyIndex_mapRowsOrGiveMinusOne();
    void findCurrentIndex_findsTheProxyRowOfATitle();
    void findCurrentIndex_withoutReferenceItems_isZero();
    void expression_withoutAContextOfItsOwn_isEvaluatedWhereItWasWritten();
    void expression_whosePlaceIsGone_warnsAndKeepsRows();
    void proxy_outlivesItsEngine();

private:
    Proxy *make(const QByteArray &body);
    void add(const char *title, int rank);

    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<List> m_list;
    // Between list and proxy, for the tester's sake.
    std::unique_ptr<ListGuard> m_guard;
    std::vector<std::unique_ptr<QObject>> m_objects;
};

void TstQQmlSortFilterProxyModel::init()
{
    m_engine = std::make_unique<QQmlEngine>();
    m_list = std::make_unique<List>(nullptr, QByteArray(), QByteArray());
    m_guard = std::make_unique<ListGuard>(m_list.get());
    m_engine->rootContext()->setContextProperty(QStringLiteral("list"), m_guard.get());
    add("b", 2);
    add("a", 3);
    add("c", 1);
}

void TstQQmlSortFilterProxyModel::cleanup()
{
    m_objects.clear();
    m_guard.reset();
    m_list.reset();
    m_engine.reset();
}

Proxy *TstQQmlSortFilterProxyModel::make(const QByteArray &body)
{
    QQmlComponent component(m_engine.get());
    component.setData("import QtQml 2.2\nimport SortFilterProxyModel 0.1\nSortFilterProxyModel {\n" + body
                          + "\n}",
                      QUrl(QStringLiteral("proxy.qml")));
    m_objects.emplace_back(component.create());
    auto *proxy = qobject_cast<Proxy *>(m_objects.back().get());
    if (!proxy)
        qFatal("%s", qPrintable(component.errorString()));
    new QAbstractItemModelTester(proxy, QAbstractItemModelTester::FailureReportingMode::QtTest, proxy);
    return proxy;
}

void TstQQmlSortFilterProxyModel::add(const char *title, int rank)
{
    auto *item = new ListItem(QString::fromLatin1(title));
    item->setRank(rank);
    m_list->append(item);
}

void TstQQmlSortFilterProxyModel::type_isRegisteredWhenTheLibraryIsLoaded()
{
    QVERIFY(typeAtLoad > 0);
    QQmlComponent base(m_engine.get());
    base.setData("import SortFilterProxyModel 0.1\nQAbstractItemModel {}", QUrl());
    QVERIFY(base.isError()); // known as a type of properties, but without a name to create it by
}

void TstQQmlSortFilterProxyModel::metaObject_offersThePropertiesInOrder()
{
    const QMetaObject &meta = Proxy::staticMetaObject;
    QStringList properties;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        QVERIFY(property.isReadable() && property.isWritable());
        properties.append(QStringLiteral("%1 %2 %3")
                              .arg(QLatin1String(property.typeName()), QLatin1String(property.name()),
                                   property.hasNotifySignal()
                                       ? QString::fromLatin1(property.notifySignal().methodSignature())
                                       : QStringLiteral("-")));
    }
    QCOMPARE(properties,
             QStringList({QStringLiteral("QString filterRoleName filterRoleNameChanged()"),
                          QStringLiteral("QString filterPattern filterPatternChanged()"),
                          QStringLiteral("PatternSyntax filterPatternSyntax filterPatternSyntaxChanged()"),
                          QStringLiteral("QVariant filterValue filterValueChanged()"),
                          QStringLiteral("QQmlScriptString filterExpression filterExpressionChanged()"),
                          QStringLiteral("QString sortRoleName sortRoleNameChanged()"),
                          QStringLiteral("Qt::SortOrder sortOrder -"),
                          QStringLiteral("QQmlScriptString sortExpression sortExpressionChanged()")}));
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() == QMetaMethod::Slot)
            QCOMPARE(method.access(), QMetaMethod::Private);
        if (method.methodType() != QMetaMethod::Signal)
            methods.append(QString::fromLatin1(method.methodSignature()));
    }
    QCOMPARE(methods,
             QStringList({QStringLiteral("invalidateFilter()"), QStringLiteral("updateRoles()"),
                          QStringLiteral("findCurrentIndex(QString)"),
                          QStringLiteral("findOriginalModelIndex(int)"),
                          QStringLiteral("findProxyModelIndex(int)")}));
}

void TstQQmlSortFilterProxyModel::patternSyntaxes_haveTheirNumbers()
{
    const QMetaEnum syntaxes = QMetaEnum::fromType<Proxy::PatternSyntax>();
    const QStringList names{QStringLiteral("RegExp"),       QStringLiteral("Wildcard"),
                            QStringLiteral("FixedString"),  QStringLiteral("RegExp2"),
                            QStringLiteral("WildcardUnix"), QStringLiteral("W3CXmlSchema11")};
    QCOMPARE(syntaxes.keyCount(), names.size());
    for (int i = 0; i < names.size(); ++i) {
        QCOMPARE(QString::fromLatin1(syntaxes.key(i)), names.at(i));
        QCOMPARE(syntaxes.value(i), i);
    }
    QCOMPARE(int(Proxy::W3CXmlSchema11), int(QRegExp::W3CXmlSchema11));
    const Proxy *proxy = make("filterPatternSyntax: SortFilterProxyModel.WildcardUnix");
    QCOMPARE(proxy->filterPatternSyntax(), Proxy::WildcardUnix);
}

void TstQQmlSortFilterProxyModel::withoutAnySetting_rowsPassInOrder()
{
    const Proxy *proxy = make("sourceModel: list");
    QCOMPARE(titles(*proxy), QStringLiteral("b a c"));
    QVERIFY(proxy->dynamicSortFilter());
    const Proxy plain;
    QVERIFY(plain.dynamicSortFilter());
    QCOMPARE(plain.rowCount(), 0);
}

void TstQQmlSortFilterProxyModel::setters_announceOnlyRealChanges()
{
    Proxy *proxy = make("sourceModel: list");
    SignalLog log;
    log.watch(proxy, &Proxy::filterRoleNameChanged, QStringLiteral("filterRoleName"));
    log.watch(proxy, &Proxy::filterPatternChanged, QStringLiteral("filterPattern"));
    log.watch(proxy, &Proxy::filterPatternSyntaxChanged, QStringLiteral("filterPatternSyntax"));
    log.watch(proxy, &Proxy::filterValueChanged, QStringLiteral("filterValue"));
    log.watch(proxy, &Proxy::filterExpressionChanged, QStringLiteral("filterExpression"));
    log.watch(proxy, &Proxy::sortRoleNameChanged, QStringLiteral("sortRoleName"));
    log.watch(proxy, &Proxy::sortExpressionChanged, QStringLiteral("sortExpression"));
    const Proxy *other = make("filterExpression: index > 0; sortExpression: indexLeft > indexRight");
    for (int pass = 0; pass < 2; ++pass) {
        proxy->setFilterRoleName(QStringLiteral("title"));
        proxy->setFilterPattern(QStringLiteral("[ab]"));
        proxy->setFilterPatternSyntax(Proxy::RegExp2);
        proxy->setFilterValue(QStringLiteral("a"));
        proxy->setFilterExpression(other->filterExpression());
        proxy->setSortRoleName(QStringLiteral("rank"));
        proxy->setSortExpression(other->sortExpression());
        proxy->setSortOrder(Qt::DescendingOrder);
    }
    QCOMPARE(log.text(),
             QStringLiteral("filterRoleName filterPattern filterPatternSyntax filterValue filterExpression "
                            "sortRoleName sortExpression"));
    QCOMPARE(proxy->filterRoleName(), QStringLiteral("title"));
    QCOMPARE(proxy->filterPattern(), QStringLiteral("[ab]"));
    QCOMPARE(proxy->filterPatternSyntax(), Proxy::RegExp2);
    QCOMPARE(proxy->filterValue(), QVariant(QStringLiteral("a")));
    QVERIFY(proxy->filterExpression() == other->filterExpression());
    QCOMPARE(proxy->sortRoleName(), QStringLiteral("rank"));
    QVERIFY(proxy->sortExpression() == other->sortExpression());
    QCOMPARE(proxy->sortOrder(), Qt::DescendingOrder);
}

void TstQQmlSortFilterProxyModel::filterPattern_matchesTheFilterRole()
{
    Proxy *proxy = make("sourceModel: list; filterRoleName: 'title'; filterPattern: '^[bc]$'");
    QCOMPARE(titles(*proxy), QStringLiteral("b c"));
    proxy->setFilterPattern(QStringLiteral("a"));
    QCOMPARE(titles(*proxy), QStringLiteral("a"));
    proxy->setFilterPattern(QString());
    QCOMPARE(titles(*proxy), QStringLiteral("b a c"));
    proxy->setFilterPattern(QStringLiteral("[")); // not a pattern: nothing matches it
    QCOMPARE(titles(*proxy), QString());
}

void TstQQmlSortFilterProxyModel::filterPattern_keepsSyntaxAndCaseSensitivity()
{
    Proxy *proxy = make("sourceModel: list; filterRoleName: 'title'");
    proxy->setFilterCaseSensitivity(Qt::CaseInsensitive);
    proxy->setFilterPatternSyntax(Proxy::FixedString);
    proxy->setFilterPattern(QStringLiteral("A"));
    QCOMPARE(titles(*proxy), QStringLiteral("a"));
    QCOMPARE(proxy->filterPatternSyntax(), Proxy::FixedString);
    QCOMPARE(proxy->filterCaseSensitivity(), Qt::CaseInsensitive);
}

void TstQQmlSortFilterProxyModel::filterPatternSyntax_changesHowThePatternIsRead()
{
    add("b*", 4);
    Proxy *proxy = make("sourceModel: list; filterRoleName: 'title'; filterPattern: 'b*'");
    QCOMPARE(titles(*proxy), QStringLiteral("b a c b*"));
    proxy->setFilterPatternSyntax(Proxy::Wildcard);
    QCOMPARE(titles(*proxy), QStringLiteral("b b*"));
    proxy->setFilterPatternSyntax(Proxy::FixedString);
    QCOMPARE(titles(*proxy), QStringLiteral("b*"));
    QCOMPARE(proxy->filterPattern(), QStringLiteral("b*"));
}

void TstQQmlSortFilterProxyModel::filterPatternSyntax_refusesOtherNumbers()
{
    Proxy *proxy = make("function set(number) { filterPatternSyntax = number }");
    QVERIFY(QMetaObject::invokeMethod(proxy, "set", Q_ARG(QVariant, 6)));
    QCOMPARE(proxy->filterPatternSyntax(), Proxy::RegExp);
    QVERIFY(QMetaObject::invokeMethod(proxy, "set", Q_ARG(QVariant, 5)));
    QCOMPARE(proxy->filterPatternSyntax(), Proxy::W3CXmlSchema11);
    proxy->setFilterPatternSyntax(static_cast<Proxy::PatternSyntax>(-1));
    QCOMPARE(proxy->filterPatternSyntax(), Proxy::W3CXmlSchema11);
}

void TstQQmlSortFilterProxyModel::filterValue_keepsEqualRowsOnly()
{
    add("other", 3);
    Proxy *proxy = make("sourceModel: list; filterRoleName: 'rank'; filterValue: 3");
    QCOMPARE(titles(*proxy), QStringLiteral("a other"));
    proxy->setFilterValue(QVariant());
    QCOMPARE(titles(*proxy), QStringLiteral("b a c other"));
    proxy->setFilterValue(30);
    QCOMPARE(titles(*proxy), QString());
    m_list->at(0)->setRank(30);
    QCOMPARE(titles(*proxy), QStringLiteral("b"));
}

void TstQQmlSortFilterProxyModel::filterValue_left_doesNotFilter()
{
    const Proxy *proxy = make("sourceModel: list; filterRoleName: 'rank'; filterValue: undefined");
    QCOMPARE(proxy->rowCount(), 3);
}

void TstQQmlSortFilterProxyModel::filterValue_comparesEnumerations()
{
    qRegisterMetaType<ListItem::State>();
    m_list->at(2)->setState(ListItem::Done);
    Proxy *proxy = make("sourceModel: list; filterRoleName: 'state'; filterValue: 2");
    QCOMPARE(titles(*proxy), QStringLiteral("c"));
    proxy->setFilterValue(QVariant::fromValue(ListItem::Idle));
    QCOMPARE(titles(*proxy), QStringLiteral("b a"));
}

void TstQQmlSortFilterProxyModel::filterValue_changesOfTypeCount()
{
    Proxy *proxy = make("sourceModel: list; filterRoleName: 'title'");
    SignalLog log;
    log.watch(proxy, &Proxy::filterValueChanged, QStringLiteral("value"));
    m_list->at(0)->setTitle(QStringLiteral("01"));
    proxy->setFilterValue(1);
    QCOMPARE(proxy->rowCount(), 0);
    proxy->setFilterValue(QStringLiteral("01")); // equals 1 when it is converted, but not to the rows
    QCOMPARE(proxy->rowCount(), 1);
    proxy->setFilterValue(QString());
    proxy->setFilterValue(QVariant());
    QCOMPARE(proxy->rowCount(), 3);
    QCOMPARE(log.text(), QStringLiteral("value value value value"));
    proxy->setFilterValue(2);
    proxy->setFilterValue(2.0); // JavaScript has one kind of number
    QCOMPARE(log.names().size(), 5);
}

void TstQQmlSortFilterProxyModel::filterRoleName_unknown_fallsBackToTheDisplayRole()
{
    Proxy *proxy = make("sourceModel: list; filterRoleName: 'title'; filterPattern: 'a'");
    QCOMPARE(proxy->filterRole(), int(ListItem::TitleRole));
    proxy->setFilterRoleName(QStringLiteral("nowhere"));
    QCOMPARE(proxy->filterRole(), int(Qt::DisplayRole));
    QCOMPARE(proxy->rowCount(), 0); // this list displays nothing, which does not match
    proxy->setFilterPattern(QString());
    QCOMPARE(proxy->rowCount(), 3);
}

void TstQQmlSortFilterProxyModel::filterRoleName_sharedWithTheDisplayRole_works()
{
    List titled(nullptr, QByteArray(), "title");
    titled.append(new ListItem(QStringLiteral("x")));
    titled.append(new ListItem(QStringLiteral("y")));
    Proxy proxy;
    proxy.setSourceModel(&titled);
    proxy.setFilterRoleName(QStringLiteral("title"));
    proxy.setFilterValue(QStringLiteral("y"));
    QCOMPARE(titles(proxy), QStringLiteral("y"));
    titled.at(0)->setTitle(QStringLiteral("y"));
    QCOMPARE(titles(proxy), QStringLiteral("y y"));
}

void TstQQmlSortFilterProxyModel::roleNames_areLookedUpWhenTheSourceArrivesOrResets()
{
    Proxy proxy;
    proxy.setFilterRoleName(QStringLiteral("rank"));
    proxy.setSortRoleName(QStringLiteral("été"));
    QCOMPARE(proxy.filterRole(), int(Qt::DisplayRole));
    proxy.setSourceModel(m_list.get());
    QCOMPARE(proxy.filterRole(), int(ListItem::RankRole));
    QCOMPARE(proxy.sortRole(), int(Qt::DisplayRole));

    RenamingModel changing;
    proxy.setSourceModel(&changing);
    QCOMPARE(proxy.filterRole(), int(Qt::DisplayRole));
    changing.rename({{40, "rank"}, {41, QStringLiteral("été").toUtf8()}});
    QCOMPARE(proxy.filterRole(), 40);
    QCOMPARE(proxy.sortRole(), 41);
    proxy.setSourceModel(nullptr);
    QCOMPARE(proxy.filterRole(), int(Qt::DisplayRole));
}

void TstQQmlSortFilterProxyModel::roleNames_lookedUpDuringAReset_areNotToldAsRows()
{
    // By title, which the display role reads, "b" would be shown; by the identifier it is "a" and "d".
    List list(nullptr, QByteArray(), "title");
    for (const char *text : {"a1", "b", "c", "d1"}) {
        list.append(new ListItem(QString::fromLatin1(text, 1)));
        list.last()->setUid(QString::fromLatin1(text));
    }
    Proxy proxy;
    proxy.setFilterRoleName(QStringLiteral("uid"));
    proxy.setSortRoleName(QStringLiteral("uid"));
    proxy.setFilterPattern(QStringLiteral("1|b"));
    proxy.setSortOrder(Qt::DescendingOrder);
    SignalLog log;
    log.watch(&proxy, &Proxy::modelReset, QStringLiteral("reset"));
    log.watch(&proxy, &Proxy::rowsRemoved, QStringLiteral("removed"));
    log.watch(&proxy, &Proxy::rowsInserted, QStringLiteral("inserted"));
    log.watch(&proxy, &Proxy::filterRoleChanged, QStringLiteral("filterRole"));
    log.watch(&proxy, &Proxy::sortRoleChanged, QStringLiteral("sortRole"));
    int atReset = 0;
    connect(&proxy, &Proxy::modelReset, this, [&] { atReset = proxy.rowCount(); });
    proxy.setSourceModel(&list);
    QCOMPARE(log.text(), QStringLiteral("filterRole sortRole reset"));
    QCOMPARE(titles(proxy), QStringLiteral("d b a"));
    QCOMPARE(atReset, 3);

    RenamingModel changing;
    proxy.setFilterPattern(QStringLiteral("^4"));
    proxy.setSourceModel(&changing);
    QCOMPARE(proxy.rowCount(), 0);
    log.clear();
    changing.rename({{40, "uid"}});
    QCOMPARE(log.text(), QStringLiteral("filterRole sortRole reset"));
    QCOMPARE(atReset, 1);
    log.clear();
    changing.rename({{50, "uid"}});
    QCOMPARE(log.text(), QStringLiteral("filterRole sortRole reset"));
    QCOMPARE(atReset, 0);
    log.clear();
    proxy.setFilterPattern(QString());
    QCOMPARE(log.text(), QStringLiteral("inserted")); // and afterwards they are told as ever
}

void TstQQmlSortFilterProxyModel::settings_changedDuringAReset_areNotToldAsRows()
{
    Proxy proxy;
    proxy.setFilterRoleName(QStringLiteral("title"));
    SignalLog log;
    log.watch(&proxy, &Proxy::modelReset, QStringLiteral("reset"));
    log.watch(&proxy, &Proxy::rowsRemoved, QStringLiteral("removed"));
    log.watch(&proxy, &Proxy::rowsInserted, QStringLiteral("inserted"));
    log.watch(&proxy, &Proxy::filterPatternChanged, QStringLiteral("pattern"));
    log.watch(&proxy, &Proxy::filterPatternSyntaxChanged, QStringLiteral("syntax"));
    log.watch(&proxy, &Proxy::filterValueChanged, QStringLiteral("value"));
    const QString first = m_list->first()->title();
    connect(&proxy, &Proxy::sourceModelChanged, this, [&] {
        proxy.setFilterPattern(QStringLiteral("?"));
        proxy.setFilterPatternSyntax(Proxy::Wildcard);
        proxy.setFilterValue(first);
    });
    proxy.setSourceModel(m_list.get());
    QCOMPARE(log.text(), QStringLiteral("pattern syntax value reset"));
    QCOMPARE(titles(proxy), first);
}

void TstQQmlSortFilterProxyModel::sortRoleName_sortsOnceAColumnIsChosen()
{
    Proxy *proxy = make("sourceModel: list; sortRoleName: 'rank'");
    QCOMPARE(titles(*proxy), QStringLiteral("b a c"));
    proxy->setSortOrder(Qt::DescendingOrder);
    QCOMPARE(titles(*proxy), QStringLiteral("a b c"));
    proxy->setSortOrder(Qt::AscendingOrder);
    QCOMPARE(titles(*proxy), QStringLiteral("c b a"));
    proxy->setSortRoleName(QStringLiteral("title"));
    QCOMPARE(titles(*proxy), QStringLiteral("a b c"));
}

void TstQQmlSortFilterProxyModel::sortOrder_ascending_choosesColumn0()
{
    const Proxy *proxy = make("sourceModel: list; sortRoleName: 'rank'; sortOrder: Qt.AscendingOrder");
    QCOMPARE(proxy->sortColumn(), 0);
    QCOMPARE(titles(*proxy), QStringLiteral("c b a"));
    QCOMPARE(make("sourceModel: list")->sortColumn(), -1);
}

void TstQQmlSortFilterProxyModel::sortRoleName_unknown_fallsBackToTheDisplayRole()
{
    const Proxy *proxy = make("sourceModel: list; sortRoleName: 'nowhere'; sortOrder: Qt.AscendingOrder");
    QCOMPARE(proxy->sortRole(), int(Qt::DisplayRole));
    QCOMPARE(titles(*proxy), QStringLiteral("b a c")); // all equal, and the sort is stable
}

void TstQQmlSortFilterProxyModel::valueThenPatternThenExpression_areAppliedInThisOrder()
{
    add("bb", 2);
    Proxy *proxy = make("sourceModel: list; filterRoleName: 'title'; filterPattern: '^b$'");
    // A broken expression tells which rows came that far.
    proxy->setFilterExpression(make("filterExpression: nowhere()")->filterExpression());
    LogRecorder log;
    proxy->invalidate();
    QCOMPARE(titles(*proxy), QStringLiteral("b"));
    QCOMPARE(log.lines(QStringLiteral("WARN")).size(), 1);
    proxy->setFilterValue(QStringLiteral("bb")); // the value lets through what the pattern does not
    log.clear();
    proxy->invalidate();
    QCOMPARE(titles(*proxy), QString());
    QCOMPARE(log.lines(QStringLiteral("WARN")), QStringList());
}

void TstQQmlSortFilterProxyModel::changeOfARow_movesItInTheProxy()
{
    const Proxy *proxy = make("sourceModel: list; sortRoleName: 'rank'; sortOrder: Qt.AscendingOrder;"
                              "filterRoleName: 'title'; filterPattern: '^[a-m]'");
    QCOMPARE(titles(*proxy), QStringLiteral("c b a"));
    m_list->at(2)->setRank(9);
    QCOMPARE(titles(*proxy), QStringLiteral("b a c"));
    m_list->at(1)->setTitle(QStringLiteral("z"));
    QCOMPARE(titles(*proxy), QStringLiteral("b c"));
    add("e", 5);
    QCOMPARE(titles(*proxy), QStringLiteral("b e c"));
    m_list->remove(0);
    QCOMPARE(titles(*proxy), QStringLiteral("e c"));
}

void TstQQmlSortFilterProxyModel::findOriginalAndProxyIndex_mapRowsOrGiveMinusOne()
{
    const Proxy *proxy = make("sourceModel: list; sortRoleName: 'rank'; sortOrder: Qt.AscendingOrder;"
                              "filterRoleName: 'title'; filterPattern: '[ac]'");
    QCOMPARE(titles(*proxy), QStringLiteral("c a"));
    QCOMPARE(proxy->findOriginalModelIndex(0), 2);
    QCOMPARE(proxy->findOriginalModelIndex(1), 1);
    QCOMPARE(proxy->findOriginalModelIndex(2), -1);
    QCOMPARE(proxy->findOriginalModelIndex(-1), -1);
    QCOMPARE(proxy->findProxyModelIndex(2), 0);
    QCOMPARE(proxy->findProxyModelIndex(1), 1);
    QCOMPARE(proxy->findProxyModelIndex(0), -1); // filtered out
    QCOMPARE(proxy->findProxyModelIndex(3), -1);
    QCOMPARE(proxy->findProxyModelIndex(-1), -1);
    const Proxy empty;
    QCOMPARE(empty.findProxyModelIndex(0), -1);
    QCOMPARE(empty.findOriginalModelIndex(0), -1);
}

void TstQQmlSortFilterProxyModel::findCurrentIndex_findsTheProxyRowOfATitle()
{
    DatabaseItemListModel items;
    for (const char *title : {"Salon", "Cuisine", "Salon", "Entrée"})
        items.add(QString::fromUtf8(title), QString());
    Proxy proxy;
    proxy.setSourceModel(&items);
    proxy.setSortRoleName(QStringLiteral("title"));
    proxy.setSortOrder(Qt::AscendingOrder);
    QCOMPARE(proxy.findCurrentIndex(QStringLiteral("Cuisine")), 0);
    QCOMPARE(proxy.findCurrentIndex(QStringLiteral("Entrée")), 1);
    QCOMPARE(proxy.findCurrentIndex(QStringLiteral("Salon")), 2);
    QCOMPARE(proxy.findCurrentIndex(QStringLiteral("salon")), 0);
    QCOMPARE(proxy.findCurrentIndex(QStringLiteral("Grenier")), 0);
    QCOMPARE(proxy.findCurrentIndex(QString()), 0);
    proxy.setFilterRoleName(QStringLiteral("title"));
    proxy.setFilterPattern(QStringLiteral("^[^S]"));
    QCOMPARE(proxy.findCurrentIndex(QStringLiteral("Salon")), 0); // filtered out
}

void TstQQmlSortFilterProxyModel::findCurrentIndex_withoutReferenceItems_isZero()
{
    const Proxy *proxy = make("sourceModel: list");
    QCOMPARE(proxy->findCurrentIndex(QStringLiteral("c")), 0);
    QCOMPARE(Proxy().findCurrentIndex(QStringLiteral("c")), 0);
}

void TstQQmlSortFilterProxyModel::expression_withoutAContextOfItsOwn_isEvaluatedWhereItWasWritten()
{
    const LogRecorder log;
    const Proxy *written = make("property int limit: 1; filterExpression: model.rank > limit;"
                                "sortExpression: modelLeft.rank < modelRight.rank");
    Proxy proxy;
    proxy.setSourceModel(m_list.get());
    proxy.setFilterExpression(written->filterExpression());
    proxy.setSortExpression(written->sortExpression());
    proxy.setSortOrder(Qt::AscendingOrder);
    QCOMPARE(titles(proxy), QStringLiteral("b a"));
    QCOMPARE(log.lines(QStringLiteral("WARN")), QStringList());
}

void TstQQmlSortFilterProxyModel::expression_whosePlaceIsGone_warnsAndKeepsRows()
{
    const LogRecorder log;
    Proxy proxy;
    proxy.setSourceModel(m_list.get());
    proxy.setFilterExpression(make("filterExpression: false")->filterExpression());
    QCOMPARE(proxy.rowCount(), 0);
    m_objects.clear();
    m_engine.reset();
    add("d", 4);
    QCOMPARE(titles(proxy), QStringLiteral("d"));
    QCOMPARE(log.lines(QStringLiteral("WARN")),
             QStringList(QStringLiteral(
                 "The place where a sort or filter expression was written is gone; it is not evaluated.")));
}

void TstQQmlSortFilterProxyModel::proxy_outlivesItsEngine()
{
    Proxy *proxy = make("sourceModel: list; filterExpression: model.rank < 3");
    QCOMPARE(titles(*proxy), QStringLiteral("b c"));
    m_engine.reset();
    add("d", 1);
    QCOMPARE(titles(*proxy), QStringLiteral("b c d"));
}

QTEST_GUILESS_MAIN(TstQQmlSortFilterProxyModel)
#include "tst_qqmlsortfilterproxymodel.moc"
