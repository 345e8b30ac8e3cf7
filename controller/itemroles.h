// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_ITEMROLES_H
#define HALVAR_ITEMROLES_H

#include <QAtomicInt>
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMetaObject>
#include <QMetaProperty>
#include <QSet>
#include <QVariant>
#include <QVector>

#include "halvar-export.h"

/// Reads one property of items that are all of one class, as QMetaProperty::read() does, without looking up
/// the name of the property or, after the first time, of its type.
class HALVAR_EXPORT ItemProperty
{
public:
    ItemProperty() = default;
    explicit ItemProperty(const QMetaProperty &property);
    bool isReadable() const { return m_property.isReadable(); }
    QVariant read(const QObject *item) const;

private:
    QMetaProperty m_property;
    // Meta type of the values read; unknown until the first one, and for good when it may change.
    mutable QAtomicInt m_type = QMetaType::UnknownType;
};

/// What the lists of one item class have in common: a role for each of its properties.
///
/// The role of a property is the base role plus one plus the property's index, so a refused name leaves a
/// gap. Any thread may read it.
class HALVAR_EXPORT ItemRoles
{
public:
    ItemRoles(const QMetaObject &itemClass, int baseRole, const QSet<QByteArray> &refused);

    /// Role to name; the base role, the item itself, is "qtObject".
    const QHash<int, QByteArray> &names() const { return m_names; }
    /// Method index of a notify signal to the role it reports: of properties that share one, the last.
    const QHash<int, int> &signalIdxToRole() const { return m_signalIdxToRole; }
    /// What dataChanged() says when the signal of this method index is emitted: the role above, ready to be
    /// shared. Empty for a signal that reports none.
    const QVector<int> &changedRoles(int signal) const
    {
        static const QVector<int> none;
        return signal >= 0 && signal < m_changedRoles.size() ? m_changedRoles.at(signal) : none;
    }
    /// Properties that get no role because of their name, in the order of the class.
    const QList<QByteArray> &refusedNames() const { return m_refusedNames; }
    /// Null when the role is no property's or the property cannot be read.
    const ItemProperty *property(int role) const
    {
        const int i = role - m_firstRole;
        return i >= 0 && i < m_properties.size() && m_properties.at(i).isReadable() ? &m_properties.at(i)
                                                                                    : nullptr;
    }

    /// Lowest role called \p name, or -1.
    static int roleForName(const QHash<int, QByteArray> &names, const QByteArray &name);

private:
    int m_firstRole;
    QHash<int, QByteArray> m_names;
    QHash<int, int> m_signalIdxToRole;
    QVector<QVector<int>> m_changedRoles;
    QList<QByteArray> m_refusedNames;
    QVector<ItemProperty> m_properties;
};

#endif // HALVAR_ITEMROLES_H
