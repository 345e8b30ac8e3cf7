// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "xmltokens.h"

#include <cstring>

namespace fuzz {

namespace {

bool isSpace(char character)
{
    return std::strchr(" \t\r\n", character) && character != '\0';
}

bool startsWith(const std::string &document, std::size_t at, const char *text)
{
    return document.compare(at, std::strlen(text), text) == 0;
}

/// One behind \p text, or the end.
std::size_t behind(const std::string &document, std::size_t from, const char *text)
{
    const std::size_t found = document.find(text, from);
    return found == std::string::npos ? document.size() : found + std::strlen(text);
}

std::size_t endOfDocumentType(const std::string &document, std::size_t from)
{
    const std::size_t end = document.find('>', from);
    const std::size_t subset = document.find('[', from);
    return subset < end ? behind(document, subset, "]>") : behind(document, from, ">");
}

/// A tag's attributes; \p body is what stands behind its name.
void parseAttributes(const std::string &body, XmlToken &token)
{
    std::size_t at = 0;
    while (at < body.size()) {
        while (at < body.size() && isSpace(body[at]))
            ++at;
        const std::size_t equals = body.find('=', at);
        if (equals == std::string::npos)
            return;
        std::size_t end = body.size();
        if (equals + 1 < body.size() && (body[equals + 1] == '"' || body[equals + 1] == '\'')) {
            const std::size_t quote = body.find(body[equals + 1], equals + 2);
            if (quote != std::string::npos)
                end = quote + 1;
        }
        token.attributes.emplace_back(body.substr(at, equals - at),
                                      body.substr(equals + 1, end - equals - 1));
        at = end;
    }
}

XmlToken parseTag(const std::string &tag)
{
    XmlToken token;
    std::string inside = tag.substr(1, tag.size() - 2);
    if (!inside.empty() && inside.front() == '/') {
        token.kind = XmlToken::Close;
        token.text = inside.substr(1);
        return token;
    }
    token.kind = XmlToken::Open;
    if (!inside.empty() && inside.back() == '/') {
        token.kind = XmlToken::Empty;
        inside.pop_back();
    }
    std::size_t name = 0;
    while (name < inside.size() && !isSpace(inside[name]))
        ++name;
    token.text = inside.substr(0, name);
    parseAttributes(inside.substr(name), token);
    return token;
}

} // namespace

XmlTokens parseXml(const std::string &document)
{
    XmlTokens tokens;
    std::size_t at = 0;
    while (at < document.size()) {
        if (document[at] != '<') {
            std::size_t end = document.find('<', at);
            end = end == std::string::npos ? document.size() : end;
            tokens.push_back({XmlToken::Text, document.substr(at, end - at), {}});
            at = end;
            continue;
        }
        std::size_t end = 0;
        if (startsWith(document, at, "<!--"))
            end = behind(document, at, "-->");
        else if (startsWith(document, at, "<![CDATA["))
            end = behind(document, at, "]]>");
        else if (startsWith(document, at, "<!"))
            end = endOfDocumentType(document, at);
        else if (startsWith(document, at, "<?"))
            end = behind(document, at, "?>");
        const std::string piece = document.substr(at, (end ? end : behind(document, at, ">")) - at);
        if (end || piece.back() != '>')
            tokens.push_back({XmlToken::Other, piece, {}});
        else
            tokens.push_back(parseTag(piece));
        at += piece.size();
    }
    return tokens;
}

std::string composeXml(const XmlTokens &tokens)
{
    std::string document;
    for (const XmlToken &token : tokens) {
        if (token.kind == XmlToken::Text || token.kind == XmlToken::Other) {
            document += token.text;
            continue;
        }
        document += token.kind == XmlToken::Close ? "</" : "<";
        document += token.text;
        for (const auto &attribute : token.attributes)
            document += ' ' + attribute.first + '=' + attribute.second;
        document += token.kind == XmlToken::Empty ? "/>" : ">";
    }
    return document;
}

std::size_t endOfElement(const XmlTokens &tokens, std::size_t start)
{
    if (tokens[start].kind != XmlToken::Open)
        return start + 1;
    int depth = 0;
    for (std::size_t i = start; i < tokens.size(); ++i) {
        if (tokens[i].kind == XmlToken::Open)
            ++depth;
        else if (tokens[i].kind == XmlToken::Close && --depth == 0)
            return i + 1;
    }
    return start + 1;
}

} // namespace fuzz
