// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "scenario.h"

#include <QCoreApplication>
#include <QQmlComponent>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include <unistd.h>

#include "measurelistmodel.h"
#include "proxylocallistmodel.h"
#include "udlistmodel.h"

namespace nap = com::halvar::nap;

namespace {

constexpr int edits = 1000;
constexpr int roomEdits = 100;
constexpr int shots = 20;
constexpr int resultsOfAShot = 5;

void require(bool condition, const char *what)
{
    if (condition)
        return;
    std::fprintf(stderr, "scale run: %s.\n", what);
    std::exit(1);
}

qint64 residentBytes()
{
    long total = 0;
    long resident = 0;
    if (std::FILE *file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &total, &resident) != 2)
            resident = 0;
        std::fclose(file);
    }
    return qint64(resident) * ::sysconf(_SC_PAGESIZE);
}

QString room(int number)
{
    return QStringLiteral("Salon %1").arg(number);
}

nap::DetectionResult result(double value)
{
    nap::DetectionResult detection;
    detection.set_value(value);
    detection.set_sigma(0.1);
    detection.set_decision(nap::NEGATIVE);
    return detection;
}

} // namespace

Scenario::Scenario(const QString &file, int units)
    : m_file(file)
    , m_units(units)
{
    require(m_service->publishForControllers(), "the analysis service cannot be published");
    HalvarController &controller = m_diagnostic.controller();
    controller.init();
    controller.setMeasureMode(MeasureModeEnumClass::TRIGGER);
    controller.setBranchMode(BranchModeEnumClass::BRANCH_INDEXED);
    // As a view of the rooms does: the proxy filters none of them before somebody asks.
    const ProxyLocalListModel *rooms = controller.uds->localProxyModel();
    QObject::connect(rooms, &QAbstractItemModel::layoutChanged, rooms, [rooms] { rooms->rowCount(); });
    QCoreApplication::processEvents();
}

QVector<Scenario::Step> Scenario::pass()
{
    ++m_pass;
    m_steps = {{QStringLiteral("start"), 0, 0, residentBytes(), 0}};
    step("load", &Scenario::load);
    step("filter by room", &Scenario::filterByRoom);
    step("filter by expression", &Scenario::filterByExpression);
    step("sort by text", &Scenario::sortByText);
    step("sort by expression", &Scenario::sortByExpression);
    step("edit notes", &Scenario::editNotes);
    step("edit rooms", &Scenario::editRooms);
    step("measure", &Scenario::measure);
    step("save", &Scenario::save);
    m_unitsOfARoom.reset();
    m_unitsByText.reset();
    m_diagnostic.clear();
    return m_steps;
}

void Scenario::step(const char *name, void (Scenario::*run)())
{
    m_steps.append({QString::fromLatin1(name), 0, 0, 0, double(m_units)});
    (this->*run)();
    m_steps.last().bytes = residentBytes();
}

void Scenario::turn(const std::function<void()> &act)
{
    QElapsedTimer timer;
    timer.start();
    act();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    const qint64 elapsed = timer.nsecsElapsed();
    Step &step = m_steps.last();
    step.nanoseconds += elapsed;
    step.longest = std::max(step.longest, elapsed);
}

void Scenario::notify(const std::function<void()> &send)
{
    std::thread(send).join();
}

Scenario::Proxy Scenario::proxy(const QByteArray &properties)
{
    QQmlComponent component(&m_engine);
    component.setData("import QtQml 2.2\nimport SortFilterProxyModel 0.1\nSortFilterProxyModel {" + properties
                          + "}",
                      QUrl());
    Proxy made(qobject_cast<QQmlSortFilterProxyModel *>(component.create()));
    require(made != nullptr, "a proxy cannot be made");
    made->setSourceModel(m_diagnostic.controller().uds);
    require(made->rowCount() >= 0, "a proxy has no rows");
    return made;
}

int Scenario::unitsIn(const QString &name) const
{
    const QList<UD *> &units = m_diagnostic.controller().uds->toList();
    return int(
        std::count_if(units.begin(), units.end(), [&name](const UD *unit) { return unit->local() == name; }));
}

bool Scenario::isSortedByText(const QQmlSortFilterProxyModel &proxy) const
{
    const int role = m_diagnostic.controller().uds->roleForName("observation");
    QString last;
    for (int row = 0; row < proxy.rowCount(); ++row) {
        const QString text = proxy.index(row, 0).data(role).toString();
        if (text < last)
            return false;
        last = text;
    }
    return proxy.rowCount() == m_units;
}

double Scenario::bareSort() const
{
    QVector<const UD *> units;
    for (const UD *unit : *m_diagnostic.controller().uds)
        units.append(unit);
    QElapsedTimer timer;
    timer.start();
    std::stable_sort(units.begin(), units.end(), [](const UD *left, const UD *right) {
        return left->observation() < right->observation();
    });
    const double elapsed = double(timer.nsecsElapsed());
    require(units.first()->observation() <= units.last()->observation(), "the bare sort went wrong");
    return elapsed;
}

void Scenario::load()
{
    HalvarController &controller = m_diagnostic.controller();
    turn([&] { controller.loadFile(m_file); });
    require(controller.uds->count() == m_units
                && controller.uds->last()->measures()->count() == BenchDiagnostic::measuresOfAUnit,
            "the diagnostic was not loaded");
    require(controller.uds->localProxyModel()->rowCount() == roomCount, "the diagnostic lacks rooms");
}

void Scenario::filterByRoom()
{
    turn([this] { m_unitsOfARoom = proxy("filterRoleName: 'local'; filterValue: ''"); });
    for (int number = 0; number < roomCount; number += roomCount / 10) {
        turn([&] { m_unitsOfARoom->setFilterValue(room(number)); });
        require(m_unitsOfARoom->rowCount() == unitsIn(room(number)), "the room has other units");
    }
}

void Scenario::filterByExpression()
{
    Proxy filtered;
    turn([&] { filtered = proxy("filterExpression: model.local === 'Salon 7' && model.zone !== 0"); });
    require(filtered->rowCount() == unitsIn(room(7)), "the expression found other units");
}

void Scenario::sortByText()
{
    turn([this] { m_unitsByText = proxy("sortRoleName: 'observation'; sortOrder: Qt.AscendingOrder"); });
    require(isSortedByText(*m_unitsByText), "the units are not sorted");
    m_steps.last().work = bareSort();
}

void Scenario::sortByExpression()
{
    Proxy sorted;
    turn([&] {
        sorted = proxy("sortExpression: modelLeft.observation < modelRight.observation;"
                       "sortOrder: Qt.AscendingOrder");
    });
    require(isSortedByText(*sorted), "the expression sorted otherwise");
    m_steps.last().work = bareSort();
}

void Scenario::editNotes()
{
    UDListModel &units = *m_diagnostic.controller().uds;
    const int note = units.roleForName("observation");
    const int statut = units.roleForName("statut");
    for (int i = 0; i < edits; ++i) {
        const QModelIndex unit = units.index(int(qint64(i) * m_units / edits));
        const QString text = QStringLiteral("%1 trous, passage %2").arg(i * 37 % 997).arg(m_pass);
        turn([&] { units.setData(unit, text, note); });
        turn([&] { units.setData(unit, UDStatutEnumClass::SKIPPED, statut); });
        require(unit.data(note) == text, "the note was not taken");
    }
    require(isSortedByText(*m_unitsByText), "the edited units are not sorted");
}

void Scenario::editRooms()
{
    UDListModel &units = *m_diagnostic.controller().uds;
    const int local = units.roleForName("local");
    for (int i = 0; i < roomEdits; ++i) {
        const int row = int(qint64(i) * m_units / roomEdits);
        turn([&] { units.setData(units.index(row), room(roomCount - 1 - i), local); });
    }
    require(m_unitsOfARoom->rowCount() == unitsIn(m_unitsOfARoom->filterValue().toString()),
            "the edited room has other units");
}

void Scenario::measure()
{
    HalvarController &controller = m_diagnostic.controller();
    const int measuresBefore = m_service->measures();
    const int stopsBefore = m_service->stops();
    for (int shot = 0; shot < shots; ++shot) {
        const int row = int(qint64(shot) * m_units / shots);
        MeasureListModel &measures = *controller.uds->at(row)->measures();
        turn([&] { controller.setUdIndexEdition(row); });
        turn([&] { controller.msp_event(MSPClient::SHUT_OPENED); });
        while (controller.acquisitionMode() != AcquisitionModeEnumClass::MEASURE)
            turn([] {});
        turn([&] { notify([this] { m_service->sendDetection(nap::DetectionResult()); }); });
        for (int i = 1; i <= resultsOfAShot; ++i)
            turn([&] { notify([this, i] { m_service->sendDetection(result(i)); }); });
        turn([&] { controller.msp_event(MSPClient::TRIG_OFF); }); // saves the diagnostic
        turn([&] { notify([this] { m_service->sendStatus(nap::NOT_STARTED); }); });
        require(controller.acquisitionMode() == AcquisitionModeEnumClass::NONE, "a shot did not end");
        require(measures.count() == BenchDiagnostic::measuresOfAUnit + 1
                    && measures.last()->idNAP() == m_service->measures()
                    && measures.last()->concentration() == resultsOfAShot - 3,
                "a shot is not in its unit");
    }
    require(m_service->measures() == measuresBefore + shots && m_service->stops() == stopsBefore + shots,
            "the service measured otherwise");
}

void Scenario::save()
{
    HalvarController &controller = m_diagnostic.controller();
    turn([&] { controller.saveFile(); });
    const QByteArray document = m_diagnostic.document();
    require(document.count("<Ud ") == m_units
                && document.count("<Mesure ") == m_units * BenchDiagnostic::measuresOfAUnit + shots
                && document.contains(" trous, passage " + QByteArray::number(m_pass)),
            "the file lacks something");
}
