// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SCENARIO_H
#define SCENARIO_H

#include <QElapsedTimer>
#include <QQmlEngine>
#include <QString>
#include <QVector>

#include <functional>
#include <memory>

#include <nap/records.h>

#include "benchdiagnostic.h"
#include "qqmlsortfilterproxymodel.h"
#include "service.h"

/// A day's work on one large diagnostic: load, filter, sort, edit, measure, save.
///
/// Each step is a row of turns of the event loop: what the operator or the instrument does, and all that
/// follows from it, before the next touch on the screen could be heard.
class Scenario
{
public:
    static constexpr int roomCount = 200;

    struct Step
    {
        QString name;
        /// Of all its turns.
        qint64 nanoseconds = 0;
        /// Of its longest turn: for so long the interface hears nothing.
        qint64 longest = 0;
        /// Resident memory of the process behind it.
        qint64 bytes = 0;
        /// What its time has to grow with: the units, or for a sort the nanoseconds of a bare one.
        double work = 0;
    };

    /// \param file a diagnostic of \p units units in the rooms of BenchDiagnostic.
    Scenario(const QString &file, int units);

    /// Goes through all steps once, from a blank diagnostic to a blank diagnostic. Ends the process with a
    /// message when a step's result is not what it has to be.
    QVector<Step> pass();

private:
    using Proxy = std::unique_ptr<QQmlSortFilterProxyModel>;

    void load();
    void filterByRoom();
    void filterByExpression();
    void sortByText();
    void sortByExpression();
    void editNotes();
    void editRooms();
    void measure();
    void save();

    void step(const char *name, void (Scenario::*run)());
    void turn(const std::function<void()> &act);
    /// From another thread, as notifications come.
    void notify(const std::function<void()> &send);
    Proxy proxy(const QByteArray &properties);
    int unitsIn(const QString &room) const;
    bool isSortedByText(const QQmlSortFilterProxyModel &proxy) const;
    /// Nanoseconds in which the standard library sorts the same units by the same text: n log n comparisons,
    /// each slower the less of all units the processor's caches hold.
    double bareSort() const;

    QString m_file;
    int m_units;
    BenchDiagnostic m_diagnostic{roomCount};
    tessel::AutoRef<Service> m_service{new Service};
    QQmlEngine m_engine;
    Proxy m_unitsOfARoom; ///< what the list of units on the screen shows
    Proxy m_unitsByText;
    QVector<Step> m_steps;
    int m_pass = 0;
};

#endif // SCENARIO_H
