// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_TRAFFIC_H
#define SIMULATOR_TRAFFIC_H

#include <QAbstractListModel>
#include <QJsonObject>
#include <QVector>

namespace simulator {

/// The newest of what went over the two links, oldest first. Roles: time, link ("NAP", "MSP"), incoming
/// (true: to the instrument), text.
class Traffic : public QAbstractListModel
{
    Q_OBJECT
public:
    static constexpr int Limit = 500;

    enum Role {
        TimeRole = Qt::UserRole,
        LinkRole,
        IncomingRole,
        TextRole
    };

    using QAbstractListModel::QAbstractListModel;

    /// Takes note of a notice of the simulator; of none that tells of something else than the links.
    void add(const QJsonObject &notice);
    /// Puts what was added since into the list, in one piece: views are not busy with each line.
    void flush();
    void clear();

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    struct Line
    {
        QString time;
        QString link;
        bool incoming = false;
        QString text;
    };

    QVector<Line> m_lines;
    QVector<Line> m_added;
};

} // namespace simulator

#endif // SIMULATOR_TRAFFIC_H
