// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef FILELIMITS_H
#define FILELIMITS_H

#include <QByteArray>
#include <QString>
#include <QXmlStreamReader>

#include <vector>

/// What the XML reader finds in a document, to be written again by a bare writer.
struct Token
{
    QXmlStreamReader::TokenType type;
    QString text;
    QXmlStreamAttributes attributes;
};

/// A document like the saved one, whose units are all the first one: reading the text of each from memory
/// of its own would be measured instead of the writer.
struct Outline
{
    Outline(const QByteArray &document, int unitCount);

    std::vector<Token> head;
    std::vector<Token> unit;
    std::vector<Token> tail;
    int units;
    int size;
};

/// The document as QXmlStreamWriter writes it into memory.
QByteArray writtenBarely(const Outline &outline);

/// One open, write, fsync and rename.
bool replaceBarely(const QString &path, const QByteArray &document);

/// Every token of the file, none looked at.
bool readBarely(const QString &path);

#endif // FILELIMITS_H
