// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "filelimits.h"

#include <QFile>
#include <QXmlStreamWriter>

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

namespace {

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

} // namespace

Outline::Outline(const QByteArray &document, int unitCount)
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

QByteArray writtenBarely(const Outline &outline)
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

bool readBarely(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QXmlStreamReader reader(&file);
    while (!reader.atEnd())
        benchmark::DoNotOptimize(reader.readNext());
    return !reader.hasError();
}
