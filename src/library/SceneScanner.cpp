#include "SceneScanner.h"

#include <QHashFunctions>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

// What each byte may be, looked up once rather than compared several times.
enum CharClass : uchar { Space = 1, NameStart = 2, NameChar = 4, Plain = 8, NameEnd = 16 };

constexpr std::array<uchar, 256> charClasses() {
    std::array<uchar, 256> classes{};
    for (int c = 0; c < 256; ++c) {
        const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
        uchar k = 0;
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r')
            k |= Space;
        if (letter)
            k |= NameStart | NameChar;
        if ((c >= '0' && c <= '9') || c == '-' || c == '.')
            k |= NameChar;
        // Printable ASCII that stands for itself in an attribute value.
        if (c >= 0x20 && c < 0x7f && c != '<' && c != '&')
            k |= Plain;
        // What may follow a name this reader knows.
        if ((k & Space) || c == '=' || c == '>' || c == '/')
            k |= NameEnd;
        classes[c] = k;
    }
    return classes;
}

constexpr std::array<uchar, 256> Classes = charClasses();

bool is(char c, CharClass k) {
    return Classes[uchar(c)] & k;
}

// Names are a few bytes: compared in place rather than through a general comparison.
bool same(QByteArrayView a, QByteArrayView b) {
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (a[i] != b[i])
            return false;
    }
    return true;
}

bool isSpace(char c) {
    return is(c, Space);
}

bool isNameStart(char c) {
    return is(c, NameStart);
}

bool isNameChar(char c) {
    return is(c, NameChar);
}

bool isXmlChar(char32_t c) {
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0x10FFFF);
}

// The length of the UTF-8 sequence at p encoding an XML character, or 0.
int sequenceLength(const uchar* p, const uchar* end) {
    const uchar lead = *p;
    int length = 0;
    char32_t c = 0;
    if (lead < 0x80)
        return (lead >= 0x20 || lead == '\t' || lead == '\n' || lead == '\r') ? 1 : 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        c = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        c = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        c = lead & 0x07;
    } else {
        return 0;
    }
    if (end - p < length)
        return 0;
    for (int i = 1; i < length; ++i) {
        if ((p[i] & 0xC0) != 0x80)
            return 0;
        c = (c << 6) | (p[i] & 0x3F);
    }
    const char32_t least = length == 2 ? 0x80 : length == 3 ? 0x800 : 0x10000;
    return c >= least && isXmlChar(c) ? length : 0;
}

// The character a reference at p ('&' ... ';') stands for, and its length; 0 when it is none
// this reader knows.
char32_t reference(const char* p, const char* end, qsizetype& length) {
    const char* semicolon = static_cast<const char*>(std::memchr(p, ';', std::min<qsizetype>(end - p, 12)));
    if (!semicolon)
        return 0;
    length = semicolon - p + 1;
    const QByteArrayView body(p + 1, semicolon - p - 1);
    if (body == "lt")
        return '<';
    if (body == "gt")
        return '>';
    if (body == "amp")
        return '&';
    if (body == "quot")
        return '"';
    if (body == "apos")
        return '\'';
    if (body.size() < 2 || body[0] != '#')
        return 0;
    const bool hex = body[1] == 'x';
    const QByteArrayView digits = body.sliced(hex ? 2 : 1);
    if (digits.isEmpty())
        return 0;
    char32_t c = 0;
    for (char d : digits) {
        int v = -1;
        if (d >= '0' && d <= '9')
            v = d - '0';
        else if (hex && d >= 'a' && d <= 'f')
            v = d - 'a' + 10;
        else if (hex && d >= 'A' && d <= 'F')
            v = d - 'A' + 10;
        if (v < 0 || c > 0x10FFFF)
            return 0;
        c = c * (hex ? 16 : 10) + char32_t(v);
    }
    return isXmlChar(c) ? c : 0;
}

} // namespace

SceneScanner::SceneScanner(QByteArrayView bytes)
    : m_bytes(bytes) {}

SceneScanner::Token SceneScanner::unsupported() {
    m_token = Unsupported;
    return m_token;
}

SceneScanner::Token SceneScanner::next() {
    if (m_started && (m_token == Unsupported || m_token == EndDocument))
        return m_token;
    if (!m_started) {
        m_started = true;
        if (!prolog())
            return unsupported();
    }
    if (m_pendingEnd) {
        m_pendingEnd = false;
        m_rootClosed = m_open.isEmpty();
        m_token = EndElement;
        return m_token;
    }
    if (m_rootClosed) {
        skipSpace();
        if (m_pos != m_bytes.size())
            return unsupported();
        m_token = EndDocument;
        return m_token;
    }
    if (m_pos >= m_bytes.size())
        return unsupported();
    if (m_bytes[m_pos] != '<')
        return characters();
    if (m_pos + 1 < m_bytes.size() && m_bytes[m_pos + 1] == '/')
        return endTag();
    return startTag();
}

bool SceneScanner::prolog() {
    if (m_bytes.startsWith("<?xml") && m_bytes.size() > 5 && isSpace(m_bytes[5])) {
        m_pos = 5;
        static const char* const known[] = {"version", "encoding", "standalone"};
        int expected = 0;
        bool first = true;
        for (;;) {
            const bool spaced = m_pos < m_bytes.size() && isSpace(m_bytes[m_pos]);
            skipSpace();
            if (m_bytes.sliced(m_pos).startsWith("?>"))
                break;
            Span name;
            Span value;
            if (!spaced || !readName(name))
                return false;
            const QByteArrayView key = m_bytes.sliced(name.begin, name.size);
            while (expected < 3 && key != known[expected])
                ++expected;
            // version comes first and is required; the others keep their order.
            if (expected == 3 || (first && expected != 0))
                return false;
            first = false;
            skipSpace();
            if (m_pos >= m_bytes.size() || m_bytes[m_pos] != '=')
                return false;
            ++m_pos;
            skipSpace();
            if (!readValue(value) || !value.plain)
                return false;
            const QByteArray text = m_bytes.sliced(value.begin, value.size).toByteArray().toLower();
            const bool good = expected == 0   ? text == "1.0"
                              : expected == 1 ? (text == "utf-8" || text == "utf8")
                                              : (text == "yes" || text == "no");
            if (!good)
                return false;
            ++expected;
        }
        if (first)
            return false;
        m_pos += 2;
    }
    skipSpace();
    advanceLines(m_pos);
    return m_pos + 1 < m_bytes.size() && m_bytes[m_pos] == '<' && isNameStart(m_bytes[m_pos + 1]);
}

SceneScanner::Token SceneScanner::startTag() {
    ++m_pos;
    Span name;
    if (!readName(name))
        return unsupported();
    const QByteArrayView tag = m_bytes.sliced(name.begin, name.size);
    if (m_name.size() != tag.size() || QLatin1StringView(tag) != m_name)
        m_name = QString::fromLatin1(tag);
    m_attributes.clear();
    ++m_element;
    int previous = -1;
    for (;;) {
        const bool spaced = m_pos < m_bytes.size() && isSpace(m_bytes[m_pos]);
        skipSpace();
        if (m_pos >= m_bytes.size())
            return unsupported();
        const char c = m_bytes[m_pos];
        if (c == '>') {
            ++m_pos;
            m_open << m_name;
            break;
        }
        if (c == '/') {
            if (m_pos + 1 >= m_bytes.size() || m_bytes[m_pos + 1] != '>')
                return unsupported();
            m_pos += 2;
            m_pendingEnd = true;
            break;
        }
        Attribute a;
        if (!spaced)
            return unsupported();
        // Elements of a kind repeat their names in the same order: the name that followed this
        // one last time is looked for in place, before reading a name and the table.
        const int guess = previous >= 0 ? m_namesById.at(previous).next : m_firstName;
        if (guess >= 0 && nameFollows(m_namesById.at(guess).bytes)) {
            a.name = Span{m_pos, m_namesById.at(guess).bytes.size(), true};
            m_pos += a.name.size;
            a.id = guess;
        } else {
            if (!readName(a.name))
                return unsupported();
            const QByteArrayView key = m_bytes.sliced(a.name.begin, a.name.size);
            if (key.size() >= 3 && key[0] == 'x' && key[1] == 'm' && key[2] == 'l')
                return unsupported();
            a.id = intern(key);
            // Too many names: left to QXmlStreamReader.
            if (a.id < 0)
                return unsupported();
        }
        skipSpace();
        if (m_pos >= m_bytes.size() || m_bytes[m_pos] != '=')
            return unsupported();
        ++m_pos;
        skipSpace();
        if (!readValue(a.value))
            return unsupported();
        Name& name = m_namesById[a.id];
        // A repeated name is left to QXmlStreamReader.
        if (name.element == m_element)
            return unsupported();
        name.element = m_element;
        (previous >= 0 ? m_namesById[previous].next : m_firstName) = a.id;
        previous = a.id;
        m_attributes.push_back(a);
    }
    advanceLines(m_pos);
    m_token = StartElement;
    return m_token;
}

SceneScanner::Token SceneScanner::endTag() {
    m_pos += 2;
    Span name;
    if (!readName(name))
        return unsupported();
    const QByteArrayView key = m_bytes.sliced(name.begin, name.size);
    if (m_open.isEmpty() || QLatin1StringView(key) != m_open.last())
        return unsupported();
    skipSpace();
    if (m_pos >= m_bytes.size() || m_bytes[m_pos] != '>')
        return unsupported();
    ++m_pos;
    m_name = m_open.takeLast();
    m_rootClosed = m_open.isEmpty();
    advanceLines(m_pos);
    m_token = EndElement;
    return m_token;
}

SceneScanner::Token SceneScanner::characters() {
    const char* const begin = m_bytes.data();
    const char* const end = begin + m_bytes.size();
    const char* p = begin + m_pos;
    m_text = Span{m_pos, 0, true};
    while (p < end && *p != '<') {
        const char c = *p;
        if (c >= 0x20 && c < 0x7f && c != '&' && c != ']') {
            ++p;
            continue;
        }
        if (c == '&') {
            qsizetype length = 0;
            if (!reference(p, end, length))
                return unsupported();
            m_text.plain = false;
            p += length;
            continue;
        }
        if (c == ']' && end - p >= 3 && p[1] == ']' && p[2] == '>')
            return unsupported();
        if (c == '\r' && (p + 1 == end || p[1] != '\n'))
            return unsupported();
        const int length =
            sequenceLength(reinterpret_cast<const uchar*>(p), reinterpret_cast<const uchar*>(end));
        if (!length)
            return unsupported();
        if (length > 1 || c == '\r')
            m_text.plain = false;
        p += length;
    }
    if (p == end)
        return unsupported();
    m_text.size = (p - begin) - m_pos;
    m_pos = p - begin;
    advanceLines(m_pos);
    m_token = Characters;
    return m_token;
}

bool SceneScanner::nameFollows(QByteArrayView name) const {
    const qsizetype end = m_pos + name.size();
    return end < m_bytes.size() && is(m_bytes[end], NameEnd) &&
           std::memcmp(m_bytes.data() + m_pos, name.data(), size_t(name.size())) == 0;
}

bool SceneScanner::readName(Span& span) {
    if (m_pos >= m_bytes.size() || !isNameStart(m_bytes[m_pos]))
        return false;
    span.begin = m_pos;
    while (m_pos < m_bytes.size() && isNameChar(m_bytes[m_pos]))
        ++m_pos;
    span.size = m_pos - span.begin;
    // A name that goes on with a character this reader does not know (':' or beyond ASCII).
    return m_pos < m_bytes.size() && is(m_bytes[m_pos], NameEnd);
}

bool SceneScanner::readValue(Span& span) {
    if (m_pos >= m_bytes.size() || (m_bytes[m_pos] != '"' && m_bytes[m_pos] != '\''))
        return false;
    const char quote = m_bytes[m_pos];
    const char* const begin = m_bytes.data();
    const char* const end = begin + m_bytes.size();
    const char* p = begin + m_pos + 1;
    span = Span{m_pos + 1, 0, true};
    // Most values: printable ASCII up to the quote, checked without a branch per byte.
    if (const char* q = static_cast<const char*>(std::memchr(p, quote, end - p))) {
        uchar plain = Plain;
        for (const char* c = p; c < q; ++c)
            plain &= Classes[uchar(*c)];
        if (plain) {
            span.size = (q - begin) - span.begin;
            m_pos = q - begin + 1;
            return true;
        }
    }
    while (p < end && *p != quote) {
        const char c = *p;
        // Most of a document: printable ASCII without markup, taken as it comes.
        if (c >= 0x20 && c < 0x7f && c != '<' && c != '&') {
            ++p;
            continue;
        }
        if (c == '<')
            return false;
        if (c == '&') {
            qsizetype length = 0;
            if (!reference(p, end, length))
                return false;
            span.plain = false;
            p += length;
            continue;
        }
        if (c == '\r' && (p + 1 == end || p[1] != '\n'))
            return false;
        const int length =
            sequenceLength(reinterpret_cast<const uchar*>(p), reinterpret_cast<const uchar*>(end));
        if (!length)
            return false;
        if (length > 1 || c == '\t' || c == '\n' || c == '\r')
            span.plain = false;
        p += length;
    }
    if (p == end)
        return false;
    span.size = (p - begin) - span.begin;
    m_pos = p - begin + 1;
    return true;
}

void SceneScanner::skipSpace() {
    while (m_pos < m_bytes.size() && isSpace(m_bytes[m_pos]))
        ++m_pos;
}

// A line ends at LF, at CR LF, and at a CR alone.
void SceneScanner::advanceLines(qsizetype to) {
    const char* p = m_bytes.data() + m_linePos;
    const char* const end = m_bytes.data() + to;
    for (const char* n = p; n < end && (n = static_cast<const char*>(std::memchr(n, '\n', end - n))); ++n)
        ++m_line;
    while (p < end && (p = static_cast<const char*>(std::memchr(p, '\r', end - p)))) {
        ++p;
        if (p == m_bytes.data() + m_bytes.size() || *p != '\n')
            ++m_line;
    }
    m_linePos = to;
}

qsizetype SceneScanner::find(QLatin1StringView name) const {
    for (size_t i = 0; i < m_attributes.size(); ++i) {
        const Span& span = m_attributes[i].name;
        if (span.size == name.size() && m_bytes.sliced(span.begin, span.size) == QByteArrayView(name))
            return i;
    }
    return -1;
}

int SceneScanner::intern(QByteArrayView name) {
    // Far beyond the names the library writes: such a document is read the slow way.
    constexpr int MaxNames = 4096;
    // Seeded, so that a document cannot choose names that all fall on one slot; most names are
    // found by the guess before they come here.
    const size_t hash = qHash(name, QHashSeed::globalSeed());
    if (m_nameTable.isEmpty())
        m_nameTable.fill(-1, 256);
    qsizetype mask = m_nameTable.size() - 1;
    qsizetype slot = qsizetype(hash) & mask;
    for (; m_nameTable[slot] >= 0; slot = (slot + 1) & mask) {
        const Name& known = m_namesById[m_nameTable[slot]];
        if (known.hash == hash && same(known.bytes, name))
            return m_nameTable[slot];
    }
    if (m_namesById.size() >= MaxNames)
        return -1;
    const int id = int(m_namesById.size());
    m_namesById.append(Name{QString::fromLatin1(name), name, hash, 0, -1});
    m_nameTable[slot] = id;
    if (m_namesById.size() * 2 > m_nameTable.size()) {
        m_nameTable.fill(-1, m_nameTable.size() * 2);
        mask = m_nameTable.size() - 1;
        for (const Name& known : std::as_const(m_namesById)) {
            qsizetype s = qsizetype(known.hash) & mask;
            while (m_nameTable[s] >= 0)
                s = (s + 1) & mask;
            m_nameTable[s] = int(&known - m_namesById.constData());
        }
    }
    return id;
}

QLatin1StringView SceneScanner::plainValue(qsizetype i) const {
    const Span& span = m_attributes.at(i).value;
    return QLatin1StringView(m_bytes.sliced(span.begin, span.size));
}

QString SceneScanner::attributeValue(qsizetype i) const {
    return decode(m_attributes.at(i).value, true);
}

QString SceneScanner::attribute(QLatin1StringView name) const {
    const qsizetype i = find(name);
    return i < 0 ? QString() : attributeValue(i);
}

QString SceneScanner::text() const {
    return decode(m_text, false);
}

// Spans were checked as they were read: references are known and the bytes are UTF-8. In an
// attribute a line break or tab reads as a space, and CR LF as one space; in text CR LF reads LF.
QString SceneScanner::decode(const Span& span, bool attribute) const {
    const QByteArrayView bytes = m_bytes.sliced(span.begin, span.size);
    if (span.plain)
        return QString::fromLatin1(bytes);
    QString out;
    out.reserve(bytes.size());
    const char* p = bytes.data();
    const char* const end = p + bytes.size();
    const char* run = p;
    const auto flush = [&](const char* to) {
        if (to > run)
            out += QString::fromUtf8(run, to - run);
    };
    while (p < end) {
        const char c = *p;
        if (c == '&') {
            flush(p);
            qsizetype length = 0;
            const char32_t ch = reference(p, end, length);
            out += QStringView(QChar::fromUcs4(ch));
            p += length;
            run = p;
        } else if (c == '\r' || (attribute && (c == '\n' || c == '\t'))) {
            flush(p);
            p += c == '\r' ? 2 : 1;
            out += attribute ? QLatin1Char(' ') : QLatin1Char('\n');
            run = p;
        } else {
            ++p;
        }
    }
    flush(end);
    return out;
}
