// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "shocklistmodel.h"

#include <QFile>
#include <QXmlStreamWriter>

#include <algorithm>

#include "damagedfile.h"
#include "filereplace.h"
#include "xmlreader.h"

namespace {

constexpr qint64 shockSize = 500; // bytes that one takes in the list

const QString &format()
{
    static const QString ret = QStringLiteral("dd-MM-yyyy HH:mm:ss t");
    return ret;
}

/// The local time at \p date and \p time whose zone is called \p zone, invalid when there is none. In the
/// hour that is lived through twice in autumn, the zone tells which of both is meant.
QDateTime localTime(const QDate &date, const QTime &time, const QString &zone)
{
    constexpr int hour = 3600;
    const QDateTime local(date, time);
    for (const int shift : {0, hour, -hour}) {
        const QDateTime candidate = shift == 0 ? local : local.addSecs(shift);
        if (candidate.isValid() && candidate.date() == date && candidate.time() == time
            && candidate.timeZoneAbbreviation() == zone)
            return candidate;
    }
    return QDateTime();
}

/// Whether \p text begins like \p shape, where a 0 stands for any digit.
bool beginsLike(const QString &text, QLatin1String shape)
{
    return text.size() >= shape.size()
        && std::equal(shape.begin(), shape.end(), text.begin(), [](char expected, QChar character) {
               const bool isDigit = character >= QLatin1Char('0') && character <= QLatin1Char('9');
               return expected == '0' ? isDigit : character == QLatin1Char(expected);
           });
}

bool isBlank(QChar character)
{
    return character == QLatin1Char(' ')
        || (character >= QLatin1Char('\t') && character <= QLatin1Char('\r'));
}

/// \p text as write() left it, under whatever time zone the instrument was set to then.
QDateTime parsed(const QString &untrimmed)
{
    const QString text = untrimmed.trimmed();
    const QLatin1String shape("00-00-0000 00:00:00");
    if (!beginsLike(text, shape))
        return QDateTime();
    const QString zone = text.mid(shape.size() + 1);
    const bool hasZone = text.size() > shape.size();
    if (hasZone
        && (text.at(shape.size()) != QLatin1Char(' ') || zone.isEmpty()
            || std::any_of(zone.begin(), zone.end(), isBlank)))
        return QDateTime();
    const auto number = [&text](int position, int digits) { return text.midRef(position, digits).toInt(); };
    const QDate date(number(6, 4), number(3, 2), number(0, 2));
    const QTime time(number(11, 2), number(14, 2), number(17, 2));
    if (!date.isValid() || !time.isValid())
        return QDateTime();
    const QDateTime local = localTime(date, time, zone);
    if (local.isValid())
        return local;
    const QDateTime foreign = QDateTime::fromString(text, format());
    if (foreign.isValid() && foreign.date() == date && foreign.time() == time)
        return foreign;
    // A zone nobody knows: the clock's reading is what the history is about. The local zone may skip that
    // very hour in spring; UTC never does.
    const QDateTime reading(date, time);
    return reading.isValid() ? reading : QDateTime(date, time, Qt::UTC);
}

} // namespace

ShockListModel::ShockListModel(const QString &home, QObject *parent)
    : QQmlObjectListModel<Shock>(parent)
    , m_file(new QFile(home + QLatin1String("shock/shock.xml"), this))
{
    read();
}

void ShockListModel::read()
{
    if (!m_file->open(QIODevice::ReadOnly)) {
        m_unread = !halvar::isNoFile(m_file->fileName());
        return;
    }
    halvar::XmlReader xml;
    xml.setDevice(m_file);
    if (xml.readNextStartElement() && xml.name() == QLatin1String("history_shocks")) {
        while (xml.readNextStartElement()) {
            if (xml.name() != QLatin1String("shock")) {
                xml.skipCurrentElement();
                continue;
            }
            const QString text = xml.readElementText();
            if (xml.account(shockSize))
                append(new Shock(parsed(text), this));
        }
    }
    m_unread = xml.hasError() || m_file->error() != QFile::NoError;
    m_file->close();
}

void ShockListModel::write()
{
    if (halvar::isWriteProtected(m_file->fileName()))
        return;
    if (m_unread && !halvar::keepBeforeReplacing(m_file->fileName())) {
        halvar::logNotKept(m_file->fileName());
        return;
    }
    m_unread = false;
    QByteArray content;
    QXmlStreamWriter xml(&content);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("history_shocks"));
    for (const Shock *shock : *this) {
        if (shock) // null when somebody else deleted it
            xml.writeTextElement(QStringLiteral("shock"), shock->dateTime().toString(format()));
    }
    xml.writeEndDocument();
    halvar::ReplaceFailure failure;
    halvar::replaceFile(m_file->fileName(), content, &failure);
    if (failure && failure.opened)
        halvar::logReplaceFailure(m_file->fileName(), failure);
}
