// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "scenario.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include "failure.h"

namespace {

struct Member
{
    const char *name;
    QJsonValue::Type type; ///< a Double is a whole number
    bool required;
};

struct Kind
{
    const char *name;
    QVector<Member> members;
};

constexpr auto Text = QJsonValue::String;
constexpr auto Number = QJsonValue::Double;
constexpr auto Flag = QJsonValue::Bool;
constexpr auto Object = QJsonValue::Object;

const QVector<Kind> &kinds()
{
    static const QVector<Kind> list{
        {"pin", {{"code", Text, true}, {"accepted", Flag, false}}},
        {"wait-for-go", {}},
        {"diagnostic", {{"name", Text, true}, {"localization", Text, true}}},
        {"mode",
         {{"measureMode", Text, true}, {"nbMeasures", Number, false}, {"measureTime", Number, false}}},
        {"accuracy", {{"stage", Text, true}, {"decision", Text, false}}},
        {"calibration", {{"state", Text, false}}},
        {"unit",
         {{"room", Text, false},
          {"element", Text, false},
          {"substrate", Text, false},
          {"coating", Text, false},
          {"continues", Flag, false}}},
        {"select", {{"unit", Number, true}}},
        {"measure",
         {{"sample", Object, true},
          {"count", Number, false},
          {"results", Number, false},
          {"decision", Text, false},
          {"statut", Text, false}}},
        {"direct", {{"sample", Object, true}, {"results", Number, false}, {"decision", Text, false}}},
        {"note",
         {{"localisation", Text, false}, {"degradation", Text, false}, {"conservation", Text, false}}},
        {"observation", {{"text", Text, true}}},
        {"skip", {{"reason", Text, true}}},
        {"building", {{"collapse", Flag, false}, {"runs", Flag, false}, {"damp", Flag, false}}},
        {"light", {{"on", Flag, true}}},
        {"wifi", {{"on", Flag, true}}},
        {"battery", {{"voltage", Number, true}, {"level", Text, true}}},
        {"shock", {}},
        {"shutter-fault", {}},
        {"error", {{"text", Text, true}}},
        {"instrument", {{"command", Text, true}, {"members", Object, false}}},
    };
    return list;
}

const char *describe(QJsonValue::Type type)
{
    switch (type) {
    case QJsonValue::String:
        return "a text";
    case QJsonValue::Double:
        return "a whole number from 0 up";
    case QJsonValue::Bool:
        return "true or false";
    case QJsonValue::Object:
        return "an object";
    default:
        return "a list";
    }
}

QString shown(const QJsonValue &value)
{
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    QString text = QString::fromUtf8(list.mid(1, list.size() - 2));
    if (text.size() > 60)
        text = text.left(59) + QStringLiteral("…");
    return text;
}

[[noreturn]] void fail(const QString &place, const QString &text)
{
    throw Failure{place + QStringLiteral(": ") + text, Failure::wrongUsage};
}

void require(const QJsonObject &object, const Member &member, const QString &place)
{
    const QString name = QLatin1String(member.name);
    if (!object.contains(name)) {
        if (member.required)
            fail(place, QStringLiteral("\"%1\" is missing").arg(name));
        return;
    }
    const QJsonValue value = object.value(name);
    // toInt() gives its default for what is no whole number or too great for one.
    if (value.type() != member.type || (member.type == Number && value.toInt(-1) < 0))
        fail(place,
             QStringLiteral("\"%1\": expected %2, found %3")
                 .arg(name, QLatin1String(describe(member.type)), shown(value)));
}

Step parseStep(const QJsonValue &value, const QString &place)
{
    if (!value.isObject())
        fail(place, QStringLiteral("expected an object, found %1").arg(shown(value)));
    Step step;
    step.members = value.toObject();
    require(step.members, {"do", Text, true}, place);
    step.kind = step.members.take(QStringLiteral("do")).toString();
    for (const Kind &kind : kinds()) {
        if (step.kind != QLatin1String(kind.name))
            continue;
        QStringList known;
        for (const Member &member : kind.members) {
            require(step.members, member, QStringLiteral("%1 (%2)").arg(place, step.kind));
            known.append(QLatin1String(member.name));
        }
        const QStringList given = step.members.keys();
        for (const QString &name : given) {
            if (!known.contains(name))
                fail(QStringLiteral("%1 (%2)").arg(place, step.kind),
                     QStringLiteral("unknown member \"%1\"").arg(name));
        }
        return step;
    }
    fail(place, QStringLiteral("unknown step \"%1\"").arg(step.kind));
}

} // namespace

Scenario Scenario::load(const QString &name)
{
    const bool isPath = name.contains(QLatin1Char('/')) || name.endsWith(QLatin1String(".json"));
    const QString path = isPath ? name : QStringLiteral(HALVAR_DIAGNOSTIC_SCENARIOS "/%1.json").arg(name);
    QFile file(path);
    if (!isPath && !file.exists())
        throw Failure{QStringLiteral("there is no scenario \"%1\"; there are: %2")
                          .arg(name, names().join(QStringLiteral(", "))),
                      Failure::wrongUsage};
    if (!file.open(QIODevice::ReadOnly))
        fail(path, file.errorString());
    constexpr qint64 maximumSize = 4 * 1024 * 1024;
    if (file.size() > maximumSize)
        fail(path, QStringLiteral("this is no scenario: it is longer than 4 MiB"));
    return parse(file.readAll(), path);
}

Scenario Scenario::parse(const QByteArray &json, const QString &origin)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        const int line = 1 + int(json.left(error.offset).count('\n'));
        fail(QStringLiteral("%1, line %2").arg(origin).arg(line), error.errorString());
    }
    if (!document.isObject())
        fail(origin, QStringLiteral("expected an object with \"steps\""));
    const QJsonObject object = document.object();
    const QVector<Member> members{{"title", Text, true}, {"steps", QJsonValue::Array, true}};
    for (const Member &member : members)
        require(object, member, origin);

    Scenario scenario;
    scenario.title = object.value(QLatin1String("title")).toString();
    const QStringList given = object.keys();
    for (const QString &name : given) {
        if (name != QLatin1String("title") && name != QLatin1String("steps")
            && name != QLatin1String("speed"))
            fail(origin, QStringLiteral("unknown member \"%1\"").arg(name));
    }
    const QJsonValue speed = object.value(QLatin1String("speed"));
    if (!speed.isUndefined()) {
        scenario.speed = speed.toDouble(-1);
        if (!(scenario.speed >= minimumSpeed && scenario.speed <= maximumSpeed))
            fail(origin,
                 QStringLiteral("\"speed\": expected a number from 0.01 to 500, found %1").arg(shown(speed)));
    }
    const QJsonArray steps = object.value(QLatin1String("steps")).toArray();
    for (int i = 0; i < steps.size(); ++i)
        scenario.steps.append(parseStep(steps.at(i), QStringLiteral("%1, step %2").arg(origin).arg(i + 1)));
    return scenario;
}

QStringList Scenario::names()
{
    QStringList names;
    const QFileInfoList files = QDir(QStringLiteral(HALVAR_DIAGNOSTIC_SCENARIOS))
                                    .entryInfoList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
    for (const QFileInfo &file : files)
        names.append(file.completeBaseName());
    return names;
}
