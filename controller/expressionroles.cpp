// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "expressionroles.h"

#include <QAbstractItemModel>
#include <QRegularExpression>

namespace halvar {

std::optional<QSet<QString>> membersRead(const QString &expression, const QString &name)
{
    if (expression.isEmpty())
        return std::nullopt; // its text was not kept
    // What may run text of its own making with these names in reach, or spells a name in another way.
    static const QRegularExpression evasive(QStringLiteral(
        "\\\\u|\\b(?:eval|Function|constructor|with|createQmlObject|createComponent|incubateObject)\\b"));
    if (evasive.match(expression).hasMatch())
        return std::nullopt;

    // Mentions in texts and comments count as well: at worst more is read than needed, or everything.
    const QRegularExpression mention(QStringLiteral("(?<![\\w$])%1(?![\\w$])").arg(name),
                                     QRegularExpression::UseUnicodePropertiesOption);
    // A call hands the whole object to the function, as in "name.hasOwnProperty('rank')". A name that goes on
    // with a mark of another script or an escape is not taken apart here.
    const QRegularExpression plainRead(
        QStringLiteral("\\G%1\\s*\\.\\s*([\\p{L}_$][\\w$]*+)(?!\\s*[(`]|[^\\x00-\\x7F]|\\\\)").arg(name),
        QRegularExpression::UseUnicodePropertiesOption);
    // What every object has may lead back to the object itself, as "(name.valueOf)()" does.
    static const QSet<QString> inherited{
        QStringLiteral("__defineGetter__"), QStringLiteral("__defineSetter__"),
        QStringLiteral("__lookupGetter__"), QStringLiteral("__lookupSetter__"),
        QStringLiteral("__proto__"),        QStringLiteral("hasOwnProperty"),
        QStringLiteral("isPrototypeOf"),    QStringLiteral("propertyIsEnumerable"),
        QStringLiteral("toLocaleString"),   QStringLiteral("toString"),
        QStringLiteral("valueOf"),
    };
    QSet<QString> members;
    for (auto mentions = mention.globalMatch(expression); mentions.hasNext();) {
        const int start = mentions.next().capturedStart();
        const QRegularExpressionMatch read = plainRead.match(expression, start);
        if (!read.hasMatch() || inherited.contains(read.captured(1)))
            return std::nullopt;
        members.insert(read.captured(1));
    }
    return members;
}

bool isMentioned(const QString &expression, const QString &name)
{
    const auto members = membersRead(expression, name);
    return !members || !members->isEmpty();
}

bool changesNothing(const QString &expression)
{
    // An assignment follows the end of its target; one that declares a name of its own is left out first. A
    // comment may stand between the two, and a loop may assign without a sign.
    static const QRegularExpression declaration(
        QStringLiteral("\\b(?:var|let|const)\\s+[A-Za-z_$][\\w$]*\\s*=(?!=)"));
    static const QRegularExpression change(QStringLiteral(
        "(?:[\\w$\\])}]|[^\\x00-\\x7F])\\s*(?:[-+*/%&|^]|\\*\\*|<<|>>>?|&&|\\|\\||\\?\\?)?=(?![=>])"
        "|\\+\\+|--|/[*/]|\\b(?:delete|for)\\b|\\\\u"));
    QString text = expression;
    text.replace(declaration, QStringLiteral(" "));
    return !text.isEmpty() && !change.match(text).hasMatch();
}

const RoleReader::Roles &RoleReader::roles(const QAbstractItemModel &model) const
{
    const QHash<int, QByteArray> names = model.roleNames();
    if (!names.isSharedWith(m_names)) {
        m_names = names;
        m_roles.clear();
        for (auto it = names.cbegin(); it != names.cend(); ++it) {
            const QString name = QString::fromUtf8(it.value());
            if (!m_members || m_members->contains(name))
                m_roles.append({name, it.key()});
        }
    }
    return m_roles;
}

QVariantMap RoleReader::read(const QAbstractItemModel &model, const QModelIndex &row) const
{
    const Roles roles = this->roles(model); // a value's getter may make the model rename its roles
    QVariantMap values;
    for (const auto &[name, role] : roles)
        values.insert(name, row.data(role));
    return values;
}

} // namespace halvar
