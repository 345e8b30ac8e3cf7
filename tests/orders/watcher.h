// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ORDERS_WATCHER_H
#define ORDERS_WATCHER_H

#include <QHash>
#include <QObject>
#include <QVector>

#include <functional>

#include <QsLogDest.h>
#include <mspclient.h>

#include "filewatch.h"
#include "state.h"

class HalvarController;
class Measure;
class MeasureListModel;
class UD;

namespace orders {

/// Records all effects of one controller, each signal with the value that a slot reads at that moment.
class Watcher : public QObject
{
public:
    Watcher(HalvarController *controller, const QByteArray &home);
    ~Watcher() override;

    void add(const std::string &effect);
    /// Called after each signal with what it is about: its first word, of measures and units also which
    /// property, such as "measure id".
    std::function<void(const std::string &)> onSignal;
    /// What came since the last call.
    Effects take();
    /// All commands so far.
    const QVector<MSPClient::MSPCommand> &commands() const { return m_commands; }
    /// How \p item is called in the effects.
    std::string nameOf(const QObject *item) const { return m_names.value(item); }

private:
    void signalled(const std::string &effect);
    void watchController(HalvarController *c);
    void watchCompanions(HalvarController *c);
    void watchMeasure(const Measure *measure, const std::string &name);
    void watchMeasures(const MeasureListModel *list, const std::string &name);
    std::string nextMeasure();
    void watchUnit(UD *unit, const std::string &name);
    template <typename List, typename Attach>
    void watchList(const List *list, const std::string &name, Attach attach);

    QsLogging::DestinationPtr m_log;
    FileWatch m_files;
    Effects m_effects;
    QVector<MSPClient::MSPCommand> m_commands;
    QHash<const QObject *, std::string> m_names;
    int m_lastMeasure = 0;
    int m_lastUnit = 0;
};

} // namespace orders

#endif // ORDERS_WATCHER_H
