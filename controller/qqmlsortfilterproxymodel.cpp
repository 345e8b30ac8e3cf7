// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "qqmlsortfilterproxymodel.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQml>

#include <algorithm>
#include <memory>
#include <utility>

#include <QsLog.h>

#include "databaseitemlistmodel.h"

namespace {

// A number keeps its meaning whichever of JavaScript's representations it comes in; between other types
// an equality by conversion would hide a change ("01" equals 1 and "1", which differ).
bool isNumber(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

bool isSameValue(const QVariant &a, const QVariant &b)
{
    return (a.userType() == b.userType() || (isNumber(a) && isNumber(b))) && a == b;
}

// Of two roles that share a name (a list's display role and the property behind it), the lower number.
int roleOf(const QHash<int, QByteArray> &names, const QString &name)
{
    QList<int> roles = names.keys(name.toUtf8());
    return roles.isEmpty() ? int(Qt::DisplayRole) : *std::min_element(roles.cbegin(), roles.cend());
}

// A context outlives its engine as an empty shell.
bool isUsable(const QQmlContext *context)
{
    return context && context->isValid();
}

} // namespace

QQmlSortFilterProxyModel::QQmlSortFilterProxyModel(QObject *parent)
    : QSortFilterProxyModel(parent)
    , m_filterExpression(nullptr)
    , m_compareExpression(nullptr)
{
    connect(this, &QAbstractItemModel::modelAboutToBeReset, this, [this] { m_resetting = true; });
    connect(this, &QAbstractProxyModel::sourceModelChanged, this, &QQmlSortFilterProxyModel::updateRoles);
    // The first to be told of a reset, before any view reads the rows anew.
    connect(this, &QAbstractItemModel::modelReset, this, &QQmlSortFilterProxyModel::updateRoles);
    connect(this, &QAbstractItemModel::modelReset, this, [this] { m_resetting = false; });
    setDynamicSortFilter(true);
}

QQmlSortFilterProxyModel::~QQmlSortFilterProxyModel()
{
    delete m_filterExpression;
    delete m_compareExpression;
}

void QQmlSortFilterProxyModel::setFilterRoleName(const QString &filterRoleName)
{
    if (m_filterRoleName == filterRoleName)
        return;
    m_filterRoleName = filterRoleName;
    updateRoles();
    emit filterRoleNameChanged();
}

QString QQmlSortFilterProxyModel::filterPattern() const
{
    return filterRegExp().pattern();
}

void QQmlSortFilterProxyModel::setFilterPattern(const QString &filterPattern)
{
    QRegExp regExp = filterRegExp();
    if (regExp.pattern() == filterPattern)
        return;
    regExp.setPattern(filterPattern);
    {
        const QSignalBlocker quiet = quietInReset();
        setFilterRegExp(regExp);
    }
    emit filterPatternChanged();
}

QQmlSortFilterProxyModel::PatternSyntax QQmlSortFilterProxyModel::filterPatternSyntax() const
{
    return static_cast<PatternSyntax>(filterRegExp().patternSyntax());
}

void QQmlSortFilterProxyModel::setFilterPatternSyntax(PatternSyntax patternSyntax)
{
    // QML lets any number into an enumeration's property.
    if (patternSyntax < RegExp || patternSyntax > W3CXmlSchema11)
        return;
    QRegExp regExp = filterRegExp();
    const auto syntax = static_cast<QRegExp::PatternSyntax>(patternSyntax);
    if (regExp.patternSyntax() == syntax)
        return;
    regExp.setPatternSyntax(syntax);
    {
        const QSignalBlocker quiet = quietInReset();
        setFilterRegExp(regExp);
    }
    emit filterPatternSyntaxChanged();
}

void QQmlSortFilterProxyModel::setFilterValue(const QVariant &filterValue)
{
    if (isSameValue(m_filterValue, filterValue))
        return;
    m_filterValue = filterValue;
    invalidateFilter();
    emit filterValueChanged();
}

void QQmlSortFilterProxyModel::setFilterExpression(const QQmlScriptString &filterScriptString)
{
    if (m_filterScriptString == filterScriptString)
        return;
    m_filterScriptString = filterScriptString;
    delete std::exchange(m_filterExpression, nullptr);
    m_filterOrigin = Origin(filterScriptString, {""});
    invalidateFilter();
    emit filterExpressionChanged();
}

void QQmlSortFilterProxyModel::setSortRoleName(const QString &sortRoleName)
{
    if (m_sortRoleName == sortRoleName)
        return;
    m_sortRoleName = sortRoleName;
    updateRoles();
    emit sortRoleNameChanged();
}

void QQmlSortFilterProxyModel::setSortOrder(Qt::SortOrder order)
{
    sort(0, order);
}

void QQmlSortFilterProxyModel::setSortExpression(const QQmlScriptString &compareScriptString)
{
    if (m_compareScriptString == compareScriptString)
        return;
    m_compareScriptString = compareScriptString;
    delete std::exchange(m_compareExpression, nullptr);
    m_compareOrigin = Origin(compareScriptString, {"Left", "Right"});
    if (sortColumn() >= 0) {
        const QSignalBlocker quiet = quietInReset();
        // Both sort the rows again without filtering them again: sort() does so only while it is not
        // done dynamically, and then takes the same column and order for nothing to do.
        if (dynamicSortFilter())
            setDynamicSortFilter(true);
        else
            sort(sortColumn(), sortOrder());
    }
    emit sortExpressionChanged();
}

int QQmlSortFilterProxyModel::findCurrentIndex(const QString &title) const
{
    const auto *items = qobject_cast<DatabaseItemListModel *>(sourceModel());
    if (!items)
        return 0;
    for (int row = 0; row < items->count(); ++row) {
        const DatabaseItem *item = items->at(row);
        if (item && item->title() == title)
            return qMax(0, findProxyModelIndex(row));
    }
    return 0;
}

int QQmlSortFilterProxyModel::findOriginalModelIndex(int currentIndex) const
{
    return mapToSource(index(currentIndex, 0)).row();
}

int QQmlSortFilterProxyModel::findProxyModelIndex(int currentIndex) const
{
    return sourceModel() ? mapFromSource(sourceModel()->index(currentIndex, 0)).row() : -1;
}

bool QQmlSortFilterProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    const auto source = [&] { return sourceModel()->index(sourceRow, 0, sourceParent); };
    if (m_filterValue.isValid() && source().data(filterRole()) != m_filterValue)
        return false;
    if (!QSortFilterProxyModel::filterAcceptsRow(sourceRow, sourceParent))
        return false;
    if (m_filterScriptString.isEmpty())
        return true;
    bool failed = false;
    const QVariant result =
        evaluate(m_filterScriptString, m_filterOrigin, m_filterExpression, {{sourceRow, source()}}, failed);
    // A broken expression hides nothing: the operator must not lose sight of a unit because of it.
    return failed || result.toBool();
}

bool QQmlSortFilterProxyModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    if (m_compareScriptString.isEmpty())
        return QSortFilterProxyModel::lessThan(left, right);
    bool failed = false;
    const QVariant result = evaluate(m_compareScriptString, m_compareOrigin, m_compareExpression,
                                     {{left.row(), left}, {right.row(), right}}, failed);
    return failed ? QSortFilterProxyModel::lessThan(left, right) : result.toBool();
}

// Changing a filter makes Qt's proxy find the rows first, if it has not yet, and then tell how they changed.
// In the course of a reset that would tell the views of rows that they cannot know: they read all rows once
// it is over.
QSignalBlocker QQmlSortFilterProxyModel::quietInReset()
{
    return QSignalBlocker(m_resetting ? this : nullptr);
}

void QQmlSortFilterProxyModel::invalidateFilter()
{
    const QSignalBlocker quiet = quietInReset();
    QSortFilterProxyModel::invalidateFilter();
}

void QQmlSortFilterProxyModel::updateRoles()
{
    const QHash<int, QByteArray> names =
        sourceModel() ? sourceModel()->roleNames() : QHash<int, QByteArray>();
    const int oldFilterRole = filterRole();
    const int oldSortRole = sortRole();
    {
        const QSignalBlocker quiet = quietInReset();
        setFilterRole(roleOf(names, m_filterRoleName));
        setSortRole(roleOf(names, m_sortRoleName));
    }
    if (m_resetting && filterRole() != oldFilterRole)
        emit filterRoleChanged(filterRole());
    if (m_resetting && sortRole() != oldSortRole)
        emit sortRoleChanged(sortRole());
}

QQmlSortFilterProxyModel::Origin::Origin(const QQmlScriptString &script,
                                         std::initializer_list<const char *> sides)
{
    if (script.isEmpty())
        return;
    const QQmlExpression written(script);
    context = written.context();
    scope = written.scopeObject();
    for (const char *suffix : sides) {
        const QLatin1String side(suffix);
        rows.append({written.expression(), QLatin1String("model") + side, QLatin1String("index") + side});
    }
}

std::unique_ptr<halvar::RowExpression> QQmlSortFilterProxyModel::compile(const QQmlScriptString &script,
                                                                         const Origin &origin) const
{
    if (!isUsable(origin.context) || !origin.scope)
        return nullptr;
    // A proxy made in C++ has no context of its own; the place where the expression was written has one.
    QQmlContext *own = qmlContext(this);
    if (own && !isUsable(own))
        return nullptr;
    auto context = std::make_unique<QQmlContext>(own ? own : origin.context.data());
    return std::make_unique<halvar::RowExpression>(script, std::move(context), origin.rows);
}

// The compiled expression and its context serve one evaluation at a time. One that makes the proxy
// evaluate again (by asking for its rows, say) finds none kept and compiles its own, so the names keep
// their values until the outer one is done; one that replaces the expression does not pull it away from
// under itself.
QVariant QQmlSortFilterProxyModel::evaluate(const QQmlScriptString &current, const Origin &origin,
                                            QQmlExpression *&kept, std::initializer_list<Row> rows,
                                            bool &failed) const
{
    const QQmlScriptString script = current;
    std::unique_ptr<halvar::RowExpression> expression(
        static_cast<halvar::RowExpression *>(std::exchange(kept, nullptr)));
    if (!expression || !isUsable(expression->context()))
        expression = compile(script, origin);
    if (!expression) {
        QLOG_WARN()
            << "The place where a sort or filter expression was written is gone; it is not evaluated.";
        failed = true;
        return QVariant();
    }
    int place = 0;
    for (const Row &row : rows)
        expression->show(place++, *sourceModel(), row.number, row.index);
    expression->clearError();
    const QVariant result = expression->evaluate();
    failed = expression->hasError();
    if (failed) {
        QLOG_WARN() << expression->error().toString();
    }
    if (!kept && current == script)
        kept = expression.release();
    return result;
}

namespace {

const bool registered = [] {
    qmlRegisterAnonymousType<QAbstractItemModel>("SortFilterProxyModel", 0);
    qmlRegisterType<QQmlSortFilterProxyModel>("SortFilterProxyModel", 0, 1, "SortFilterProxyModel");
    return true;
}();

} // namespace
