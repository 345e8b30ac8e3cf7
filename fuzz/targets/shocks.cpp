// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// ShockListModel::read. The history that was read can be saved, and comes back with the same dates and times.
#include "shocklistmodel.h"

#include <memory>

#include "harness.h"
#include "memoryhome.h"
#include "xmlmutator.h"

namespace {

constexpr char File[] = "shock/shock.xml";

std::unique_ptr<fuzz::MemoryHome> home;

/// What the history is about: the clock's readings.
QStringList readings(const ShockListModel &shocks)
{
    QStringList lines;
    for (const Shock *shock : shocks)
        lines.append(shock->dateTime().toString(QStringLiteral("dd-MM-yyyy HH:mm:ss")));
    return lines;
}

} // namespace

const fuzz::XmlVocabulary &fuzz::vocabulary()
{
    static const XmlVocabulary words{
        {"history_shocks", "shock", "x"},
        {"a"},
        {"01-03-2026 14:05:09 CET", "14-07-2026 00:00:00 CEST", "29-03-2026 02:30:00 CET",
         "25-10-2026 02:30:00 CEST", "25-10-2026 02:30:00 CET", "01-01-2026 00:00:00 UTC",
         "01-01-2026 00:00:00 UTC+14:00", "31-12-9999 23:59:59 CET", "01-01-0001 00:00:00 CET",
         "01-01-0000 00:00:00 CET", "01-01-2026 00:00:00 XYZ", "01-01-2026 00:00:00",
         "29-02-2026 00:00:00 CET", "01-01-2026 24:00:00 CET", "1-1-2026 0:0:0 CET"}};
    return words;
}

void fuzz::prepare()
{
    qputenv("TZ", "Europe/Paris");
    home = std::make_unique<MemoryHome>();
}

void fuzz::run(const QByteArray &input)
{
    home->write(File, input);
    ShockListModel shocks(home->path());
    const QStringList expected = readings(shocks);
    shocks.write();

    ShockListModel again(home->path());
    const QStringList found = readings(again);
    FUZZ_VERIFY2(found == expected,
                 expected.join(QLatin1Char('\n')) + QStringLiteral("\nbecame\n")
                     + found.join(QLatin1Char('\n')));
    again.write();
    const QByteArray settled = home->read(File);
    ShockListModel third(home->path());
    third.write();
    FUZZ_VERIFY(home->read(File) == settled);
}
