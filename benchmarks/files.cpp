// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Saving and loading a diagnostic beside the bare XML writer and reader on the same document. Each does its
// work once before it is timed: a repetition of the larger ones is a single iteration, which would otherwise
// be charged with the caches that the row before it has left cold.
#include <QCoreApplication>
#include <QFile>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>

#include <sys/inotify.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "benchdiagnostic.h"
#include "filelimits.h"
#include "goals.h"
#include "measurelistmodel.h"
#include "udlistmodel.h"

namespace {

constexpr int measuresOfAUnit = BenchDiagnostic::measuresOfAUnit;

int unitsOf(const benchmark::State &state)
{
    return int(state.range(0));
}

void save(benchmark::State &state)
{
    BenchDiagnostic &diagnostic = BenchDiagnostic::shared();
    HalvarController &controller = diagnostic.withUnits(unitsOf(state));
    QFile::remove(diagnostic.path());
    controller.saveFile();
    for (auto _ : state)
        controller.saveFile();
    if (diagnostic.document().count("<Mesure ") != unitsOf(state) * measuresOfAUnit)
        state.SkipWithError("not saved");
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void writeLimit(benchmark::State &state)
{
    BenchDiagnostic &diagnostic = BenchDiagnostic::shared();
    diagnostic.withUnits(unitsOf(state));
    const QByteArray document = diagnostic.document();
    const Outline outline(document, unitsOf(state));
    if (qAbs(writtenBarely(outline).size() - document.size()) > document.size() / 50)
        state.SkipWithError("not the same document");
    const QString path = diagnostic.path() + QStringLiteral(".limit");
    replaceBarely(path, writtenBarely(outline));
    for (auto _ : state) {
        if (!replaceBarely(path, writtenBarely(outline)))
            state.SkipWithError("not written");
    }
    QFile::remove(path);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void load(benchmark::State &state)
{
    BenchDiagnostic &diagnostic = BenchDiagnostic::shared();
    HalvarController &controller = diagnostic.withUnits(unitsOf(state));
    diagnostic.clear();
    controller.loadFile(diagnostic.path());
    for (auto _ : state) {
        state.PauseTiming();
        diagnostic.clear();
        state.ResumeTiming();
        controller.loadFile(diagnostic.path());
    }
    if (controller.uds->count() != unitsOf(state)
        || controller.uds->last()->measures()->count() != measuresOfAUnit)
        state.SkipWithError("not loaded");
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <bool createItems>
void readLimit(benchmark::State &state)
{
    BenchDiagnostic &diagnostic = BenchDiagnostic::shared();
    diagnostic.withUnits(unitsOf(state));
    readBarely(diagnostic.path());
    for (auto _ : state) {
        if (!readBarely(diagnostic.path()))
            state.SkipWithError("not read");
        if constexpr (createItems) {
            UDListModel list(nullptr);
            for (int i = 0; i < unitsOf(state); ++i) {
                auto *unit = new UD(&list);
                for (int m = 0; m < measuresOfAUnit; ++m)
                    unit->measures()->append(new Measure(unit->measures()));
                list.append(unit);
            }
            state.PauseTiming();
            list.clear();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            state.ResumeTiming();
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// Counts how often a file is put in its place by a rename.
class Replacements
{
public:
    Replacements(const QString &directory, const char *name)
        : m_name(name)
        , m_events(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        m_watching =
            ::inotify_add_watch(m_events, QFile::encodeName(directory).constData(), IN_MOVED_TO) >= 0;
    }
    ~Replacements() { ::close(m_events); }
    bool isWatching() const { return m_watching; }
    /// Since the last call.
    int take()
    {
        int count = 0;
        alignas(inotify_event) std::array<char, 4096> buffer;
        ssize_t size = 0;
        while ((size = ::read(m_events, buffer.data(), buffer.size())) > 0) {
            for (ssize_t offset = 0; offset < size;) {
                const auto *event = reinterpret_cast<const inotify_event *>(buffer.data() + offset);
                count += std::strcmp(event->name, m_name) == 0 ? 1 : 0;
                offset += ssize_t(sizeof *event + event->len);
            }
        }
        return count;
    }

private:
    Q_DISABLE_COPY(Replacements)
    const char *m_name;
    int m_events;
    bool m_watching;
};

// The time of as many writes as a load of this size makes.
void writeDatabase(benchmark::State &state)
{
    BenchDiagnostic &diagnostic = BenchDiagnostic::shared();
    HalvarController &controller = diagnostic.withUnits(unitsOf(state));
    Replacements replacements(diagnostic.databaseDirectory(), "database_unit.xml");
    if (!replacements.isWatching())
        state.SkipWithError("no directory");
    int writes = 0;
    for (auto _ : state) {
        diagnostic.clear();
        replacements.take();
        controller.loadFile(diagnostic.path());
        writes = replacements.take();
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < writes; ++i) {
            if (!diagnostic.database().write())
                state.SkipWithError("not written");
        }
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    if (writes == 0)
        state.SkipWithError("the load does not write the database");
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const bool registered = [] {
    if (qgetenv("HALVAR_INSTRUMENT") != "1") {
        std::fputs("The diagnostic's benchmarks need a private instrument: start them with benchmarks/run.\n",
                   stderr);
        return false;
    }
    const char *const database = "file, database writes of a loaded unit";
    for (int size : {100, 1000, 10000}) {
        benchmark::RegisterBenchmark("file, save a unit of 5 measures:library", save)->Arg(size);
        benchmark::RegisterBenchmark("file, save a unit of 5 measures:XML writer, fsync, rename", writeLimit)
            ->Arg(size);
        benchmark::RegisterBenchmark("file, load a unit of 5 measures:library", load)->Arg(size);
        benchmark::RegisterBenchmark("file, load a unit of 5 measures:XML reader", readLimit<false>)
            ->Arg(size);
        benchmark::RegisterBenchmark("file, load a unit of 5 measures:XML reader and items", readLimit<true>)
            ->Arg(size);
        benchmark::RegisterBenchmark((std::string(database) + ":library").c_str(), writeDatabase)
            ->Arg(size)
            ->UseManualTime()
            ->Iterations(3); // the time that counts is a small part of each
        benchmark::RegisterBenchmark((std::string(database) + ":XML reader").c_str(), readLimit<false>)
            ->Arg(size);
    }

    goal("file, save a unit of 5 measures", "XML writer, fsync, rename", 1.2);
    goalGrowth("file, save a unit of 5 measures", 1.1).fromSize(1000);
    // A load makes the items: twice the tokens' time with them, and 1.6 times what has made them too.
    goal("file, load a unit of 5 measures", "XML reader", 2.0);
    goal("file, load a unit of 5 measures", "XML reader and items", 1.6);
    goalGrowth("file, load a unit of 5 measures", 1.1).fromSize(1000);
    goal(database, "XML reader", 0.25);
    return true;
}();

} // namespace
