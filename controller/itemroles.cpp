// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "itemroles.h"

#include <algorithm>

ItemProperty::ItemProperty(const QMetaProperty &property)
    : m_property(property)
{ }

QVariant ItemProperty::read(const QObject *item) const
{
    const int type = m_type.loadRelaxed();
    if (type == QMetaType::UnknownType) {
        const QVariant value = m_property.read(item);
        // An enumeration reads as a plain number until its type is registered, and a property of type
        // QVariant as whatever it holds.
        const bool settled = m_property.userType() != QMetaType::QVariant
            && !(m_property.isEnumType() && value.userType() == QMetaType::Int);
        if (settled)
            m_type.storeRelaxed(value.userType());
        return value;
    }
    QVariant value(type, nullptr);
    int status = -1;
    void *arguments[] = {value.data(), &value, &status};
    QMetaObject::metacall(const_cast<QObject *>(item), QMetaObject::ReadProperty, m_property.propertyIndex(),
                          arguments);
    // A getter may hand out the address of its value instead of filling in ours.
    if (status == -1 && arguments[0] != value.data())
        return QVariant(type, arguments[0]);
    return value;
}

ItemRoles::ItemRoles(const QMetaObject &itemClass, int baseRole, const QSet<QByteArray> &refused)
    : m_firstRole(baseRole + 1)
{
    m_names.insert(baseRole, QByteArrayLiteral("qtObject"));
    m_properties.resize(itemClass.propertyCount());
    m_changedRoles.resize(itemClass.methodCount());
    for (int i = 0; i < itemClass.propertyCount(); ++i) {
        const QMetaProperty property = itemClass.property(i);
        const QByteArray name(property.name());
        if (refused.contains(name)) {
            m_refusedNames.append(name);
            continue;
        }
        const int role = m_firstRole + i;
        m_names.insert(role, name);
        // A property declared again further down the class replaces the inherited one of its name.
        m_properties[i] = ItemProperty(itemClass.property(itemClass.indexOfProperty(name.constData())));
        if (property.hasNotifySignal()) {
            m_signalIdxToRole.insert(property.notifySignalIndex(), role);
            m_changedRoles[property.notifySignalIndex()] = {role};
        }
    }
}

int ItemRoles::roleForName(const QHash<int, QByteArray> &names, const QByteArray &name)
{
    const QList<int> roles = names.keys(name);
    return roles.isEmpty() ? -1 : *std::min_element(roles.cbegin(), roles.cend());
}
