// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "scenario.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include "commandtable.h"
#include "jsonkeys.h"

namespace simulator {

namespace {

constexpr qint64 LargestFile = 1024 * 1024;
constexpr double LatestStep = 86400;
constexpr int LargestCount = 1000000;

QString complain(const QString &key, const commandtable::Complaint &complaint)
{
    return complaint.member.isEmpty()
        ? QStringLiteral("%1: %2").arg(key, complaint.text)
        : QStringLiteral("%1.%2: %3").arg(key, complaint.member, complaint.text);
}

/// \p text without what would break its line or confuse a terminal: a file may name its keys as it likes.
QString oneLine(const QString &text)
{
    QString result;
    for (const QChar character : text) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Other_Format
            || category == QChar::Separator_Line || category == QChar::Separator_Paragraph)
            result += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
        else
            result += character;
    }
    return result;
}

} // namespace

bool Scenario::read(const QString &nameOrFile, const QString &directory, QString &error)
{
    const bool isFile = nameOrFile.contains(QLatin1Char('/')) || nameOrFile.endsWith(QLatin1String(".json"));
    const QString path =
        isFile ? nameOrFile : directory + QLatin1Char('/') + nameOrFile + QStringLiteral(".json");
    name = QFileInfo(path).completeBaseName();

    QFile file(path);
    if (QFileInfo(path).isDir() || !file.open(QIODevice::ReadOnly)) {
        if (isFile) {
            error = QStringLiteral("%1: cannot be read").arg(path);
        } else {
            QStringList known =
                QDir(directory).entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
            known.replaceInStrings(QStringLiteral(".json"), QString());
            error = QStringLiteral("no scenario \"%1\": expected one of %2, or a file")
                        .arg(nameOrFile, known.join(QStringLiteral(", ")));
        }
        return false;
    }
    const QByteArray bytes = file.read(LargestFile + 1);
    if (bytes.size() > LargestFile) {
        error = QStringLiteral("%1: longer than %2 bytes").arg(path).arg(LargestFile);
        return false;
    }
    const auto lineOf = [&bytes](int offset) { return bytes.left(offset).count('\n') + 1; };
    const RepeatedKey repeated = findRepeatedKey(bytes);
    if (repeated.isFound()) {
        error = QStringLiteral("%1: line %2: the key \"%3\" stands twice in its object")
                    .arg(path, QString::number(lineOf(repeated.offset)), oneLine(repeated.key));
        return false;
    }
    QJsonParseError parsed;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &parsed);
    if (parsed.error != QJsonParseError::NoError) {
        error =
            QStringLiteral("%1: line %2: %3").arg(path).arg(lineOf(parsed.offset)).arg(parsed.errorString());
        return false;
    }
    if (!document.isObject()) {
        error = QStringLiteral("%1: expected a JSON object").arg(path);
        return false;
    }
    const QString complaint = parse(document.object());
    if (!complaint.isEmpty())
        error = QStringLiteral("%1: %2").arg(path, oneLine(complaint));
    return complaint.isEmpty();
}

QString Scenario::parse(const QJsonObject &root)
{
    for (auto entry = root.begin(); entry != root.end(); ++entry) {
        const QString key = entry.key();
        if (key == QLatin1String("description")) {
            if (!entry->isString())
                return QStringLiteral("%1: %2").arg(key,
                                                    commandtable::expected(QStringLiteral("a text"), *entry));
            description = entry->toString();
        } else if (key == QLatin1String("steps")) {
            if (!entry->isArray())
                return QStringLiteral("%1: %2").arg(key,
                                                    commandtable::expected(QStringLiteral("a list"), *entry));
            const QJsonArray list = entry->toArray();
            for (int i = 0; i < list.size(); ++i) {
                const QString complaint = parseStep(list.at(i), i);
                if (!complaint.isEmpty())
                    return complaint;
            }
        } else if (!commandtable::isSetting(key)) {
            return QStringLiteral(
                       "%1: unknown key; expected description, steps or a command that sets something")
                .arg(key);
        } else {
            QJsonObject command;
            const QString only = commandtable::onlyMember(key);
            if (entry->isObject())
                command = entry->toObject();
            else if (!only.isEmpty())
                command.insert(only, *entry);
            else
                return QStringLiteral("%1: %2").arg(
                    key, commandtable::expected(QStringLiteral("an object"), *entry));
            const commandtable::Complaint complaint = commandtable::check(key, command);
            if (!complaint.isEmpty())
                return complain(key, complaint);
            command.insert(QStringLiteral("command"), key);
            settings.append(command);
        }
    }
    return {};
}

QString Scenario::parseStep(const QJsonValue &value, int index)
{
    const QString key = QStringLiteral("steps[%1]").arg(index);
    if (!value.isObject())
        return QStringLiteral("%1: %2").arg(key, commandtable::expected(QStringLiteral("an object"), value));
    Step step;
    step.command = value.toObject();
    const QJsonValue at =
        step.command.contains(QStringLiteral("at")) ? step.command.take(QStringLiteral("at")) : 0;
    if (!at.isDouble() || at.toDouble() < 0 || at.toDouble() > LatestStep)
        return QStringLiteral("%1.at: %2")
            .arg(key, commandtable::expected(QStringLiteral("seconds from 0 to %1").arg(LatestStep), at));
    step.at = at.toDouble();

    if (step.command.contains(QStringLiteral("after"))) {
        const QJsonValue after = step.command.take(QStringLiteral("after"));
        if (!after.toObject().value(QLatin1String("notice")).isString())
            return QStringLiteral("%1.after: %2")
                .arg(key, commandtable::expected(QStringLiteral("an object with \"notice\""), after));
        step.after = after.toObject();
    }
    if (step.command.contains(QStringLiteral("count"))) {
        const QJsonValue count = step.command.take(QStringLiteral("count"));
        step.count = count.toInt(0);
        if (step.count < 1 || step.count > LargestCount)
            return QStringLiteral("%1.count: %2")
                .arg(key,
                     commandtable::expected(QStringLiteral("an integer from 1 to %1").arg(LargestCount),
                                            count));
    }

    const QJsonValue command = step.command.value(QLatin1String("command"));
    if (!command.isString())
        return QStringLiteral("%1.command: %2")
            .arg(key, commandtable::expected(QStringLiteral("a text"), command));
    const commandtable::Complaint complaint = commandtable::check(command.toString(), step.command);
    if (!complaint.isEmpty())
        return complain(complaint.member.isEmpty() ? key + QStringLiteral(".command") : key, complaint);
    steps.append(step);
    return {};
}

} // namespace simulator
