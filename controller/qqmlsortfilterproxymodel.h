// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_QQMLSORTFILTERPROXYMODEL_H
#define HALVAR_QQMLSORTFILTERPROXYMODEL_H

#include <QPointer>
#include <QQmlContext>
#include <QQmlScriptString>
#include <QSignalBlocker>
#include <QSortFilterProxyModel>
#include <QString>
#include <QVariant>
#include <QVector>

#include <initializer_list>
#include <memory>

#include "halvar-export.h"
#include "rowexpression.h"

class QQmlExpression;

/// Filters and sorts a model from QML: by a role and a value or a pattern, or by an expression.
///
/// QML type "SortFilterProxyModel" of the module "SortFilterProxyModel" 0.1, registered when the library
/// is loaded. A row is kept when it passes the value, then the pattern, then the expression. A role name
/// that the source does not have stands for the display role, as it does before a name is given.
///
/// In filterExpression, `model` maps each role name to the row's value and `index` is its source row; in
/// sortExpression, which answers whether the left row comes before the right one, they are `modelLeft`,
/// `indexLeft`, `modelRight` and `indexRight`. An expression that fails writes one Warn line for each
/// evaluation: the filter then keeps the row, and the sort compares by the sort role. Interface thread only.
class HALVAR_EXPORT QQmlSortFilterProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT
    Q_PROPERTY(
        QString filterRoleName READ filterRoleName WRITE setFilterRoleName NOTIFY filterRoleNameChanged)
    Q_PROPERTY(QString filterPattern READ filterPattern WRITE setFilterPattern NOTIFY filterPatternChanged)
    Q_PROPERTY(PatternSyntax filterPatternSyntax READ filterPatternSyntax WRITE setFilterPatternSyntax NOTIFY
                   filterPatternSyntaxChanged)
    Q_PROPERTY(QVariant filterValue READ filterValue WRITE setFilterValue NOTIFY filterValueChanged)
    Q_PROPERTY(QQmlScriptString filterExpression READ filterExpression WRITE setFilterExpression NOTIFY
                   filterExpressionChanged)
    Q_PROPERTY(QString sortRoleName READ sortRoleName WRITE setSortRoleName NOTIFY sortRoleNameChanged)
    Q_PROPERTY(Qt::SortOrder sortOrder READ sortOrder WRITE setSortOrder)
    Q_PROPERTY(QQmlScriptString sortExpression READ sortExpression WRITE setSortExpression NOTIFY
                   sortExpressionChanged)

public:
    /// The pattern syntaxes of QRegExp, with its values.
    enum PatternSyntax : int {
        RegExp = 0,
        Wildcard = 1,
        FixedString = 2,
        RegExp2 = 3,
        WildcardUnix = 4,
        W3CXmlSchema11 = 5
    };
    Q_ENUM(PatternSyntax)

    explicit QQmlSortFilterProxyModel(QObject *parent = nullptr);
    ~QQmlSortFilterProxyModel() override;

    QString filterRoleName() const { return m_filterRoleName; }
    void setFilterRoleName(const QString &filterRoleName);

    QString filterPattern() const;
    void setFilterPattern(const QString &filterPattern);

    PatternSyntax filterPatternSyntax() const;
    void setFilterPatternSyntax(PatternSyntax patternSyntax);

    QVariant filterValue() const { return m_filterValue; }
    /// An invalid value (undefined in QML) stops filtering by value.
    void setFilterValue(const QVariant &filterValue);

    QQmlScriptString filterExpression() const { return m_filterScriptString; }
    void setFilterExpression(const QQmlScriptString &filterScriptString);

    QString sortRoleName() const { return m_sortRoleName; }
    void setSortRoleName(const QString &sortRoleName);

    /// Sorts column 0: until then, and whatever order is read, the rows keep the source's order.
    void setSortOrder(Qt::SortOrder order);

    QQmlScriptString sortExpression() const { return m_compareScriptString; }
    void setSortExpression(const QQmlScriptString &compareScriptString);

    /// Proxy row of the first reference item whose title is \p title. 0 when there is none, when it is
    /// filtered out and when the source is no list of reference items, so that the current index of a
    /// view always falls on its first row.
    Q_INVOKABLE int findCurrentIndex(const QString &title) const;
    /// Source row of proxy row \p currentIndex, or -1.
    Q_INVOKABLE int findOriginalModelIndex(int currentIndex) const;
    /// Proxy row of source row \p currentIndex, or -1.
    Q_INVOKABLE int findProxyModelIndex(int currentIndex) const;

signals:
    void filterRoleNameChanged();
    void filterPatternChanged();
    void filterPatternSyntaxChanged();
    void filterValueChanged();
    void filterExpressionChanged();
    void sortRoleNameChanged();
    void sortExpressionChanged();

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private slots:
    void invalidateFilter();
    void updateRoles();

private:
    /// Where an expression was written. It keeps bare pointers to both, so they are taken while they are
    /// sure to live, and watched from then on.
    struct Origin
    {
        Origin() = default;
        Origin(const QQmlScriptString &script, std::initializer_list<const char *> sides);
        QPointer<QQmlContext> context;
        QPointer<QObject> scope;
        QVector<halvar::RowNames> rows;
    };
    struct Row
    {
        int number;
        /// Invalid in a source without columns.
        QModelIndex index;
    };
    QSignalBlocker quietInReset();
    std::unique_ptr<halvar::RowExpression> compile(const QQmlScriptString &script,
                                                   const Origin &origin) const;
    QVariant evaluate(const QQmlScriptString &current, const Origin &origin, QQmlExpression *&kept,
                      std::initializer_list<Row> rows, bool &failed) const;

    QString m_filterRoleName;
    QString m_sortRoleName;
    QQmlScriptString m_filterScriptString;
    // The compiled expressions, each a RowExpression; made by the first row that needs one.
    mutable QQmlExpression *m_filterExpression;
    QQmlScriptString m_compareScriptString;
    mutable QQmlExpression *m_compareExpression;
    QVariant m_filterValue;
    Origin m_filterOrigin;
    Origin m_compareOrigin;
    bool m_resetting = false;
};

#endif // HALVAR_QQMLSORTFILTERPROXYMODEL_H
