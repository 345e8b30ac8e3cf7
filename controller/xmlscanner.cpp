// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "xmlscanner.h"

#include <algorithm>
#include <cstring>

namespace halvar {

namespace {

constexpr int longestOwnEntity = 4; // "apos", "quot"

constexpr int shortestAttribute = 4; // a=""

const uchar *find(const uchar *bytes, const uchar *end, char byte)
{
    const void *const found = std::memchr(bytes, byte, std::size_t(end - bytes));
    return found ? static_cast<const uchar *>(found) : end;
}

bool isOwnEntity(const QByteArray &name)
{
    return name == "lt" || name == "gt" || name == "amp" || name == "apos" || name == "quot"
        || name.startsWith('#');
}

} // namespace

void XmlScanner::scan(const char *bytes, qint64 size)
{
    if (m_width == 1) {
        scanSingle(bytes, size);
        return;
    }
    m_rest.append(bytes, int(size));
    if (m_width == 0)
        detectWidth();
    if (m_width == 0)
        return;
    const int whole = m_rest.size() / m_width * m_width;
    if (m_width == 1)
        scanSingle(m_rest.constData(), whole);
    else
        scanWide(m_rest.constData(), whole);
    m_rest.remove(0, whole);
}

void XmlScanner::scanWide(const char *bytes, int size)
{
    const auto *byte = reinterpret_cast<const uchar *>(bytes);
    for (int at = 0; at < size; at += m_width) {
        uint character = 0;
        for (int i = 0; i < m_width; ++i)
            character = character << 8 | byte[at + (m_littleEndian ? m_width - 1 - i : i)];
        take(character);
    }
}

void XmlScanner::scanSingle(const char *bytes, qint64 size)
{
    const auto *byte = reinterpret_cast<const uchar *>(bytes);
    const uchar *const end = byte + size;
    const bool refers = find(byte, end, '&') != end;
    while (byte != end) {
        if (m_state == Text && !refers)
            byte = behindShortTags(byte, end);
        byte = nextToTake(byte, end);
        if (byte != end)
            take(*byte++);
    }
}

// No tag holds a '<', not even in a value: one that is followed by the next within so few bytes needs no
// look.
const uchar *XmlScanner::behindShortTags(const uchar *bytes, const uchar *end) const
{
    const uchar *tag = find(bytes, end, '<');
    while (tag != end && tag + 1 != end && tag[1] != '!' && tag[1] != '?') {
        const uchar *const next = find(tag + 1, end, '<');
        if (next == end || next - tag > noticedAttributes * shortestAttribute)
            break;
        tag = next;
    }
    return tag;
}

// Nearly all of a document is text, tags and values, and only few characters in them are the end of
// something.
const uchar *XmlScanner::nextToTake(const uchar *bytes, const uchar *end) const
{
    switch (m_state) {
    case Text:
        return std::find_if(bytes, end, [](uchar byte) { return byte == '<' || byte == '&'; });
    case Tag:
        return std::find_if(
            bytes, end, [](uchar byte) { return byte == '=' || byte == '"' || byte == '\'' || byte == '>'; });
    case Value:
        return std::find_if(bytes, end,
                            [quote = m_quote](uchar byte) { return byte == quote || byte == '&'; });
    default:
        return bytes;
    }
}

void XmlScanner::detectWidth()
{
    // As the parser does it: by the byte order mark, or by the first bracket.
    if (m_rest.size() < 4)
        return;
    const QByteArray head = m_rest.left(4);
    const auto is = [&head](const char *bytes, int size) { return head.startsWith(QByteArray(bytes, size)); };
    m_littleEndian = is("\xff\xfe", 2) || is("<\0", 2);
    if (is("\xff\xfe\0\0", 4) || is("\0\0\xfe\xff", 4) || is("<\0\0\0", 4) || is("\0\0\0<", 4))
        m_width = 4;
    else if (is("\xff\xfe", 2) || is("\xfe\xff", 2) || is("<\0", 2) || is("\0<", 2))
        m_width = 2;
    else
        m_width = 1;
}

void XmlScanner::take(uint character)
{
    const State before = m_state;
    switch (m_state) {
    case Text:
        if (character == '<')
            m_state = Markup;
        else if (character == '&')
            m_state = Reference;
        break;
    case Reference:
        takeReference(character);
        break;
    case Markup:
        m_attributes = 0;
        m_state = character == '!' ? Bang : character == '?' ? Instruction : Tag;
        if (character == '>')
            m_state = m_inSubset ? Subset : Text;
        break;
    case Tag:
        if (character == '=') {
            m_mostAttributes = std::max(m_mostAttributes, ++m_attributes);
        } else if (character == '"' || character == '\'') {
            m_quote = character;
            m_state = Value;
        } else if (character == '>') {
            m_state = Text;
        }
        break;
    case Value:
        if (character == m_quote)
            m_state = Tag;
        else if (character == '&')
            m_state = Reference;
        break;
    case Bang:
        takeBang(character);
        break;
    case Comment:
        if (character == '>' && m_length >= 2 && follows('-', '-'))
            m_state = m_inSubset ? Subset : Text;
        break;
    case Data:
        if (character == '>' && m_length >= 2 && follows(']', ']'))
            m_state = Text;
        break;
    case Instruction:
        if (character == '>' && m_length >= 1 && m_before[0] == '?')
            m_state = m_inSubset ? Subset : Text;
        break;
    case Declaration:
        if (character == '"' || character == '\'') {
            m_quote = character;
            m_state = Literal;
        } else if (character == '[' && !m_inSubset) {
            m_inSubset = true;
            m_state = Subset;
        } else if (character == '>') {
            m_state = m_inSubset ? Subset : Text;
        }
        break;
    case Literal:
        if (character == m_quote)
            m_state = Declaration;
        break;
    case Subset:
        if (character == '<') {
            m_state = Markup;
        } else if (character == ']') {
            m_inSubset = false;
            m_state = Declaration;
        }
        break;
    }
    if (m_state == Reference && before != Reference) {
        m_around = before;
        m_entity.clear();
    }
    m_length = m_state == before ? m_length + 1 : 0;
    m_before[1] = m_before[0];
    m_before[0] = character;
}

void XmlScanner::takeReference(uint character)
{
    if (character == ';') {
        if (!isOwnEntity(m_entity))
            ++m_references;
        m_state = m_around;
    } else if (m_entity.size() <= longestOwnEntity) {
        m_entity.append(character < 0x80 ? char(character) : '?');
    }
}

void XmlScanner::takeBang(uint character)
{
    // Behind "<!-" is the second hyphen of a comment.
    if (character == '-' && m_length == 0)
        return;
    if (character == '-' && m_before[0] == '-')
        m_state = Comment;
    else if (character == '[')
        m_state = Data;
    else
        m_state = Declaration;
}

} // namespace halvar
