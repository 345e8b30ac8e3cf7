// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_XMLREADER_H
#define HALVAR_XMLREADER_H

#include <QString>
#include <QXmlStreamReader>

#include <memory>

#include "halvar-export.h"

class QIODevice;

namespace halvar {

/// Reads the instrument's XML files, which may come damaged, or made to do harm, from a memory stick or over
/// the network: what costs far more time or memory than its size accounts for is an error like any other.
///
/// Those are: more than 256 attributes in a tag, name space declarations or references to entities of the
/// document's own; a declaration of default attributes, or one that is itself put together from entities;
/// more than 64 KiB before the root; an encoding other than UTF-8, UTF-16, UTF-32 and the usual 8-bit ones;
/// and what account() refuses. No honest file comes near.
class HALVAR_EXPORT XmlReader : private QXmlStreamReader
{
public:
    XmlReader();
    ~XmlReader();

    /// \p device is open, not owned, and stays until the next setDevice() or clear().
    void setDevice(QIODevice *device);
    void clear();

    // As those of the base.
    TokenType readNext();
    bool readNextStartElement();
    void skipCurrentElement();
    /// The text up to the current element's end, without that of elements inside it.
    QString readElementText();

    /// To be asked before something that lasts is made of the current element. \p bytes is what it takes in
    /// memory, and the next ones will.
    /// \return false, with an error, when everything so far takes more than 36 bytes for each byte of the
    /// file and 14 MB beside.
    bool account(qint64 bytes);

    using QXmlStreamReader::atEnd;
    using QXmlStreamReader::attributes;
    using QXmlStreamReader::columnNumber;
    using QXmlStreamReader::errorString;
    using QXmlStreamReader::hasError;
    using QXmlStreamReader::isStartElement;
    using QXmlStreamReader::lineNumber;
    using QXmlStreamReader::name;
    using QXmlStreamReader::text;
    using QXmlStreamReader::TokenType;

private:
    class Guard;

    void judgeElement();
    void judgeProlog(TokenType token);

    std::unique_ptr<Guard> m_guard;
    qint64 m_taken = 0;
    int m_depth = 0;
    int m_deepest = 0;
    int m_declarations = 0;
};

} // namespace halvar

#endif // HALVAR_XMLREADER_H
