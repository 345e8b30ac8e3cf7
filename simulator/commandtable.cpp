// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "commandtable.h"

#include <QDate>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>
#include <QVector>

#include <cmath>
#include <limits>

#include "names.h"

namespace simulator::commandtable {

namespace {

enum Type {
    Number,
    Integer,
    Text,
    Flag,
    Date,
    DateOrNever,
    Name, ///< one of the names
    NameOrNumber, ///< one of the names, or any number that fits
    CommandList, ///< "all", or a list of MSP commands
    NumberOrText
};

struct Member
{
    QString name;
    Type type;
    double least = 0;
    double most = 0;
    const Names *names = nullptr;
    bool required = false;
};

struct Command
{
    bool setting = false;
    QVector<Member> members;
};

constexpr double LargestInt = std::numeric_limits<int>::max();
constexpr double SmallestInt = std::numeric_limits<int>::min();
constexpr double LargestShort = std::numeric_limits<short>::max();
constexpr double SmallestShort = std::numeric_limits<short>::min();

const QMap<QString, Command> &commands()
{
    const auto text = [](const char *latin1) { return QString::fromLatin1(latin1); };
    const auto flag = [&](const char *name) { return Member{text(name), Flag}; };
    static const QMap<QString, Command> table = {
        {text("press"), {}},
        {text("release"), {}},
        {text("mspDie"), {}},
        {text("mspReturn"), {}},
        {text("napDie"), {}},
        {text("napReturn"), {}},
        {text("status"), {}},
        {text("subscribe"), {}},
        {text("quit"), {}},
        {text("sample"),
         {true,
          {{text("concentration"), Number, 0, 100},
           {text("substrate"), Text},
           {text("distance"), Number, 0, 100}}}},
        {text("source"),
         {true,
          {{text("activity"), Number, 0.001, 1e6},
           {text("date"), Date},
           {text("halfLife"), Number, 1, 1e6}}}},
        {text("detector"),
         {true,
          {{text("sigma"), Number, 0, 100},
           {text("threshold"), Number, 0, 100},
           {text("k"), Number, 0, 10},
           {text("timeLimit"), Number, 0.5, 600},
           {text("accuracyTime"), Number, 0.5, 600},
           {text("calibrationTime"), Number, 0.5, 600}}}},
        {text("reference"), {true, {{text("value"), Number, 0, 100}, {text("precision"), Number, 0, 100}}}},
        {text("today"), {true, {{text("date"), Date, 0, 0, nullptr, true}}}},
        {text("seed"), {true, {{text("value"), Integer, 0, LargestInt, nullptr, true}}}},
        {text("speed"), {true, {{text("value"), Number, 0.01, 500, nullptr, true}}}},
        {text("battery"), {true, {{text("value"), NumberOrText, 0, 1e9, nullptr, true}}}},
        {text("conditions"),
         {true,
          {{text("temperature"), Number, -273, 1000},
           {text("voltage"), Number, 0, 1e5},
           {text("temperatureDrift"), Number, -1e4, 1e4},
           {text("voltageDrift"), Number, -1e5, 1e5}}}},
        {text("calibration"),
         {true, {{text("outcome"), Name, 0, 0, &names::calibrationOutcome()}, {text("date"), DateOrNever}}}},
        {text("accuracy"), {true, {{text("outcome"), Name, 0, 0, &names::accuracyOutcome(), true}}}},
        {text("mspEvent"),
         {false,
          {{text("event"), NameOrNumber, SmallestInt, LargestInt, &names::mspEvent(), true},
           {text("code"), Integer, SmallestShort, LargestShort}}}},
        {text("mspInfo"),
         {true,
          {{text("state"), NameOrNumber, SmallestInt, LargestInt, &names::mspState()},
           {text("fwVersion"), Text},
           {text("MSPVersion"), Text},
           flag("shock"),
           flag("shutter"),
           flag("shockDetector"),
           flag("DAC"),
           flag("highVoltage"),
           flag("shutterPosition"),
           flag("abort"),
           flag("probe")}}},
        {text("mspRefuse"), {true, {{text("commands"), CommandList, 0, 0, nullptr, true}}}},
        {text("mspShutter"), {true, {{text("failures"), Integer, 0, 1000, nullptr, true}}}},
        {text("napError"),
         {false, {{text("error"), NameOrNumber, SmallestInt, LargestInt, &names::acqError(), true}}}},
        {text("napStatus"),
         {false, {{text("status"), NameOrNumber, SmallestInt, LargestInt, &names::acqStatus(), true}}}},
        {text("napSilent"), {true, {{text("on"), Flag, 0, 0, nullptr, true}}}},
        {text("napDelay"), {true, {{text("ms"), Integer, 0, 60000, nullptr, true}}}},
    };
    return table;
}

bool isInteger(const QJsonValue &value, double least, double most)
{
    return value.isDouble() && std::trunc(value.toDouble()) == value.toDouble() && value.toDouble() >= least
        && value.toDouble() <= most;
}

bool isCommandList(const QJsonValue &value)
{
    if (value.isString())
        return value.toString() == QLatin1String("all");
    if (!value.isArray())
        return false;
    for (const QJsonValue &command : value.toArray()) {
        if (!names::mspCommand().value(command.toString()))
            return false;
    }
    return true;
}

QString range(const QString &what, double least, double most)
{
    return QStringLiteral("%1 from %2 to %3")
        .arg(what, QString::number(least, 'g', 10), QString::number(most, 'g', 10));
}

/// What \p member should hold, when \p value is not that; else empty.
QString wrong(const Member &member, const QJsonValue &value)
{
    switch (member.type) {
    case Number:
        if (value.isDouble() && value.toDouble() >= member.least && value.toDouble() <= member.most)
            return {};
        return range(QStringLiteral("a number"), member.least, member.most);
    case Integer:
        if (isInteger(value, member.least, member.most))
            return {};
        return range(QStringLiteral("an integer"), member.least, member.most);
    case Text:
        return value.isString() ? QString() : QStringLiteral("a text");
    case Flag:
        return value.isBool() ? QString() : QStringLiteral("true or false");
    case Date:
        return date(value).isValid() ? QString() : QStringLiteral("a date \"yyyy-MM-dd\"");
    case DateOrNever:
        if (date(value).isValid() || value.toString() == QLatin1String("never"))
            return {};
        return QStringLiteral("a date \"yyyy-MM-dd\" or \"never\"");
    case Name:
        if (member.names->value(value.toString()))
            return {};
        return QStringLiteral("one of %1").arg(member.names->list());
    case NameOrNumber:
        if (member.names->value(value.toString()) || isInteger(value, member.least, member.most))
            return {};
        return QStringLiteral("one of %1, or an integer").arg(member.names->list());
    case CommandList:
        if (isCommandList(value))
            return {};
        return QStringLiteral("\"all\" or a list of %1").arg(names::mspCommand().list());
    case NumberOrText:
        if (value.isString() || isInteger(value, member.least, member.most))
            return {};
        return range(QStringLiteral("a text or an integer"), member.least, member.most);
    }
    return {};
}

} // namespace

bool exists(const QString &command)
{
    return commands().contains(command);
}

bool isSetting(const QString &command)
{
    return commands().value(command).setting;
}

QString onlyMember(const QString &command)
{
    const QVector<Member> members = commands().value(command).members;
    return members.size() == 1 ? members.first().name : QString();
}

Complaint check(const QString &command, const QJsonObject &members)
{
    const auto found = commands().find(command);
    if (found == commands().end())
        return {QString(), QStringLiteral("no such command")};
    QJsonObject rest = members;
    rest.remove(QStringLiteral("command"));
    rest.remove(QStringLiteral("tag"));
    for (const Member &member : found->members) {
        const QJsonValue value = rest.take(member.name);
        if (value.isUndefined() && !member.required)
            continue;
        const QString expectation = wrong(member, value);
        if (!expectation.isEmpty())
            return {member.name, expected(expectation, value)};
    }
    if (rest.isEmpty())
        return {};
    QStringList known;
    for (const Member &member : found->members)
        known.append(member.name);
    return {rest.keys().first(),
            known.isEmpty()
                ? QStringLiteral("unknown: the command takes no members")
                : QStringLiteral("unknown: expected one of %1").arg(known.join(QStringLiteral(", ")))};
}

QString expected(const QString &what, const QJsonValue &found)
{
    if (found.isUndefined())
        return QStringLiteral("missing: expected %1").arg(what);
    constexpr int longest = 40;
    // A value by itself is no JSON document; in a list it is.
    QString text = QString::fromUtf8(QJsonDocument(QJsonArray{found}).toJson(QJsonDocument::Compact));
    text = text.mid(1, text.size() - 2);
    if (text.size() > longest)
        text = text.left(longest) + QStringLiteral("...");
    return QStringLiteral("expected %1, found %2").arg(what, text);
}

QDate date(const QJsonValue &value)
{
    return QDate::fromString(value.toString(), QStringLiteral("yyyy-MM-dd"));
}

} // namespace simulator::commandtable
