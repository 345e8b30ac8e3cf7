// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_UDLISTMODEL_H
#define HALVAR_UDLISTMODEL_H

#include "enums.h"
#include "halvar-export.h"
#include "qqmlobjectlistmodel.h"
#include "ud.h"

class DatabaseItemListModel;
class ProxyLocalListModel;

/// The units of the open diagnostic, and which of them is current.
class HALVAR_EXPORT UDListModel : public QQmlObjectListModel<UD>
{
    Q_OBJECT

public:
    /// \param locals the reference list of rooms; not owned, may be null.
    explicit UDListModel(DatabaseItemListModel *locals, QObject *parent = nullptr);
    ~UDListModel() override;

    /// The rooms in use, for the application to hand to QML; owned by this list, which has it
    /// follow the units.
    ProxyLocalListModel *localProxyModel() const { return m_localProxyModel; }

    /// -1 for none. Not checked: the interface moves on before the list has grown.
    void updateCurrentIndex(int index) { m_UDindex = index; }
    /// The measures of the current unit; null without one.
    MeasureListModel *measures() const;

public slots:
    /// Adds a unit at the end: a blank one for -1 and for an index outside the list, else one that continues
    /// the unit at \p index.
    void add(int index);
    /// RAW without a current unit.
    UDStatutEnumClass::UDStatut currentStatut() const;

private:
    ProxyLocalListModel *m_localProxyModel;
    int m_UDindex = -1;
};

#endif // HALVAR_UDLISTMODEL_H
