// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef BENCHITEM_H
#define BENCHITEM_H

#include <QAbstractListModel>
#include <QObject>
#include <QString>
#include <QVector>

#include <utility>

/// An item as the library's own: seven properties, each with a signal of its own.
class BenchItem : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(QString observation READ observation WRITE setObservation NOTIFY observationChanged)
    Q_PROPERTY(QString element READ element WRITE setElement NOTIFY elementChanged)
    Q_PROPERTY(int rank READ rank WRITE setRank NOTIFY rankChanged)
    Q_PROPERTY(double concentration READ concentration WRITE setConcentration NOTIFY concentrationChanged)
    Q_PROPERTY(bool activated READ activated WRITE setActivated NOTIFY activatedChanged)
    Q_PROPERTY(Decision decision READ decision WRITE setDecision NOTIFY decisionChanged)

public:
    enum Decision {
        None,
        Positive,
        Negative
    };
    Q_ENUM(Decision)

    /// The values of a row, the same in every model that is measured.
    struct Values
    {
        /// Rows that share a value stand together, as the units of a room do: Qt's proxies take and give
        /// rows in runs, in a time quadratic in their number.
        static constexpr int run = 50;

        explicit Values(int row)
            : title(QStringLiteral("Salon %1").arg((row * 7919) % 100003))
            , observation(QStringLiteral("Traces sur le mur"))
            , element(row / run % 2 ? QStringLiteral("Fenêtre") : QStringLiteral("Plinthe"))
            , rank((row * 7919) % 100003)
            , concentration(row / 8.0)
            , activated(row / run % 2 == 0)
            , decision(Decision(row % 3))
        { }
        QString objectName;
        QString title;
        QString observation;
        QString element;
        int rank;
        double concentration;
        bool activated;
        Decision decision;
    };

    explicit BenchItem(const Values &values)
        : m_values(values)
    { }

    QString title() const { return m_values.title; }
    QString observation() const { return m_values.observation; }
    QString element() const { return m_values.element; }
    int rank() const { return m_values.rank; }
    double concentration() const { return m_values.concentration; }
    bool activated() const { return m_values.activated; }
    Decision decision() const { return m_values.decision; }

    void setTitle(const QString &title)
    {
        if (std::exchange(m_values.title, title) != title)
            emit titleChanged();
    }
    void setObservation(const QString &observation)
    {
        if (std::exchange(m_values.observation, observation) != observation)
            emit observationChanged();
    }
    void setElement(const QString &element)
    {
        if (std::exchange(m_values.element, element) != element)
            emit elementChanged();
    }
    void setRank(int rank)
    {
        if (std::exchange(m_values.rank, rank) != rank)
            emit rankChanged();
    }
    void setConcentration(double concentration)
    {
        m_values.concentration = concentration;
        emit concentrationChanged();
    }
    void setActivated(bool activated)
    {
        if (std::exchange(m_values.activated, activated) != activated)
            emit activatedChanged();
    }
    void setDecision(Decision decision)
    {
        if (std::exchange(m_values.decision, decision) != decision)
            emit decisionChanged();
    }

signals:
    void titleChanged();
    void observationChanged();
    void elementChanged();
    void rankChanged();
    void concentrationChanged();
    void activatedChanged();
    void decisionChanged();

private:
    Values m_values;
};

/// What one would write by hand for exactly these values: the limit of the list of items.
class RowModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// The numbers that the list of items gives to the same roles.
    enum Role {
        ObjectNameRole = 257,
        TitleRole,
        ObservationRole,
        ElementRole,
        RankRole,
        ConcentrationRole,
        ActivatedRole,
        DecisionRole
    };

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : m_rows.size();
    }
    QHash<int, QByteArray> roleNames() const override;
    QVariant data(const QModelIndex &index, int role) const override;

    void append(const BenchItem::Values &values);
    void setRank(int row, int rank);
    void removeFirst();
    void clear();

private:
    QVector<BenchItem::Values> m_rows;
};

#endif // BENCHITEM_H
