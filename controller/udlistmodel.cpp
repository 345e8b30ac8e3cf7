// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "udlistmodel.h"

#include <QsLog.h>

#include "databaseitemlistmodel.h"
#include "proxylocallistmodel.h"

UDListModel::UDListModel(DatabaseItemListModel *locals, QObject *parent)
    : QQmlObjectListModel<UD>(parent, QByteArray(), QByteArray())
    , m_localProxyModel(new ProxyLocalListModel(locals, this))
{
    qRegisterMetaType<UDStatutEnumClass::UDStatut>("UDStatutEnumClass::UDStatut");
    qRegisterMetaType<DetectionDecisionEnumClass::DetectionDecision>(
        "DetectionDecisionEnumClass::DetectionDecision");
    m_localProxyModel->setParent(this);
    connect(this, &QAbstractItemModel::rowsInserted, m_localProxyModel,
            &ProxyLocalListModel::invalidateLater);
    connect(this, &QAbstractItemModel::rowsRemoved, m_localProxyModel, &ProxyLocalListModel::invalidateLater);
    const int localRole = roleForName(QByteArrayLiteral("local"));
    connect(this, &QAbstractItemModel::dataChanged, this,
            [this, localRole](const QModelIndex &, const QModelIndex &, const QVector<int> &roles) {
                if (roles.contains(localRole))
                    m_localProxyModel->invalidateLater();
            });
}

UDListModel::~UDListModel() = default;

MeasureListModel *UDListModel::measures() const
{
    UD *const unit = at(m_UDindex);
    return unit ? unit->measures() : nullptr;
}

void UDListModel::add(int index)
{
    append(index == -1 ? new UD(this) : new UD(at(index), this));
}

UDStatutEnumClass::UDStatut UDListModel::currentStatut() const
{
    if (m_UDindex == -1)
        return UDStatutEnumClass::RAW;
    QLOG_DEBUG() << "[Halvar Controller][UDListModel]: currentIndex = " << m_UDindex;
    const UD *const unit = at(m_UDindex);
    return unit ? unit->statut() : UDStatutEnumClass::RAW;
}
