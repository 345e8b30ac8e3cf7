// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef FUZZ_XMLTOKENS_H
#define FUZZ_XMLTOKENS_H

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace fuzz {

struct XmlToken
{
    enum Kind {
        Text, ///< whatever stands between two pieces of markup
        Open,
        Close,
        Empty,
        Other ///< declaration, comment, document type, CDATA: kept as it is
    };

    Kind kind = Text;
    std::string text; ///< the element's name, or the whole of Text and Other
    std::vector<std::pair<std::string, std::string>> attributes; ///< values with their quotes
};

/// A document, or what is left of one, as its pieces. Never fails: what is no markup is text.
using XmlTokens = std::vector<XmlToken>;

XmlTokens parseXml(const std::string &document);
std::string composeXml(const XmlTokens &tokens);
/// One behind the end of the element that opens at \p start: the next token when it does not close.
std::size_t endOfElement(const XmlTokens &tokens, std::size_t start);

} // namespace fuzz

#endif // FUZZ_XMLTOKENS_H
