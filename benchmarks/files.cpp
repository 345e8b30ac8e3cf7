// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Saving and loading a diagnostic beside the bare XML writer and reader on the same document.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "config.h"
#include "database.h"
#include "goals.h"
#include "halvarcontroller.h"
#include "measurelistmodel.h"
#include "udlistmodel.h"

namespace {

constexpr int measuresOfAUnit = 5;

/// A controller with a home of its own. Constructing one beeps and runs shell commands.
class Bench
{
public:
    static Bench &instance()
    {
        static Bench bench;
        return bench;
    }

    /// The controller holding a diagnostic of this many units, saved in path().
    HalvarController &withUnits(int units)
    {
        if (m_controller->uds->count() == units)
            return *m_controller;
        clear();
        m_controller->setFileName(QStringLiteral("benchmark"));
        for (int i = 0; i < units; ++i) {
            auto *unit = new UD(m_controller->uds);
            unit->setIdentifier(i + 1);
            unit->setLocal(m_titles.at(i % m_titles.size()));
            unit->setElement(QStringLiteral("Plinthe"));
            unit->setSubstrat(QStringLiteral("Bois"));
            unit->setRevetement(QStringLiteral("Peinture"));
            unit->setObservation(QStringLiteral("Traces sur le mur, côté fenêtre"));
            for (int m = 0; m < measuresOfAUnit; ++m) {
                auto *measure = new Measure(unit->measures());
                measure->setIdNAP(i * measuresOfAUnit + m);
                measure->setConcentration(0.25 * (m + 1));
                measure->setSigma(0.125);
                unit->measures()->append(measure);
            }
            m_controller->uds->append(unit);
        }
        m_controller->saveFile();
        return *m_controller;
    }
    void clear()
    {
        m_controller->initFile();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
    QString path() const { return m_home.filePath(QStringLiteral("files/benchmark.xml")); }
    QByteArray document() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    Bench()
    {
        QDir home(m_home.path());
        for (const char *directory : {"config", "database", "files", "shock"})
            home.mkpath(QLatin1String(directory));
        // The lists hold every title beforehand, so that loading adds none, as in daily use.
        for (int i = 0; i < 30; ++i) {
            m_titles.append(QStringLiteral("Salon %1").arg(i));
            m_database.m_LocalItemsListModel->add(m_titles.last(), QString());
        }
        m_database.m_ElementItemsListModel->add(QStringLiteral("Plinthe"), QString());
        m_database.m_SubstratItemsListModel->add(QStringLiteral("Bois"), QString());
        m_database.m_RevetementItemsListModel->add(QStringLiteral("Peinture"), QString());
        m_database.read(m_home.path() + QLatin1Char('/'));
        m_controller =
            std::make_unique<HalvarController>(m_home.path() + QLatin1Char('/'), &m_config, &m_database);
    }

    QTemporaryDir m_home;
    Config m_config{nullptr};
    Database m_database{nullptr};
    std::unique_ptr<HalvarController> m_controller;
    QStringList m_titles;
};

/// What the XML reader finds in a document, to be written again by the bare writer.
struct Token
{
    QXmlStreamReader::TokenType type;
    QString text;
    QXmlStreamAttributes attributes;
};

std::vector<Token> tokensOf(const QByteArray &document)
{
    std::vector<Token> tokens;
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        reader.readNext();
        // An empty text is written as one: <Sigma></Sigma>.
        if (reader.isEndElement() && tokens.back().type == QXmlStreamReader::StartElement)
            tokens.push_back({QXmlStreamReader::Characters, QString(), {}});
        if (reader.isStartElement())
            tokens.push_back({reader.tokenType(), reader.name().toString(), reader.attributes()});
        else if (reader.isEndElement() || (reader.isCharacters() && !reader.isWhitespace()))
            tokens.push_back({reader.tokenType(), reader.text().toString(), {}});
    }
    return tokens;
}

/// A document like the saved one, whose units are all the first one: reading the text of each from memory
/// of its own would be measured instead of the writer.
struct Outline
{
    explicit Outline(const QByteArray &document, int unitCount)
        : units(unitCount)
        , size(document.size())
    {
        const std::vector<Token> all = tokensOf(document);
        const auto isUnit = [](const Token &token) {
            return token.type == QXmlStreamReader::StartElement && token.text == QLatin1String("Ud");
        };
        const auto first = std::find_if(all.begin(), all.end(), isUnit);
        const auto second = std::find_if(first + 1, all.end(), isUnit);
        head.assign(all.begin(), first);
        unit.assign(first, second);
        tail.assign(first + (second - first) * unitCount, all.end());
    }
    std::vector<Token> head;
    std::vector<Token> unit;
    std::vector<Token> tail;
    int units;
    int size;
};

void write(QXmlStreamWriter &writer, const std::vector<Token> &tokens)
{
    for (const Token &token : tokens) {
        if (token.type == QXmlStreamReader::StartElement) {
            writer.writeStartElement(token.text);
            writer.writeAttributes(token.attributes);
        } else if (token.type == QXmlStreamReader::EndElement) {
            writer.writeEndElement();
        } else {
            writer.writeCharacters(token.text);
        }
    }
}

QByteArray written(const Outline &outline)
{
    QByteArray document;
    document.reserve(outline.size);
    QXmlStreamWriter writer(&document);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    write(writer, outline.head);
    for (int i = 0; i < outline.units; ++i)
        write(writer, outline.unit);
    write(writer, outline.tail);
    writer.writeEndDocument();
    return document;
}

bool replaceBarely(const QString &path, const QByteArray &document)
{
    const QByteArray target = QFile::encodeName(path);
    const QByteArray temporary = target + ".bare";
    const int file = ::open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const bool done = file >= 0
        && ::write(file, document.constData(), size_t(document.size())) == document.size()
        && ::fsync(file) == 0;
    ::close(file);
    return done && ::rename(temporary.constData(), target.constData()) == 0;
}

void save(benchmark::State &state)
{
    HalvarController &controller = Bench::instance().withUnits(int(state.range(0)));
    QFile::remove(Bench::instance().path());
    for (auto _ : state)
        controller.saveFile();
    if (Bench::instance().document().count("<Mesure") < state.range(0) * measuresOfAUnit)
        state.SkipWithError("not saved");
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void writeBarely(benchmark::State &state)
{
    Bench::instance().withUnits(int(state.range(0)));
    const QByteArray document = Bench::instance().document();
    const Outline outline(document, int(state.range(0)));
    if (qAbs(written(outline).size() - document.size()) > document.size() / 50)
        state.SkipWithError("not the same document");
    const QString path = Bench::instance().path() + QStringLiteral(".limit");
    for (auto _ : state) {
        if (!replaceBarely(path, written(outline)))
            state.SkipWithError("not written");
    }
    QFile::remove(path);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void load(benchmark::State &state)
{
    HalvarController &controller = Bench::instance().withUnits(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        Bench::instance().clear();
        state.ResumeTiming();
        controller.loadFile(Bench::instance().path());
    }
    if (controller.uds->count() != state.range(0)
        || controller.uds->last()->measures()->count() != measuresOfAUnit)
        state.SkipWithError("not loaded");
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <bool createItems>
void readBarely(benchmark::State &state)
{
    const int units = int(state.range(0));
    Bench::instance().withUnits(units);
    for (auto _ : state) {
        QFile file(Bench::instance().path());
        if (!file.open(QIODevice::ReadOnly))
            state.SkipWithError("no file");
        QXmlStreamReader reader(&file);
        while (!reader.atEnd())
            benchmark::DoNotOptimize(reader.readNext());
        if constexpr (createItems) {
            UDListModel list(nullptr);
            for (int i = 0; i < units; ++i) {
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
    state.SetItemsProcessed(state.iterations() * units);
}

void registerEach(const char *name, void (*run)(benchmark::State &))
{
    for (int size : {10, 100, 1000, 10000})
        benchmark::RegisterBenchmark(name, run)->Arg(size);
}

const bool registered = [] {
    if (qgetenv("HALVAR_INSTRUMENT") != "1") {
        std::fputs("The diagnostic's benchmarks need a private instrument: start them with benchmarks/run.\n",
                   stderr);
        return false;
    }
    registerEach("file, save a unit of 5 measures:library", save);
    registerEach("file, save a unit of 5 measures:XML writer, fsync, rename", writeBarely);
    registerEach("file, load a unit of 5 measures:library", load);
    registerEach("file, load a unit of 5 measures:XML reader", readBarely<false>);
    registerEach("file, load a unit of 5 measures:XML reader and items", readBarely<true>);

    goal("file, save a unit of 5 measures", "XML writer, fsync, rename", 1.2).fromSize(100);
    goalGrowth("file, save a unit of 5 measures", 1.1).fromSize(1000);
    goal("file, load a unit of 5 measures", "XML reader", 2.0).fromSize(100);
    goalGrowth("file, load a unit of 5 measures", 1.1).fromSize(1000);
    return true;
}();

} // namespace
