// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The same document through pugixml, which keeps it as a tree; only built where pugixml is installed.
#include <QFile>

#include <iterator>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include "benchdiagnostic.h"
#include "filelimits.h"

namespace {

/// A token as pugixml takes it: in UTF-8.
struct Utf8Token
{
    explicit Utf8Token(const Token &token)
        : type(token.type)
        , text(token.text.toStdString())
    {
        for (const QXmlStreamAttribute &attribute : token.attributes)
            attributes.emplace_back(attribute.name().toString().toStdString(),
                                    attribute.value().toString().toStdString());
    }
    QXmlStreamReader::TokenType type;
    std::string text;
    std::vector<std::pair<std::string, std::string>> attributes;
};

struct Utf8Outline
{
    explicit Utf8Outline(const Outline &outline)
        : head(outline.head.begin(), outline.head.end())
        , unit(outline.unit.begin(), outline.unit.end())
        , tail(outline.tail.begin(), outline.tail.end())
        , units(outline.units)
        , size(outline.size)
    { }
    std::vector<Utf8Token> head;
    std::vector<Utf8Token> unit;
    std::vector<Utf8Token> tail;
    int units;
    int size;
};

void append(pugi::xml_node &node, const std::vector<Utf8Token> &tokens)
{
    for (const Utf8Token &token : tokens) {
        if (token.type == QXmlStreamReader::StartElement) {
            node = node.append_child(token.text.c_str());
            for (const auto &[name, value] : token.attributes)
                node.append_attribute(name.c_str()) = value.c_str();
        } else if (token.type == QXmlStreamReader::EndElement) {
            node = node.parent();
        } else if (!token.text.empty()) {
            node.append_child(pugi::node_pcdata).set_value(token.text.c_str());
        }
    }
}

struct ByteWriter : pugi::xml_writer
{
    void write(const void *data, std::size_t size) override
    {
        bytes.append(static_cast<const char *>(data), int(size));
    }
    QByteArray bytes;
};

QByteArray written(const Utf8Outline &outline)
{
    pugi::xml_document document;
    pugi::xml_node node = document;
    append(node, outline.head);
    for (int i = 0; i < outline.units; ++i)
        append(node, outline.unit);
    append(node, outline.tail);
    ByteWriter writer;
    writer.bytes.reserve(outline.size);
    document.save(writer, "    ", pugi::format_default, pugi::encoding_utf8);
    return writer.bytes;
}

void save(benchmark::State &state)
{
    const int units = int(state.range(0));
    BenchDiagnostic &diagnostic = BenchDiagnostic::shared();
    diagnostic.withUnits(units);
    const Utf8Outline outline(Outline(diagnostic.document(), units));
    if (written(outline).count("<Mesure ") != units * BenchDiagnostic::measuresOfAUnit)
        state.SkipWithError("not the same document");
    const QString path = diagnostic.path() + QStringLiteral(".peer");
    for (auto _ : state) {
        if (!replaceBarely(path, written(outline)))
            state.SkipWithError("not written");
    }
    QFile::remove(path);
    state.SetItemsProcessed(state.iterations() * units);
}

void load(benchmark::State &state)
{
    const int units = int(state.range(0));
    BenchDiagnostic &diagnostic = BenchDiagnostic::shared();
    diagnostic.withUnits(units);
    const QByteArray path = QFile::encodeName(diagnostic.path());
    for (auto _ : state) {
        pugi::xml_document document;
        if (!document.load_file(path.constData()))
            state.SkipWithError("not read");
        state.PauseTiming();
        const auto read = document.child("Dossier").child("Uds").children("Ud");
        if (std::distance(read.begin(), read.end()) != units)
            state.SkipWithError("not the same document");
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * units);
}

const bool registered = [] {
    if (qgetenv("HALVAR_INSTRUMENT") != "1")
        return false;
    for (int size : {100, 1000, 10000}) {
        benchmark::RegisterBenchmark("file, save a unit of 5 measures:pugixml", save)->Arg(size);
        benchmark::RegisterBenchmark("file, load a unit of 5 measures:pugixml", load)->Arg(size);
    }
    return true;
}();

} // namespace
