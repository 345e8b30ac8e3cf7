// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "rowexpression.h"

#include <QQmlEngine>

#include <cstring>
#include <limits>
#include <optional>

namespace halvar {

namespace {

// The values that become JavaScript primitives. All others become objects, which an expression may change or
// tell apart.
std::optional<QJSValue> primitive(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return QJSValue();
    case QMetaType::Bool:
        return QJSValue(value.toBool());
    case QMetaType::Int:
        return QJSValue(value.toInt());
    case QMetaType::UInt:
        // The engine keeps small numbers as integers, and hands them back as such.
        if (value.toUInt() <= uint(std::numeric_limits<int>::max()))
            return QJSValue(value.toInt());
        return QJSValue(value.toDouble());
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return QJSValue(value.toDouble());
    case QMetaType::QString:
        return QJSValue(value.toString());
    default:
        return std::nullopt;
    }
}

// Whether two values are one and the same to JavaScript. Zero and minus zero, which are equal, are not.
bool isSame(const QVariant &a, const QVariant &b)
{
    if (a.userType() != b.userType())
        return false;
    switch (a.userType()) {
    case QMetaType::Float:
        return std::memcmp(a.constData(), b.constData(), sizeof(float)) == 0;
    case QMetaType::Double:
        return std::memcmp(a.constData(), b.constData(), sizeof(double)) == 0;
    default:
        return a == b;
    }
}

} // namespace

RowExpression::RowExpression(const QQmlScriptString &script, std::unique_ptr<QQmlContext> context,
                             const QVector<RowNames> &rows)
    : QQmlExpression(script, context.get())
    , m_shown(rows.cbegin(), rows.cend())
{
    context.release()->setParent(this);
}

void RowExpression::show(int place, const QAbstractItemModel &model, int row, const QModelIndex &index)
{
    Shown &shown = m_shown[std::size_t(place)];
    if (shown.names.reader.isMentioned()) {
        const bool filled = shown.names.reader.readsMembersOnly() && fill(shown, model, index);
        if (!filled)
            context()->setContextProperty(shown.names.model, shown.names.reader.read(model, index));
        else if (!shown.objectInContext)
            context()->setContextProperty(shown.names.model, QVariant::fromValue(shown.object));
        shown.objectInContext = filled;
    }
    if (shown.names.indexMentioned)
        context()->setContextProperty(shown.names.index, row);
}

bool RowExpression::fill(Shown &shown, const QAbstractItemModel &model, const QModelIndex &index)
{
    const RoleReader::Roles roles = shown.names.reader.roles(model);
    if (shown.object.isUndefined() || !roles.isSharedWith(shown.roles)) {
        shown.roles = roles;
        shown.object = engine()->newObject();
        shown.objectInContext = false;
        shown.values.clear();
    }
    for (int i = 0; i < roles.size(); ++i) {
        const QVariant value = index.data(roles.at(i).second);
        if (i < shown.values.size() && isSame(value, shown.values.at(i)))
            continue;
        const std::optional<QJSValue> converted = primitive(value);
        if (!converted)
            return false;
        shown.object.setProperty(roles.at(i).first, *converted);
        if (i < shown.values.size())
            shown.values[i] = value;
        else
            shown.values.append(value);
    }
    return true;
}

} // namespace halvar
