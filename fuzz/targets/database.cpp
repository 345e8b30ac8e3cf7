// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Database::read. An input is the unit file and, behind a separator, the diagnostic one. The unit lists that
// were read can be saved, and come back the same.
#include "database.h"

#include <memory>

#include "harness.h"
#include "memoryhome.h"
#include "xmlmutator.h"

namespace {

constexpr char Separator[] = "<!--diagnostic-->";
constexpr char EmptyDiagnostic[] = "<database_diagnostic/>";
constexpr char UnitFile[] = "database/database_unit.xml";
constexpr char DiagnosticFile[] = "database/database_diagnostic.xml";

std::unique_ptr<fuzz::MemoryHome> home;

QStringList content(const DatabaseItemListModel *list)
{
    QStringList lines;
    for (const DatabaseItem *item : *list) {
        lines.append(item->type() + QLatin1Char('|') + QString::number(item->original())
                     + QString::number(item->activated()) + QLatin1Char('|') + item->title());
    }
    return lines;
}

QStringList unitContent(const Database &database)
{
    return content(database.m_LocalItemsListModel) + content(database.m_ElementItemsListModel)
        + content(database.m_SubstratItemsListModel) + content(database.m_RevetementItemsListModel);
}

} // namespace

const fuzz::XmlVocabulary &fuzz::vocabulary()
{
    static const XmlVocabulary words{
        {"database_unit", "database_diagnostic", "locaux", "elements", "substrats", "revetements",
         "non_visite", "non_mesure", "etat_usage", "etat_degrade", "item", "image", "title"},
        {"type", "original", "activated", "lang"},
        {"true", "false", "TRUE", "fr", "locaux", "cuisine.png", "file:cuisine.png", "Cuisine", "local"}};
    return words;
}

void fuzz::prepare()
{
    home = std::make_unique<MemoryHome>();
    home->write("database/locaux/cuisine.png", "x");
}

void fuzz::run(const QByteArray &input)
{
    const int separator = input.indexOf(Separator);
    home->write(UnitFile, separator < 0 ? input : input.left(separator));
    home->write(DiagnosticFile, separator < 0 ? EmptyDiagnostic : input.mid(separator));
    Database database;
    database.read(home->path());
    const QStringList expected = unitContent(database);
    FUZZ_VERIFY(database.write());

    home->write(DiagnosticFile, EmptyDiagnostic);
    const QByteArray unchanged = home->read(UnitFile);
    FUZZ_VERIFY(database.writeIfChanged());
    FUZZ_VERIFY(home->read(UnitFile) == unchanged);

    Database again;
    FUZZ_VERIFY(again.read(home->path()));
    const QStringList found = unitContent(again);
    FUZZ_VERIFY2(found == expected,
                 expected.join(QLatin1Char('\n')) + QStringLiteral("\nbecame\n")
                     + found.join(QLatin1Char('\n')));
    FUZZ_VERIFY(content(again.m_NonVisiteItemsListModel).isEmpty());

    // A picture that is not where its name points is dropped in reading, and a name that holds "file:" more
    // than once loses one of them; nothing else changes any more.
    FUZZ_VERIFY(again.write());
    constexpr int rounds = 4; // an input may have as many names in one as it has room for
    QByteArray before;
    for (int i = 0; i < rounds && before != home->read(UnitFile); ++i) {
        before = home->read(UnitFile);
        Database next;
        FUZZ_VERIFY(next.read(home->path()) && next.write());
        FUZZ_VERIFY(home->read(UnitFile) == before || home->read(UnitFile).size() < before.size());
    }
}
