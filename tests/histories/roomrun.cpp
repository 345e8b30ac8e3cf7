// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "roomrun.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <optional>

#include "databaseitemlistmodel.h"
#include "proxylocallistmodel.h"
#include "udlistmodel.h"
#include "views.h"

namespace histories {

namespace {

/// What stands in a row; nothing when its item was deleted by somebody else.
using Cell = std::optional<QString>;

QString nameOf(int number)
{
    static const char *const names[] = {"", "Salon", "Cuisine", "Entrée", "Chambre", "WC", "Salle de bains"};
    return QString::fromUtf8(names[number % 7]);
}

template <class T>
void moveDown(std::vector<T> &cells, int from, int to)
{
    const auto low = cells.begin() + std::min(from, to);
    const auto high = cells.begin() + std::max(from, to);
    std::rotate(low, high, std::next(high));
}

/// A room, and what the proxy last made of it.
struct Room
{
    Cell title;
    bool shown = false;
    bool told = true;
};

class Run
{
public:
    explicit Run(QQmlEngine &engine);
    QString step(const Step &step);
    static const std::vector<std::pair<Kind, void (Run::*)(int, int)>> &kinds();

private:
    void addRoom(int a, int);
    void insertRoom(int a, int b);
    void renameRoom(int a, int b);
    void removeRoom(int a, int);
    void moveRoom(int a, int b);
    void deleteRoom(int a, int);
    void clearRooms(int, int);
    void addUnit(int a, int);
    void placeUnit(int a, int b);
    void removeUnit(int a, int);
    void moveUnit(int a, int b);
    void deleteUnit(int a, int);
    void clearUnits(int, int);
    void ask(int a, int);

    bool isUsed(const Room &room) const;
    // The proxy filters anew when it has been told to and is asked, or when the events are handled.
    void settle();
    int firstShown(const QString &title) const;
    QString difference();

    DatabaseItemListModel m_rooms;
    UDListModel m_units;
    ProxyLocalListModel &m_proxy;
    std::vector<Room> m_naiveRooms;
    std::vector<Cell> m_naiveUnits;
    bool m_stale = false;
    QString m_wrongAnswer;
    Views m_views;
};

Run::Run(QQmlEngine &engine)
    : m_units(&m_rooms)
    , m_proxy(*m_units.localProxyModel())
    , m_views(m_proxy, engine)
{ }

const std::vector<std::pair<Kind, void (Run::*)(int, int)>> &Run::kinds()
{
    static const std::vector<std::pair<Kind, void (Run::*)(int, int)>> all{
        {{"addRoom", 8}, &Run::addRoom},       {{"insertRoom", 6}, &Run::insertRoom},
        {{"renameRoom", 6}, &Run::renameRoom}, {{"removeRoom", 4}, &Run::removeRoom},
        {{"moveRoom", 5}, &Run::moveRoom},     {{"deleteRoom", 1}, &Run::deleteRoom},
        {{"clearRooms", 1}, &Run::clearRooms}, {{"addUnit", 8}, &Run::addUnit},
        {{"placeUnit", 12}, &Run::placeUnit},  {{"removeUnit", 5}, &Run::removeUnit},
        {{"moveUnit", 2}, &Run::moveUnit},     {{"deleteUnit", 1}, &Run::deleteUnit},
        {{"clearUnits", 1}, &Run::clearUnits}, {{"ask", 6}, &Run::ask},
    };
    return all;
}

QString Run::step(const Step &step)
{
    const auto &[kind, act] = kinds()[std::size_t(step.kind)];
    (this->*act)(step.a, step.b);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // Now and then the next step comes before the event loop.
    if (step.b % 4) {
        QCoreApplication::sendPostedEvents();
        settle();
    }
    return difference();
}

bool Run::isUsed(const Room &room) const
{
    const QString title = room.title.value_or(QString());
    return std::any_of(m_naiveUnits.begin(), m_naiveUnits.end(),
                       [&title](const Cell &local) { return local == title; });
}

void Run::settle()
{
    if (!std::exchange(m_stale, false))
        return;
    for (Room &room : m_naiveRooms)
        room.shown = isUsed(room);
}

void Run::addRoom(int a, int)
{
    m_rooms.add(nameOf(a), QString());
    m_naiveRooms.push_back({nameOf(a)});
    m_naiveRooms.back().shown = isUsed(m_naiveRooms.back());
}

void Run::insertRoom(int a, int b)
{
    const int row = a % int(m_naiveRooms.size() + 1);
    m_rooms.add(nameOf(b), QString(), QString(), row);
    const auto room = m_naiveRooms.insert(m_naiveRooms.begin() + row, {nameOf(b)});
    room->shown = isUsed(*room);
}

void Run::renameRoom(int a, int b)
{
    if (m_naiveRooms.empty())
        return;
    const std::size_t row = std::size_t(a) % m_naiveRooms.size();
    Room &room = m_naiveRooms[row];
    if (!room.title || room.title == nameOf(b))
        return;
    m_rooms.at(int(row))->setTitle(nameOf(b));
    room.title = nameOf(b);
    room.shown = isUsed(room);
}

void Run::removeRoom(int a, int)
{
    if (m_naiveRooms.empty())
        return;
    const int row = a % int(m_naiveRooms.size());
    m_rooms.remove(row);
    m_naiveRooms.erase(m_naiveRooms.begin() + row);
}

void Run::moveRoom(int a, int b)
{
    if (m_naiveRooms.empty())
        return;
    const int count = int(m_naiveRooms.size());
    if (a % count == b % count)
        return;
    m_rooms.move(a % count, b % count);
    moveDown(m_naiveRooms, a % count, b % count);
    // Qt's proxy begins anew.
    for (Room &room : m_naiveRooms)
        room.shown = isUsed(room);
}

void Run::deleteRoom(int a, int)
{
    if (m_naiveRooms.empty())
        return;
    const std::size_t row = std::size_t(a) % m_naiveRooms.size();
    delete m_rooms.at(int(row));
    m_naiveRooms[row].title.reset();
    m_naiveRooms[row].told = false;
}

void Run::clearRooms(int, int)
{
    m_rooms.clear();
    m_naiveRooms.clear();
}

void Run::addUnit(int a, int)
{
    m_units.add(-1);
    m_units.last()->setLocal(nameOf(a));
    m_naiveUnits.push_back(nameOf(a));
    m_stale = true;
}

void Run::placeUnit(int a, int b)
{
    if (m_naiveUnits.empty())
        return;
    const std::size_t row = std::size_t(a) % m_naiveUnits.size();
    if (!m_naiveUnits[row] || m_naiveUnits[row] == nameOf(b))
        return;
    m_units.at(int(row))->setLocal(nameOf(b));
    m_naiveUnits[row] = nameOf(b);
    m_stale = true;
}

void Run::removeUnit(int a, int)
{
    if (m_naiveUnits.empty())
        return;
    const int row = a % int(m_naiveUnits.size());
    m_units.remove(row);
    m_naiveUnits.erase(m_naiveUnits.begin() + row);
    m_stale = true;
}

void Run::moveUnit(int a, int b)
{
    if (m_naiveUnits.empty())
        return;
    const int count = int(m_naiveUnits.size());
    m_units.move(a % count, b % count);
    moveDown(m_naiveUnits, a % count, b % count);
}

void Run::deleteUnit(int a, int)
{
    if (m_naiveUnits.empty())
        return;
    // Nobody tells the proxy, which keeps the room until it is next asked to filter.
    const std::size_t row = std::size_t(a) % m_naiveUnits.size();
    delete m_units.at(int(row));
    m_naiveUnits[row].reset();
}

void Run::clearUnits(int, int)
{
    m_stale = m_stale || !m_naiveUnits.empty();
    m_units.clear();
    m_naiveUnits.clear();
}

int Run::firstShown(const QString &title) const
{
    int place = 0;
    for (const Room &room : m_naiveRooms) {
        if (room.shown && room.title.value_or(QString()) == title)
            return place;
        place += room.shown;
    }
    return -1;
}

void Run::ask(int a, int)
{
    settle();
    if (m_proxy.findCurrentIndex(nameOf(a)) != firstShown(nameOf(a)))
        m_wrongAnswer = QStringLiteral("findCurrentIndex finds another row for \"%1\"").arg(nameOf(a));
    const auto first =
        std::find_if(m_naiveRooms.begin(), m_naiveRooms.end(), [](const Room &room) { return room.shown; });
    if (m_proxy.firstTitle() != (first != m_naiveRooms.end() ? first->title.value_or(QString()) : QString()))
        m_wrongAnswer = QStringLiteral("firstTitle is another");
}

QString Run::difference()
{
    const QString complaints = Views::takeComplaints();
    if (!complaints.isEmpty())
        return complaints;
    if (!m_wrongAnswer.isEmpty())
        return m_wrongAnswer;
    const int titleRole = m_rooms.roleForName("title");
    std::vector<int> shown;
    for (int row = 0; row < int(m_naiveRooms.size()); ++row) {
        if (m_naiveRooms[std::size_t(row)].shown)
            shown.push_back(row);
    }
    if (m_proxy.rowCount() != int(shown.size()))
        return QStringLiteral("%1 rooms are shown of %2").arg(m_proxy.rowCount()).arg(shown.size());
    for (int place = 0; place < m_proxy.rowCount(); ++place) {
        const int row = m_proxy.mapToSource(m_proxy.index(place, 0)).row();
        if (row != shown[std::size_t(place)])
            return QStringLiteral("room %1 is shown at %2 and not %3")
                .arg(row)
                .arg(place)
                .arg(shown[std::size_t(place)]);
        if (m_proxy.index(place, 0).data(titleRole).toString()
            != m_naiveRooms[std::size_t(row)].title.value_or(QString()))
            return QStringLiteral("room %1 has another title").arg(row);
    }
    return m_views.difference(
        titleRole, [&](int place) { return m_naiveRooms[std::size_t(shown[std::size_t(place)])].told; });
}

} // namespace

const std::vector<Kind> &roomKinds()
{
    static const std::vector<Kind> kinds = [] {
        std::vector<Kind> result;
        for (const auto &[kind, act] : Run::kinds())
            result.push_back(kind);
        return result;
    }();
    return kinds;
}

QString runRooms(const Steps &steps, QQmlEngine &engine, long &done)
{
    Run run(engine);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const QString difference = run.step(steps[i]);
        ++done;
        if (!difference.isEmpty())
            return QStringLiteral("after step %1, %2: %3")
                .arg(i + 1)
                .arg(QString::fromLatin1(steps[i].name), difference);
    }
    return QString();
}

} // namespace histories
