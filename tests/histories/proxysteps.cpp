// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "listrun.h"

#include <QQmlComponent>

#include <map>

namespace histories {

using Proxy = QQmlSortFilterProxyModel;

std::unique_ptr<Proxy> makeProxy(QQmlEngine &engine, const QByteArray &body)
{
    QQmlComponent component(&engine);
    component.setData("import SortFilterProxyModel 0.1\nSortFilterProxyModel {" + body + "}",
                      QUrl(QStringLiteral("proxy.qml")));
    std::unique_ptr<Proxy> proxy(qobject_cast<Proxy *>(component.create()));
    if (!proxy)
        qFatal("%s", qPrintable(component.errorString()));
    return proxy;
}

namespace {

/// The expressions as QML hands them over; each lives where it was written, as long as the engine.
QQmlScriptString script(QQmlEngine &engine, const char *property, const char *text)
{
    static std::map<const char *, Proxy *> written;
    if (!*text)
        return QQmlScriptString();
    Proxy *&proxy = written[text];
    if (!proxy) {
        proxy = makeProxy(engine, QByteArray(property) + ": " + text).release();
        proxy->setParent(&engine);
    }
    return qstrcmp(property, "filterExpression") == 0 ? proxy->filterExpression() : proxy->sortExpression();
}

} // namespace

void ListRun::filterRole(int a, int)
{
    static const char *const names[] = {"title", "rank", "uid", "nothing", ""};
    const QString name = QString::fromLatin1(names[a % 5]);
    m_proxy->setFilterRoleName(name);
    m_naiveProxy.setFilterRoleName(name);
}

void ListRun::pattern(int a, int)
{
    static const char *const patterns[] = {"", "1", "^[0-4]", "[", "1*", "u[0-3]$", "."};
    const QString pattern = QString::fromLatin1(patterns[a % 7]);
    m_proxy->setFilterPattern(pattern);
    m_naiveProxy.setPattern(pattern);
}

void ListRun::syntax(int a, int)
{
    m_proxy->setFilterPatternSyntax(Proxy::PatternSyntax(a % 6));
    m_naiveProxy.setSyntax(a % 6);
}

void ListRun::filterValue(int a, int)
{
    static const QVariant values[] = {
        QVariant(),           3,         QVariant(),          QStringLiteral("3"), 7,
        QStringLiteral("u1"), QString(), QStringLiteral("11")};
    m_proxy->setFilterValue(values[a % 8]);
    m_naiveProxy.setFilterValue(values[a % 8]);
}

void ListRun::filterExpression(int a, int)
{
    const int which = a % int(filterExpressions().size());
    m_proxy->setFilterExpression(
        script(m_engine, "filterExpression", filterExpressions()[std::size_t(which)].text));
    m_naiveProxy.setFilterExpression(which);
}

void ListRun::sortRole(int a, int)
{
    static const char *const names[] = {"title", "rank", "uid", "nothing"};
    const QString name = QString::fromLatin1(names[a % 4]);
    m_proxy->setSortRoleName(name);
    m_naiveProxy.setSortRoleName(name);
}

void ListRun::sortOrder(int a, int)
{
    const auto order = a % 2 ? Qt::DescendingOrder : Qt::AscendingOrder;
    m_proxy->setSortOrder(order);
    m_naiveProxy.setSortOrder(order);
}

void ListRun::sortExpression(int a, int)
{
    const int which = a % int(sortExpressions().size());
    m_proxy->setSortExpression(
        script(m_engine, "sortExpression", sortExpressions()[std::size_t(which)].text));
    m_naiveProxy.setSortExpression(which);
}

void ListRun::invalidate(int, int)
{
    m_proxy->invalidate();
    m_naiveProxy.filterAgain();
    m_naiveProxy.sortAgain();
}

void ListRun::invalidateFilter(int, int)
{
    QMetaObject::invokeMethod(m_proxy.get(), "invalidateFilter");
    m_naiveProxy.filterAgain();
}

void ListRun::source(int, int)
{
    const bool present = !m_naiveProxy.hasSource();
    m_proxy->setSourceModel(present ? &m_list : nullptr);
    m_naiveProxy.setSource(present);
    hearChanges();
}

} // namespace histories
