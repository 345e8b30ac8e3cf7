// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_XMLSCANNER_H
#define HALVAR_XMLSCANNER_H

#include <QByteArray>

namespace halvar {

/// Follows the bytes of an XML document ahead of the parser, as far as it takes to count what the parser
/// needs more than linear time or memory for. Judges nothing else: of a document that is none it counts
/// anything.
class XmlScanner
{
public:
    /// The next \p size bytes of the document.
    void scan(const char *bytes, qint64 size);

    /// Bytes of one character of the encoding: 1, 2 or 4.
    int width() const { return m_width; }
    /// A tag of fewer attributes need not be counted.
    static constexpr int noticedAttributes = 256;
    /// Most attributes that a tag had so far, of those that were counted.
    int mostAttributes() const { return m_mostAttributes; }
    /// References to entities other than XML's own five.
    int references() const { return m_references; }

private:
    enum State {
        Text,
        Reference, ///< behind '&'
        Markup, ///< behind '<'
        Tag,
        Value, ///< of an attribute
        Bang, ///< behind "<!"
        Comment,
        Data, ///< CDATA
        Instruction,
        Declaration, ///< "<!DOCTYPE", or one inside of it
        Literal, ///< quoted, in a declaration
        Subset ///< between the brackets of a document type
    };

    void detectWidth();
    void scanSingle(const char *bytes, qint64 size);
    void scanWide(const char *bytes, int size);
    const uchar *behindShortTags(const uchar *bytes, const uchar *end) const;
    const uchar *nextToTake(const uchar *bytes, const uchar *end) const;
    void take(uint character);
    void takeReference(uint character);
    void takeBang(uint character);
    bool follows(char first, char second) const
    {
        return m_before[1] == uint(first) && m_before[0] == uint(second);
    }

    State m_state = Text;
    State m_around = Text; ///< where a reference is from
    bool m_inSubset = false;
    uint m_quote = 0;
    // Of the characters that were taken; in comments and the like these are all.
    uint m_before[2] = {0, 0}; ///< the ones before this one, the nearer first
    int m_length = 0; ///< since the state was entered
    QByteArray m_entity; ///< the beginning of the name of the one that is referred to
    int m_attributes = 0;
    int m_mostAttributes = 0;
    int m_references = 0;

    int m_width = 0; ///< 0: not known yet
    bool m_littleEndian = false;
    QByteArray m_rest; ///< bytes that make no character yet
};

} // namespace halvar

#endif // HALVAR_XMLSCANNER_H
