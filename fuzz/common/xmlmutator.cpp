// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "xmlmutator.h"

#include <QTextCodec>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <random>

#include "xmltokens.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);

namespace fuzz {

namespace {

/// What any format may meet in a value.
const std::vector<std::string> &nastyValues()
{
    static const std::vector<std::string> values = {"",
                                                    " ",
                                                    "0",
                                                    "-0",
                                                    "-1",
                                                    "1",
                                                    "2147483647",
                                                    "2147483648",
                                                    "-2147483649",
                                                    "18446744073709551616",
                                                    "1e309",
                                                    "-1e309",
                                                    "4.9e-324",
                                                    "nan",
                                                    "inf",
                                                    "0x10",
                                                    "1,5",
                                                    "1.5",
                                                    " 7 ",
                                                    "&#13;",
                                                    "&#10;",
                                                    "&#9;",
                                                    "&#0;",
                                                    "&#x1F600;",
                                                    "&#xD800;",
                                                    "&#xFFFD;",
                                                    "&#xFFFF;",
                                                    "&lt;a&gt;",
                                                    "&amp;",
                                                    "&quot;",
                                                    "&e;",
                                                    "&e;&e;&e;&e;&e;&e;&e;&e;",
                                                    "&undefined;",
                                                    "]]>",
                                                    "\xc3\xa9",
                                                    "e\xcc\x81",
                                                    "\xff",
                                                    "\xed\xa0\x80",
                                                    "\xf0\x9f\x98\x80",
                                                    "\xe2\x80\xae",
                                                    "..",
                                                    "../../x",
                                                    "/",
                                                    "%1 %2",
                                                    "#",
                                                    "a.png",
                                                    "file:/x",
                                                    "qrc:/x"};
    return values;
}

/// What XML, or a reader of lines, takes for something else than a letter.
const std::vector<std::string> &signs()
{
    static const std::vector<std::string> values = {"&#13;", "&#10;",  "&#9;",   " ",        "&lt;",
                                                    "&amp;", "&quot;", "]]&gt;", "&#x1F600;"};
    return values;
}

const std::vector<std::string> &prologs()
{
    static const std::vector<std::string> values = {
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>",
        "<?xml version=\"1.0\" encoding=\"UTF-16\"?>",
        "<?xml version=\"1.0\" encoding=\"ISO-2022-JP\"?>",
        "<?xml version=\"1.1\"?>",
        "<!DOCTYPE d [<!ENTITY e \"0123456789\">]>",
        "<!DOCTYPE d [<!ENTITY e \"<item/><Ud/><shock/>\">]>",
        "<!DOCTYPE d [<!ENTITY a \"aaaaaaaa\"><!ENTITY e \"&a;&a;&a;&a;&a;&a;&a;&a;\">]>",
        "<!DOCTYPE d [<!ENTITY e \"&e;\">]>",
        "<!DOCTYPE d [<!ENTITY % p \"<!ENTITY e 'x'>\">%p;]>",
        "<!DOCTYPE d [<!ATTLIST Ud Id CDATA \"1\" Image CDATA \"x\">]>",
        "<!DOCTYPE d SYSTEM \"file:///etc/passwd\">",
        "\xef\xbb\xbf",
        "<!-- -->",
        "<?a?>"};
    return values;
}

class Mutation
{
public:
    Mutation(XmlTokens tokens, std::size_t maxSize, unsigned seed)
        : m_tokens(std::move(tokens))
        , m_maxSize(maxSize)
        , m_random(seed)
    { }

    std::size_t below(std::size_t limit)
    {
        return limit == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random);
    }
    const XmlTokens &tokens() const { return m_tokens; }

    void mutate()
    {
        static constexpr std::array steps = {
            &Mutation::copyElement,   &Mutation::removeElement, &Mutation::moveElement,
            &Mutation::insertElement, &Mutation::renameElement, &Mutation::setText,
            &Mutation::mutateText,    &Mutation::setAttribute,  &Mutation::addAttribute,
            &Mutation::dropAttribute, &Mutation::wrap,          &Mutation::repeat,
            &Mutation::addProlog,     &Mutation::insertOther,   &Mutation::breakElement,
            &Mutation::truncate,      &Mutation::insertSign};
        for (std::size_t count = 1 + below(4); count > 0; --count)
            (this->*steps[below(steps.size())])();
    }

    /// Puts an element of \p other into this document.
    void splice(const XmlTokens &other)
    {
        const std::size_t from = below(other.size());
        if (from >= other.size())
            return;
        const std::size_t end = endOfElement(other, from);
        insert(below(m_tokens.size() + 1), XmlTokens(other.begin() + long(from), other.begin() + long(end)));
    }

private:
    template <typename Values>
    const std::string &anyOf(const Values &values)
    {
        static const std::string none;
        return values.empty() ? none : values[below(values.size())];
    }
    const std::string &anyElement() { return anyOf(vocabulary().elements); }
    const std::string &anyValue()
    {
        return below(3) == 0 ? anyOf(nastyValues()) : anyOf(vocabulary().values);
    }
    std::string anyQuoted()
    {
        std::string value = anyValue();
        value.erase(std::remove(value.begin(), value.end(), '"'), value.end());
        return '"' + value + '"';
    }

    bool isTag(std::size_t at) const
    {
        return m_tokens[at].kind == XmlToken::Open || m_tokens[at].kind == XmlToken::Empty;
    }
    /// Any token of which \p test holds; the number of tokens when there is none.
    template <typename Test>
    std::size_t any(Test test)
    {
        const std::size_t start = below(m_tokens.size());
        for (std::size_t i = 0; i < m_tokens.size(); ++i) {
            const std::size_t at = (start + i) % m_tokens.size();
            if (test(at))
                return at;
        }
        return m_tokens.size();
    }
    std::size_t anyTag()
    {
        return any([this](std::size_t at) { return isTag(at); });
    }

    void insert(std::size_t at, const XmlTokens &tokens)
    {
        at = std::min(at, m_tokens.size());
        m_tokens.insert(m_tokens.begin() + long(at), tokens.begin(), tokens.end());
    }
    XmlTokens element(std::size_t at) const
    {
        return XmlTokens(m_tokens.begin() + long(at), m_tokens.begin() + long(endOfElement(m_tokens, at)));
    }
    void erase(std::size_t from, std::size_t end)
    {
        m_tokens.erase(m_tokens.begin() + long(from), m_tokens.begin() + long(end));
    }

    void copyElement()
    {
        const std::size_t at = anyTag();
        if (at < m_tokens.size())
            insert(below(2) ? at : below(m_tokens.size() + 1), element(at));
    }
    void removeElement()
    {
        const std::size_t at = below(2) ? anyTag() : below(m_tokens.size());
        if (at < m_tokens.size())
            erase(at, endOfElement(m_tokens, at));
    }
    void moveElement()
    {
        const std::size_t at = anyTag();
        if (at >= m_tokens.size())
            return;
        const XmlTokens moved = element(at);
        erase(at, at + moved.size());
        insert(below(m_tokens.size() + 1), moved);
    }
    void insertElement()
    {
        const std::string name = anyElement();
        const XmlTokens made{
            {XmlToken::Open, name, {}}, {XmlToken::Text, anyValue(), {}}, {XmlToken::Close, name, {}}};
        insert(below(m_tokens.size() + 1), made);
    }
    void renameElement()
    {
        const std::size_t at = anyTag();
        if (at >= m_tokens.size())
            return;
        const std::size_t end = endOfElement(m_tokens, at);
        m_tokens[at].text = anyElement();
        if (end > at + 1)
            m_tokens[end - 1].text = m_tokens[at].text;
    }
    /// A text that is somebody's value, not what indents the elements.
    bool isValue(std::size_t at) const
    {
        return m_tokens[at].kind == XmlToken::Text
            && m_tokens[at].text.find_first_not_of(" \t\r\n") != std::string::npos;
    }
    void setText()
    {
        const bool blanksToo = below(8) == 0;
        const std::size_t at = any([this, blanksToo](std::size_t i) {
            return blanksToo ? m_tokens[i].kind == XmlToken::Text : isValue(i);
        });
        if (at < m_tokens.size())
            m_tokens[at].text = below(4) ? anyValue() : m_tokens[at].text + anyValue();
    }
    /// Into a value that goes on to be one, and at times into every text.
    void insertSign()
    {
        const std::string &sign = anyOf(signs());
        if (below(4) == 0) {
            const std::size_t at = any([this](std::size_t i) { return !m_tokens[i].attributes.empty(); });
            if (at >= m_tokens.size())
                return;
            auto &attributes = m_tokens[at].attributes;
            std::string &value = attributes[below(attributes.size())].second;
            if (value.size() >= 2)
                value.insert(1 + below(value.size() - 1), sign); // between its quotation marks
            return;
        }
        const std::size_t chosen = any([this](std::size_t i) { return isValue(i); });
        const bool everywhere = below(4) == 0;
        for (std::size_t at = 0; at < m_tokens.size(); ++at) {
            if (isValue(at) && (everywhere || at == chosen))
                m_tokens[at].text.insert(below(m_tokens[at].text.size() + 1), sign);
        }
    }
    void mutateText()
    {
        const std::size_t at = below(m_tokens.size());
        if (at >= m_tokens.size())
            return;
        std::string &text = m_tokens[at].text;
        std::vector<uint8_t> bytes(text.begin(), text.end());
        bytes.resize(text.size() + 64);
        bytes.resize(LLVMFuzzerMutate(bytes.data(), text.size(), bytes.size()));
        text.assign(bytes.begin(), bytes.end());
    }
    void setAttribute()
    {
        const std::size_t at = any([this](std::size_t i) { return !m_tokens[i].attributes.empty(); });
        if (at >= m_tokens.size())
            return;
        auto &attributes = m_tokens[at].attributes;
        attributes[below(attributes.size())].second = anyQuoted();
    }
    void addAttribute()
    {
        const std::size_t at = anyTag();
        if (at >= m_tokens.size())
            return;
        const bool many = below(16) == 0;
        for (std::size_t i = many ? 300 : 1; i > 0; --i) {
            std::string name = anyOf(vocabulary().attributes);
            if (many)
                name += std::to_string(i);
            m_tokens[at].attributes.emplace_back(below(8) || many ? name : "xmlns:" + name, anyQuoted());
        }
    }
    void dropAttribute()
    {
        const std::size_t at = any([this](std::size_t i) { return !m_tokens[i].attributes.empty(); });
        if (at >= m_tokens.size())
            return;
        auto &attributes = m_tokens[at].attributes;
        attributes.erase(attributes.begin() + long(below(attributes.size())));
    }
    void wrap()
    {
        const std::size_t at = anyTag();
        if (at >= m_tokens.size())
            return;
        const std::string name = below(2) ? anyElement() : m_tokens[at].text;
        const std::size_t depth = below(8) ? 1 : 1 + below(500);
        const std::size_t end = endOfElement(m_tokens, at);
        insert(end, XmlTokens(depth, {XmlToken::Close, name, {}}));
        insert(at, XmlTokens(depth, {XmlToken::Open, name, {}}));
    }
    void repeat()
    {
        const std::size_t at = below(m_tokens.size());
        if (at >= m_tokens.size())
            return;
        const XmlTokens once = element(at);
        const std::size_t size = composeXml(once).size() + 1;
        XmlTokens often;
        for (std::size_t times = below(std::min<std::size_t>(2000, m_maxSize / size) + 1); times > 0; --times)
            often.insert(often.end(), once.begin(), once.end());
        insert(at, often);
    }
    void addProlog() { insert(below(2), {{XmlToken::Other, anyOf(prologs()), {}}}); }
    void insertOther()
    {
        static const std::vector<std::string> others = {
            "<!-- a -->", "<![CDATA[<a>&b;]]>", "<?a b?>", "&e;", "<a", "</", "<", ">", "<!--", "<![CDATA["};
        insert(below(m_tokens.size() + 1), {{XmlToken::Other, anyOf(others), {}}});
    }
    void breakElement()
    {
        const std::size_t at = below(m_tokens.size());
        if (at < m_tokens.size())
            erase(at, at + 1);
    }
    void truncate()
    {
        if (below(4) == 0)
            m_tokens.resize(below(m_tokens.size() + 1));
    }

    XmlTokens m_tokens;
    const std::size_t m_maxSize;
    std::minstd_rand m_random;
};

bool isUtf16(const std::string &document)
{
    return document.size() >= 2
        && (document.compare(0, 2, "\xff\xfe") == 0 || document.compare(0, 2, "\xfe\xff") == 0);
}

std::string recoded(const std::string &document, const char *from, const char *to)
{
    const QString text = QTextCodec::codecForName(from)->toUnicode(document.data(), int(document.size()));
    return QTextCodec::codecForName(to)->fromUnicode(text).toStdString();
}

std::string decoded(const uint8_t *data, size_t size)
{
    const std::string document(reinterpret_cast<const char *>(data), size);
    return isUtf16(document) ? recoded(document, "UTF-16", "UTF-8") : document;
}

size_t store(const std::string &document, uint8_t *data, size_t maxSize)
{
    const std::size_t size = std::min(document.size(), maxSize);
    std::memcpy(data, document.data(), size);
    return size;
}

} // namespace

} // namespace fuzz

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int seed)
{
    constexpr unsigned bytewise = 8; // one in so many
    if (seed % bytewise == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    fuzz::Mutation mutation(fuzz::parseXml(fuzz::decoded(data, size)), maxSize, seed);
    mutation.mutate();
    std::string document = fuzz::composeXml(mutation.tokens());
    if (mutation.below(64) == 0)
        document = fuzz::recoded(document, "UTF-8", "UTF-16");
    return fuzz::store(document, data, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t *data1, size_t size1, const uint8_t *data2,
                                            size_t size2, uint8_t *out, size_t maxOutSize, unsigned int seed)
{
    fuzz::Mutation mutation(fuzz::parseXml(fuzz::decoded(data1, size1)), maxOutSize, seed);
    mutation.splice(fuzz::parseXml(fuzz::decoded(data2, size2)));
    return fuzz::store(fuzz::composeXml(mutation.tokens()), out, maxOutSize);
}
