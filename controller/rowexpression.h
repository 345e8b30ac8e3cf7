// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_ROWEXPRESSION_H
#define HALVAR_ROWEXPRESSION_H

#include <QJSValue>
#include <QModelIndex>
#include <QQmlContext>
#include <QQmlExpression>
#include <QQmlScriptString>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>
#include <vector>

#include "expressionroles.h"
#include "halvar-export.h"

namespace halvar {

/// What an expression calls a row: the object that holds the values of its roles, and its number.
struct HALVAR_EXPORT RowNames
{
    RowNames() = default;
    /// Finds in the text of \p expression what it needs of a row.
    RowNames(const QString &expression, const QString &modelName, const QString &indexName)
        : model(modelName)
        , index(indexName)
        , reader(expression, modelName)
        , indexMentioned(isMentioned(expression, indexName))
    { }
    QString model;
    QString index;
    RoleReader reader;
    bool indexMentioned = false;
};

/// A compiled expression and the context in which it sees rows.
///
/// Turning a row's values into a JavaScript object is most of the cost of an evaluation. An expression that
/// only reads members of it cannot tell one object from another, so it is shown the same one each time,
/// with the row's values put in; any other expression gets one of its own each time.
class HALVAR_EXPORT RowExpression : public QQmlExpression
{
public:
    /// \p rows are the rows that it sees at a time.
    RowExpression(const QQmlScriptString &script, std::unique_ptr<QQmlContext> context,
                  const QVector<RowNames> &rows);

    /// Lets the names of the given place mean this row of \p model from the next evaluation on.
    void show(int place, const QAbstractItemModel &model, int row, const QModelIndex &index);

private:
    struct Shown
    {
        explicit Shown(const RowNames &rowNames)
            : names(rowNames)
        { }
        RowNames names;
        // The object that is used again, the roles it was made for, and the values it holds.
        QJSValue object;
        RoleReader::Roles roles;
        QVector<QVariant> values;
        bool objectInContext = false;
    };
    bool fill(Shown &shown, const QAbstractItemModel &model, const QModelIndex &index);

    std::vector<Shown> m_shown;
};

} // namespace halvar

#endif // HALVAR_ROWEXPRESSION_H
