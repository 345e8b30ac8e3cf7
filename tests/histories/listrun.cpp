// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "listrun.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace histories {

using List = QQmlObjectListModel<ListItem>;
using Proxy = QQmlSortFilterProxyModel;

ListRun::ListRun(int flavour, QQmlEngine &engine)
    : m_engine(engine)
    , m_list(nullptr, "uid", flavour & 1 ? QByteArray("title") : QByteArray())
    , m_proxy(flavour & 2 ? makeProxy(engine, QByteArray()) : std::make_unique<Proxy>())
    , m_naive(flavour & 1)
    , m_naiveProxy(m_naive)
    , m_listViews(m_list, engine)
    , m_proxyViews(*m_proxy, engine)
{
    m_naive.onEvent = [this](const Event &event) { m_naiveProxy.follow(event); };
    m_proxy->setSourceModel(&m_list);
    m_naiveProxy.setSource(true);
    QObject::connect(&m_list, &List::rowsInserted, &m_stranger, [this](const QModelIndex &, int row) {
        m_signals.append(QStringLiteral("insert %1").arg(row));
    });
    QObject::connect(&m_list, &List::rowsRemoved, &m_stranger, [this](const QModelIndex &, int from, int to) {
        m_signals.append(from == to ? QStringLiteral("remove %1").arg(from)
                                    : QStringLiteral("remove %1 to %2").arg(from).arg(to));
    });
    QObject::connect(&m_list, &List::rowsMoved, &m_stranger,
                     [this](const QModelIndex &, int from, int, const QModelIndex &, int to) {
                         m_signals.append(QStringLiteral("move %1 to %2").arg(from).arg(to));
                     });
    QObject::connect(&m_list, &List::countChanged, &m_stranger,
                     [this] { m_signals.append(QStringLiteral("count")); });
    hearChanges();
}

// To be the last who is told: a row that goes while a change is being told leaves the others with an index
// of a row that is not there, which is more than Qt's proxies bear.
void ListRun::hearChanges()
{
    QObject::disconnect(m_heard);
    m_heard = QObject::connect(
        &m_list, &List::dataChanged, &m_stranger,
        [this](const QModelIndex &from, const QModelIndex &to, const QVector<int> &roles) {
            QStringList numbers;
            for (int role : roles)
                numbers.append(QString::number(role));
            m_signals.append(QStringLiteral("change %1%2 of %3")
                                 .arg(from.row())
                                 .arg(from == to ? QString() : QStringLiteral(" to %1").arg(to.row()),
                                      numbers.join(QLatin1Char(','))));
            if (m_whenTold)
                std::exchange(m_whenTold, nullptr)();
        });
}

const std::vector<std::pair<Kind, void (ListRun::*)(int, int)>> &ListRun::kinds()
{
    static const std::vector<std::pair<Kind, void (ListRun::*)(int, int)>> all{
        {{"append", 12}, &ListRun::append},
        {{"prepend", 4}, &ListRun::prepend},
        {{"insert", 8}, &ListRun::insert},
        {{"insertAgain", 2}, &ListRun::insertAgain},
        {{"remove", 6}, &ListRun::removeRow},
        {{"removeItem", 3}, &ListRun::removeItem},
        {{"move", 8}, &ListRun::move},
        {{"clear", 1}, &ListRun::clear},
        {{"deleteOutside", 2}, &ListRun::deleteOutside},
        {{"setTitle", 10}, &ListRun::setTitle},
        {{"setRank", 12}, &ListRun::setRank},
        {{"setUid", 8}, &ListRun::setUid},
        {{"setState", 3}, &ListRun::setState},
        {{"setSides", 3}, &ListRun::setSides},
        {{"setAnything", 3}, &ListRun::setAnything},
        {{"setIndex", 1}, &ListRun::setIndex},
        {{"greet", 1}, &ListRun::greet},
        {{"writeThroughProxy", 3}, &ListRun::writeThroughProxy},
        {{"removeWhenTold", 1}, &ListRun::removeWhenTold},
        {{"deleteWhenTold", 1}, &ListRun::deleteWhenTold},
        {{"clearWhenTold", 1}, &ListRun::clearWhenTold},
        {{"filterRole", 3}, &ListRun::filterRole},
        {{"pattern", 3}, &ListRun::pattern},
        {{"syntax", 2}, &ListRun::syntax},
        {{"filterValue", 3}, &ListRun::filterValue},
        {{"filterExpression", 8}, &ListRun::filterExpression},
        {{"sortRole", 3}, &ListRun::sortRole},
        {{"sortOrder", 4}, &ListRun::sortOrder},
        {{"sortExpression", 5}, &ListRun::sortExpression},
        {{"invalidate", 2}, &ListRun::invalidate},
        {{"invalidateFilter", 1}, &ListRun::invalidateFilter},
        {{"source", 1}, &ListRun::source},
    };
    return all;
}

QString ListRun::step(const Step &step)
{
    const auto &[kind, act] = kinds()[std::size_t(step.kind)];
    (this->*act)(step.a, step.b);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_naive.collect();
    QCoreApplication::sendPostedEvents();
    return difference();
}

std::vector<int> ListRun::shownRows() const
{
    std::vector<int> rows;
    for (int row = 0; row < m_proxy->rowCount(); ++row)
        rows.push_back(m_proxy->mapToSource(m_proxy->index(row, 0)).row());
    return rows;
}

QString ListRun::difference()
{
    const QString complaints = Views::takeComplaints();
    if (!complaints.isEmpty())
        return complaints;
    const QString expected = m_naive.takeSignals().join(QStringLiteral("; "));
    const QString emitted = std::exchange(m_signals, {}).join(QStringLiteral("; "));
    if (emitted != expected)
        return QStringLiteral("the list emitted \"%1\" and not \"%2\"").arg(emitted, expected);
    for (const QString &text : {listDifference(), proxyDifference()}) {
        if (!text.isEmpty())
            return text;
    }
    const QString shown =
        m_listViews.difference(ListItem::TitleRole, [this](int row) { return m_naiveProxy.isTold(row); });
    if (!shown.isEmpty())
        return QStringLiteral("of the list, ") + shown;
    const std::vector<int> rows = shownRows();
    const QString filtered = m_proxyViews.difference(
        ListItem::TitleRole, [&](int row) { return m_naiveProxy.isTold(rows[std::size_t(row)]); });
    return filtered.isEmpty() ? QString() : QStringLiteral("of the proxy, ") + filtered;
}

QString ListRun::listDifference() const
{
    if (!m_naive.livesAsItShould())
        return QStringLiteral("an item is gone that should live, or the other way round");
    if (m_list.count() != m_naive.count() || m_list.rowCount() != m_naive.count())
        return QStringLiteral("the list has %1 rows of %2").arg(m_list.count()).arg(m_naive.count());
    for (int row = 0; row < m_naive.count(); ++row) {
        const Known *known = m_naive.at(row);
        ListItem *item = known ? known->object.data() : nullptr;
        const QModelIndex index = m_list.index(row);
        const QVariant title = item ? QVariant(item->title()) : QVariant();
        const bool same = m_list.at(row) == item
            && (!item || m_list.indexOf(item) == m_naive.firstRowOf(known))
            && m_list.data(index, ListItem::TitleRole) == title
            && m_list.data(index, Qt::DisplayRole) == (m_naive.hasDisplayRole() ? title : QVariant())
            && m_list.data(index, ListItem::RankRole) == (item ? QVariant(item->rank()) : QVariant())
            && m_list.data(index, Qt::UserRole).value<QObject *>() == item;
        if (!same)
            return QStringLiteral("row %1 of the list is another").arg(row);
    }
    for (int i = -1; i < 7; ++i) {
        const QString uid = i < 0 ? QString() : QStringLiteral("u%1").arg(i);
        const Known *known = m_naive.byUid(uid);
        if (m_list.getByUid(uid) != (known ? known->object.data() : nullptr))
            return QStringLiteral("\"%1\" identifies another item").arg(uid);
    }
    return QString();
}

QString ListRun::proxyDifference() const
{
    const std::vector<int> rows = shownRows();
    std::vector<int> placeOf(std::size_t(m_naive.count()), -1);
    for (std::size_t place = 0; place < rows.size(); ++place) {
        const int row = rows[place];
        if (row < 0 || row >= m_naive.count() || placeOf[std::size_t(row)] != -1)
            return QStringLiteral("the proxy shows source row %1, or shows it twice").arg(row);
        placeOf[std::size_t(row)] = int(place);
        if (m_proxy->findOriginalModelIndex(int(place)) != row)
            return QStringLiteral("row %1 of the proxy is not found in the source").arg(place);
    }
    for (int row = 0; row < m_naive.count(); ++row) {
        const int place = placeOf[std::size_t(row)];
        if ((place >= 0) != m_naiveProxy.accepts(row))
            return QStringLiteral("source row %1 is %2")
                .arg(row)
                .arg(place >= 0 ? QStringLiteral("shown") : QStringLiteral("not shown"));
        if (m_proxy->findProxyModelIndex(row) != place)
            return QStringLiteral("source row %1 is not found in the proxy").arg(row);
    }
    return m_naiveProxy.misplaced(rows);
}

const std::vector<Kind> &listKinds()
{
    static const std::vector<Kind> kinds = [] {
        std::vector<Kind> result;
        for (const auto &[kind, act] : ListRun::kinds())
            result.push_back(kind);
        return result;
    }();
    return kinds;
}

QString runList(const Steps &steps, int flavour, QQmlEngine &engine, long &done)
{
    ListRun run(flavour, engine);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const QString difference = run.step(steps[i]);
        ++done;
        if (!difference.isEmpty())
            return QStringLiteral("after step %1, %2: %3")
                .arg(i + 1)
                .arg(QString::fromLatin1(steps[i].name), difference);
    }
    return QString();
}

} // namespace histories
