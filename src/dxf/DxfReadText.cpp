#include "DxfReadText.h"

namespace dxf::read {

namespace {

// The value of a hexadecimal digit, -1 for any other character.
int hexValue(QChar c) {
    const char16_t u = c.unicode();
    if (u >= '0' && u <= '9')
        return u - '0';
    if (u >= 'a' && u <= 'f')
        return u - 'a' + 10;
    if (u >= 'A' && u <= 'F')
        return u - 'A' + 10;
    return -1;
}

// Reads the codes both TEXT and MTEXT share at text[i]: appends their meaning to out and returns the
// number of characters used, or 0 when text[i] starts none.
qsizetype sharedCode(const QString& text, qsizetype i, QString& out) {
    const qsizetype n = text.size();
    const QChar c = text[i];
    if (c == '%' && i + 2 < n && text[i + 1] == '%') {
        const QChar kind = text[i + 2].toLower();
        if (kind == 'd')
            out += QChar(0x00B0);
        else if (kind == 'p')
            out += QChar(0x00B1);
        else if (kind == 'c')
            out += QChar(0x2300);
        else if (kind == '%')
            out += '%';
        else if (kind.isDigit()) {
            qsizetype end = i + 2;
            uint code = 0;
            while (end < n && end < i + 5 && text[end].isDigit())
                code = code * 10 + uint(text[end++].digitValue());
            if (code >= 32)
                out += QChar(char16_t(code));
            return end - i;
        } else if (kind != 'u' && kind != 'o' && kind != 'k')
            return 0;
        return 3;
    }
    if (c == '\\' && i + 6 < n && text[i + 1].toUpper() == 'U' && text[i + 2] == '+') {
        // Four hex digits; characters beyond the basic plane come as two surrogates.
        char16_t code = 0;
        for (qsizetype k = i + 3; k < i + 7; ++k) {
            if (hexValue(text[k]) < 0)
                return 0;
            code = char16_t(code * 16 + hexValue(text[k]));
        }
        if (code >= 32)
            out += QChar(code);
        return 7;
    }
    if (c == '\\' && i + 7 < n && text[i + 1].toUpper() == 'M' && text[i + 2] == '+') {
        out += '?'; // a double-byte character of an Asian code page
        return 8;
    }
    if (c == '^' && i + 1 < n) {
        const QChar next = text[i + 1];
        if (next == ' ')
            out += '^';
        else if (next == 'I')
            out += ' ';
        else if (next == 'J')
            out += '\n';
        else if (next.unicode() < '@' || next.unicode() > '_')
            return 0;
        return 2;
    }
    return 0;
}

} // namespace

QString decodeString(std::string_view raw, bool utf8) {
    const auto size = qsizetype(raw.size());
    return utf8 ? QString::fromUtf8(raw.data(), size) : QString::fromLatin1(raw.data(), size);
}

QString plainText(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype used = sharedCode(text, i, out);
        if (used > 0) {
            i += used;
            continue;
        }
        if (text[i].unicode() >= 32)
            out += text[i];
        ++i;
    }
    return out;
}

QString plainMText(const QString& text) {
    QString out;
    out.reserve(text.size());
    const qsizetype n = text.size();
    auto skipArgument = [&](qsizetype from) {
        const qsizetype semicolon = text.indexOf(';', from);
        return semicolon < 0 ? n : semicolon + 1;
    };
    for (qsizetype i = 0; i < n;) {
        const qsizetype used = sharedCode(text, i, out);
        if (used > 0) {
            i += used;
            continue;
        }
        const QChar c = text[i];
        if (c == '{' || c == '}') {
            ++i;
            continue;
        }
        if (c != '\\' || i + 1 >= n) {
            if (c.unicode() >= 32 || c == '\n')
                out += c;
            ++i;
            continue;
        }
        const QChar code = text[i + 1];
        switch (code.unicode()) {
        case 'P':
        case 'N':
        case 'X':
            out += '\n';
            i += 2;
            break;
        case '~':
            out += ' ';
            i += 2;
            break;
        case 'L':
        case 'l':
        case 'O':
        case 'o':
        case 'K':
        case 'k':
            i += 2;
            break;
        case 'S': {
            // Stacked text: numerator and denominator around ^, / or #.
            const qsizetype end = skipArgument(i + 2);
            QString stacked = text.mid(i + 2, end - i - 2);
            if (stacked.endsWith(';'))
                stacked.chop(1);
            for (qsizetype k = 0; k < stacked.size(); ++k) {
                if (stacked[k] == '^' || stacked[k] == '#') {
                    stacked[k] = '/';
                    break;
                }
            }
            out += stacked;
            i = end;
            break;
        }
        case 'f':
        case 'F':
        case 'H':
        case 'W':
        case 'Q':
        case 'T':
        case 'A':
        case 'C':
        case 'c':
        case 'p':
            i = skipArgument(i + 2);
            break;
        default:
            out += code; // \\, \{, \} and unknown codes stand for the character itself
            i += 2;
        }
    }
    return out;
}

} // namespace dxf::read
