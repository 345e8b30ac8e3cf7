// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The list of items beside a model written by hand for the same values, and Qt's general ones.
#include <QCoreApplication>
#include <QJSValue>
#include <QMetaProperty>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QStandardItemModel>

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchitem.h"
#include "goals.h"
#include "qqmlobjectlistmodel.h"

namespace {

using ItemModel = QQmlObjectListModel<BenchItem>;
constexpr int firstRole = RowModel::ObjectNameRole;
constexpr int lastRole = RowModel::DecisionRole;

/// What the benchmarks do to each of the three models.
struct Library
{
    static void prepare(std::vector<BenchItem *> &rows, int count)
    {
        for (int row = 0; row < count; ++row)
            rows.push_back(new BenchItem(BenchItem::Values(row)));
    }
    static void append(ItemModel &model, BenchItem *item) { model.append(item); }
    static void change(ItemModel &model, int row, int rank) { model.at(row)->setRank(rank); }
    static void removeFirst(ItemModel &model) { model.remove(0); }
    static void clear(ItemModel &model) { model.clear(); }
    using Model = ItemModel;
    using Row = BenchItem *;
};

struct HandWritten
{
    static void prepare(std::vector<BenchItem::Values> &rows, int count)
    {
        for (int row = 0; row < count; ++row)
            rows.emplace_back(row);
    }
    static void append(RowModel &model, const BenchItem::Values &values) { model.append(values); }
    static void change(RowModel &model, int row, int rank) { model.setRank(row, rank); }
    static void removeFirst(RowModel &model) { model.removeFirst(); }
    static void clear(RowModel &model) { model.clear(); }
    using Model = RowModel;
    using Row = BenchItem::Values;
};

struct Standard
{
    static void prepare(std::vector<QStandardItem *> &rows, int count)
    {
        for (int row = 0; row < count; ++row) {
            const BenchItem item{BenchItem::Values(row)};
            rows.push_back(new QStandardItem);
            for (int role = firstRole; role <= lastRole; ++role)
                rows.back()->setData(item.metaObject()->property(role - firstRole).read(&item), role);
        }
    }
    static void append(QStandardItemModel &model, QStandardItem *item) { model.appendRow(item); }
    static void change(QStandardItemModel &model, int row, int rank)
    {
        model.setData(model.index(row, 0), rank, RowModel::RankRole);
    }
    static void removeFirst(QStandardItemModel &model) { model.removeRow(0); }
    static void clear(QStandardItemModel &model) { model.removeRows(0, model.rowCount()); }
    using Model = QStandardItemModel;
    using Row = QStandardItem *;
};

/// QML's own list, whose rows are made from JavaScript objects.
struct QmlList
{
    using Row = QJSValue;
    struct Model
    {
        Model()
        {
            QQmlComponent component(&engine());
            component.setData("import QtQml.Models 2.2\nListModel {}", QUrl());
            list.reset(qobject_cast<QAbstractItemModel *>(component.create()));
            if (!list)
                qFatal("%s", qPrintable(component.errorString()));
            QQmlEngine::setObjectOwnership(list.get(), QQmlEngine::CppOwnership);
            self = engine().newQObject(list.get());
            append = self.property(QStringLiteral("append"));
        }
        operator QAbstractItemModel &() { return *list; }
        int rowCount() const { return list->rowCount(); }
        std::unique_ptr<QAbstractItemModel> list;
        QJSValue self;
        QJSValue append;
    };

    static QQmlEngine &engine()
    {
        static QQmlEngine engine;
        return engine;
    }
    static void prepare(std::vector<QJSValue> &rows, int count)
    {
        for (int row = 0; row < count; ++row) {
            const BenchItem item{BenchItem::Values(row)};
            rows.push_back(engine().newObject());
            for (int i = 0; i < item.metaObject()->propertyCount(); ++i) {
                const QMetaProperty property = item.metaObject()->property(i);
                const QVariant value = property.read(&item);
                rows.back().setProperty(QString::fromLatin1(property.name()),
                                        value.userType() == QMetaType::QString ? QJSValue(value.toString())
                                            : value.userType() == QMetaType::Bool
                                            ? QJSValue(value.toBool())
                                            : QJSValue(value.toDouble()));
            }
        }
    }
    static void append(Model &model, const QJSValue &row)
    {
        model.append.callWithInstance(model.self, {row});
    }
    static void change(Model &model, int row, int rank)
    {
        static const QString name = QStringLiteral("rank");
        QMetaObject::invokeMethod(model.list.get(), "setProperty", Q_ARG(int, row), Q_ARG(QString, name),
                                  Q_ARG(QVariant, rank));
    }
};

void deleteWhatIsDue()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

template <class Kind>
std::unique_ptr<typename Kind::Model> filled(int rows)
{
    auto model = std::make_unique<typename Kind::Model>();
    std::vector<typename Kind::Row> prepared;
    Kind::prepare(prepared, rows);
    for (const auto &row : prepared)
        Kind::append(*model, row);
    return model;
}

/// A filled model that the benchmarks which leave its rows alone have in common.
template <class Kind>
typename Kind::Model &shared(int rows)
{
    static std::map<int, std::unique_ptr<typename Kind::Model>> models;
    auto &model = models[rows];
    if (!model)
        model = filled<Kind>(rows);
    return *model;
}

template <class Kind>
void append(benchmark::State &state)
{
    const int rows = int(state.range(0));
    filled<Kind>(rows); // a repetition of the largest is one iteration: not a cold one
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<typename Kind::Row> prepared;
        Kind::prepare(prepared, rows);
        auto model = std::make_unique<typename Kind::Model>();
        state.ResumeTiming();
        for (const auto &row : prepared)
            Kind::append(*model, row);
        state.PauseTiming();
        model.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * rows);
}

template <class Kind>
void readAll(benchmark::State &state)
{
    const auto &model = shared<Kind>(int(state.range(0)));
    const int rows = model.rowCount();
    for (auto _ : state) {
        for (int row = 0; row < rows; ++row) {
            const QModelIndex index = model.index(row, 0);
            for (int role = firstRole; role <= lastRole; ++role)
                benchmark::DoNotOptimize(model.data(index, role));
        }
    }
    state.SetItemsProcessed(state.iterations() * rows * (lastRole - firstRole + 1));
}

template <class Kind>
void change(benchmark::State &state, double place)
{
    auto &model = shared<Kind>(int(state.range(0)));
    const int row = int(place * (model.rowCount() - 1));
    qint64 received = 0;
    QAbstractItemModel &sender = model;
    const auto connection =
        QObject::connect(&sender, &QAbstractItemModel::dataChanged, &sender,
                         [&received](const QModelIndex &from) { received += from.row() + 1; });
    const qint64 before = received;
    static int rank = 0;
    for (auto _ : state)
        Kind::change(model, row, ++rank);
    QObject::disconnect(connection);
    if (received - before != qint64(state.iterations()) * (row + 1))
        state.SkipWithError("a change was not reported, or for another row");
    state.SetItemsProcessed(state.iterations());
}

template <class Kind>
void removeFirst(benchmark::State &state)
{
    const int rows = int(state.range(0));
    const int removed = qMin(rows, 1000);
    for (auto _ : state) {
        state.PauseTiming();
        auto model = filled<Kind>(rows);
        state.ResumeTiming();
        for (int i = 0; i < removed; ++i)
            Kind::removeFirst(*model);
        state.PauseTiming();
        deleteWhatIsDue();
        model.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * removed);
}

template <class Kind>
void clear(benchmark::State &state)
{
    const int rows = int(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto model = filled<Kind>(rows);
        state.ResumeTiming();
        Kind::clear(*model);
        state.PauseTiming();
        deleteWhatIsDue();
        model.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * rows);
}

/// The least that telling of a change can cost: one signal, one receiver.
class Bell : public QObject
{
    Q_OBJECT

public:
    void ring(int row) { emit rung(row); }

signals:
    void rung(int row);
};

void bareSignal(benchmark::State &state)
{
    Bell bell;
    qint64 received = 0;
    QObject::connect(&bell, &Bell::rung, &bell, [&received](int row) { received += row; });
    for (auto _ : state)
        bell.ring(1);
    if (received != qint64(state.iterations()))
        state.SkipWithError("a signal was lost");
    state.SetItemsProcessed(state.iterations());
}

const std::vector<int> sizes{100, 1000, 10000, 100000};
const std::vector<std::pair<const char *, double>> places{{"first", 0.0}, {"middle", 0.5}, {"last", 1.0}};

// Rows whose every iteration builds the model anew get as many iterations as make up the time.
void registerEach(const std::string &what, const std::string &variant,
                  const std::function<void(benchmark::State &)> &run, bool rebuilds)
{
    for (int size : sizes) {
        auto *benchmark = benchmark::RegisterBenchmark((what + ':' + variant).c_str(), run)->Arg(size);
        if (rebuilds)
            benchmark->Iterations(qMax(1, 20000 / size));
    }
}

template <class Kind>
void registerChangeAndAppend(const std::string &variant)
{
    registerEach("list, append a row", variant, append<Kind>, true);
    for (const auto &[name, place] : places) {
        const double where = place;
        registerEach(
            std::string("list, change in the ") + name + " row", variant,
            [where](benchmark::State &state) { change<Kind>(state, where); }, false);
    }
}

template <class Kind>
void registerModel(const std::string &variant)
{
    registerChangeAndAppend<Kind>(variant);
    registerEach("list, read a role", variant, readAll<Kind>, false);
    registerEach("list, remove the first row", variant, removeFirst<Kind>, true);
    registerEach("list, clear, a row", variant, clear<Kind>, true);
}

const bool registered = [] {
    qRegisterMetaType<BenchItem::Decision>();
    registerModel<Library>("library");
    registerModel<HandWritten>("hand-written");
    registerModel<Standard>("QStandardItemModel");
    registerChangeAndAppend<QmlList>("QML ListModel");
    for (const auto &[name, place] : places)
        registerEach(std::string("list, change in the ") + name + " row", "bare signal", bareSignal, false);

    goal("list, append a row", "hand-written", 6.0);
    goalGrowth("list, append a row", 1.3);
    goal("list, read a role", "hand-written", 6.5);
    goalGrowth("list, read a role", 1.3);
    for (const char *name : {"first", "middle", "last"}) {
        const std::string what = std::string("list, change in the ") + name + " row";
        goal(what, "hand-written", 1.8);
        goal(what, "QStandardItemModel", 1.15);
        goalGrowth(what, 1.3);
    }
    goalFaster("list, remove the first row", "QStandardItemModel").fromSize(10000);
    return true;
}();

} // namespace

#include "list.moc"
