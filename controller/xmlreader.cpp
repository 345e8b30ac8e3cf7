// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "xmlreader.h"

#include <QIODevice>
#include <QTextCodec>

#include "xmlscanner.h"

namespace halvar {

namespace {

// The parser compares each attribute of a tag with every other, and looks through all name spaces for each
// name.
constexpr int MostAttributes = XmlScanner::noticedAttributes;
constexpr int MostDeclarations = 256;
// Each may stand for 4096 characters.
constexpr int MostReferences = 256;
constexpr qint64 LongestProlog = 64 * 1024;
constexpr qint64 LevelSize = 125; // what the parser keeps for each level of nesting, for good
constexpr qint64 TakenPerByte = 36;
constexpr qint64 TakenAtAll = 14 * 1000 * 1000;

/// Whether \p codec writes markup in characters of \p width bytes as ASCII does.
bool isPlain(const QTextCodec *codec, int width)
{
    if (!codec)
        return true; // the parser refuses it
    const int mib = codec->mibEnum();
    if (width == 4)
        return mib >= 1017 && mib <= 1019; // UTF-32
    if (width == 2)
        return mib >= 1013 && mib <= 1015; // UTF-16
    return mib == 3 || mib == 106 // US-ASCII, UTF-8
        || (mib >= 4 && mib <= 13) || (mib >= 109 && mib <= 112) // ISO 8859
        || (mib >= 2250 && mib <= 2258); // windows-125x
}

} // namespace

/// The file as the parser reads it. Ends where the document begins to cost too much.
class XmlReader::Guard : public QIODevice
{
public:
    explicit Guard(QIODevice *file)
        : m_file(file)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    bool atEnd() const override { return !m_refusal.isEmpty() || m_file->atEnd(); }
    /// Why it ended before its file; empty when it did not.
    const QString &refusal() const { return m_refusal; }
    int width() const { return m_scanner.width(); }
    qint64 delivered() const { return m_delivered; }
    void rootIsReached() { m_inProlog = false; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        if (!m_refusal.isEmpty())
            return 0;
        const qint64 size = m_file->read(data, maxSize);
        if (size <= 0)
            return 0;
        m_delivered += size;
        m_scanner.scan(data, size);
        if (m_scanner.mostAttributes() > MostAttributes)
            m_refusal = QStringLiteral("More than %1 attributes.").arg(MostAttributes);
        else if (m_scanner.references() > MostReferences)
            m_refusal = QStringLiteral("More than %1 references to entities.").arg(MostReferences);
        else if (m_inProlog && m_delivered > LongestProlog)
            m_refusal = QStringLiteral("More than %1 bytes before the first element.").arg(LongestProlog);
        return m_refusal.isEmpty() ? size : 0;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QIODevice *const m_file;
    XmlScanner m_scanner;
    QString m_refusal;
    qint64 m_delivered = 0;
    bool m_inProlog = true;
};

XmlReader::XmlReader() = default;

XmlReader::~XmlReader() = default;

void XmlReader::setDevice(QIODevice *device)
{
    clear();
    m_guard = std::make_unique<Guard>(device);
    QXmlStreamReader::setDevice(m_guard.get());
}

void XmlReader::clear()
{
    QXmlStreamReader::clear();
    m_guard.reset();
    m_taken = 0;
    m_depth = 0;
    m_deepest = 0;
    m_declarations = 0;
}

XmlReader::TokenType XmlReader::readNext()
{
    const TokenType token = QXmlStreamReader::readNext();
    if (m_guard && !m_guard->refusal().isEmpty()) {
        raiseError(m_guard->refusal());
        return tokenType();
    }
    switch (token) {
    case EndElement:
        --m_depth;
        return token;
    case StartElement:
        judgeElement();
        return tokenType();
    case StartDocument:
    case DTD:
        judgeProlog(token);
        return tokenType();
    default:
        return token;
    }
}

void XmlReader::judgeElement()
{
    if (m_guard)
        m_guard->rootIsReached();
    m_declarations += namespaceDeclarations().size();
    if (m_declarations > MostDeclarations)
        raiseError(QStringLiteral("More than %1 name spaces.").arg(MostDeclarations));
    else if (++m_depth > m_deepest) {
        m_deepest = m_depth;
        account(LevelSize);
    }
}

void XmlReader::judgeProlog(TokenType token)
{
    if (token == DTD) {
        // Each element would get all the defaults that are declared. A declaration may hide behind a '%'.
        if (text().contains(QLatin1String("ATTLIST")) || text().contains(QLatin1Char('%')))
            raiseError(QStringLiteral("Declarations of attributes and parameters are not read."));
        return;
    }
    const QString encoding = documentEncoding().toString();
    if (m_guard && !encoding.isEmpty()
        && !isPlain(QTextCodec::codecForName(encoding.toLatin1()), m_guard->width()))
        raiseError(QStringLiteral("The encoding %1 is not read.").arg(encoding));
}

bool XmlReader::readNextStartElement()
{
    for (;;) {
        switch (readNext()) {
        case Invalid:
        case EndElement:
            return false;
        case StartElement:
            return true;
        default:
            break;
        }
    }
}

void XmlReader::skipCurrentElement()
{
    int depth = 1;
    while (depth > 0 && readNext() != Invalid) {
        if (isEndElement())
            --depth;
        else if (isStartElement())
            ++depth;
    }
}

QString XmlReader::readElementText()
{
    QString result;
    if (!isStartElement())
        return result;
    while (readNext() != Invalid && !isEndElement()) {
        if (isCharacters() || isEntityReference())
            result += text();
        else if (isStartElement())
            skipCurrentElement();
    }
    return result;
}

bool XmlReader::account(qint64 bytes)
{
    if (hasError())
        return false;
    m_taken += bytes;
    if (m_taken <= TakenAtAll + TakenPerByte * (m_guard ? m_guard->delivered() : 0))
        return true;
    raiseError(QStringLiteral("More elements than a file of this size can hold."));
    return false;
}

} // namespace halvar
