// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_EXPRESSIONROLES_H
#define HALVAR_EXPRESSIONROLES_H

#include <QByteArray>
#include <QHash>
#include <QModelIndex>
#include <QPair>
#include <QSet>
#include <QString>
#include <QVariant>
#include <QVector>

#include <optional>

#include "halvar-export.h"

namespace halvar {

/// Which members of the object \p name a JavaScript expression can read, when that can be told from its
/// text: each mention of the name is a plain "name.member", and no text is evaluated in its turn.
///
/// A row then needs no more than these of its roles, which an expression cannot tell from all of them.
/// \return nothing when it cannot be told; then the expression may look at anything.
HALVAR_EXPORT std::optional<QSet<QString>> membersRead(const QString &expression, const QString &name);

/// Whether the expression may look at \p name at all.
HALVAR_EXPORT bool isMentioned(const QString &expression, const QString &name);

/// Whether it can be told from its text that an expression changes nothing that it does not declare itself:
/// it assigns, counts up or down and deletes nowhere else.
HALVAR_EXPORT bool changesNothing(const QString &expression);

/// Reads a row for an expression: the value of each role by the role's name, or, where the others cannot be
/// missed, of those that the expression reads.
class HALVAR_EXPORT RoleReader
{
public:
    using Roles = QVector<QPair<QString, int>>;

    RoleReader() = default;
    /// For an object called \p name in the text of \p expression.
    RoleReader(const QString &expression, const QString &name)
        : m_members(membersRead(expression, name))
        , m_readsMembersOnly(m_members && changesNothing(expression))
    { }
    bool isMentioned() const { return !m_members || !m_members->isEmpty(); }
    /// Whether the expression does no more with the object than to read some of its members, so that it
    /// cannot tell one object from another with the same plain values.
    bool readsMembersOnly() const { return m_readsMembersOnly; }
    /// Names and numbers of the roles to read; one shared vector as long as the model's names stay the same.
    const Roles &roles(const QAbstractItemModel &model) const;
    QVariantMap read(const QAbstractItemModel &model, const QModelIndex &row) const;
    QVariantMap read(const QModelIndex &row) const { return read(*row.model(), row); }

private:
    std::optional<QSet<QString>> m_members;
    bool m_readsMembersOnly = false;
    // What the model's role names came to when they last differed.
    mutable QHash<int, QByteArray> m_names;
    mutable Roles m_roles;
};

} // namespace halvar

#endif // HALVAR_EXPRESSIONROLES_H
