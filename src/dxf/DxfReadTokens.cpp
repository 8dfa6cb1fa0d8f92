#include "DxfReadTokens.h"

#include <charconv>
#include <cstring>

namespace dxf::read {

namespace {

constexpr int kLastGroupCode = 1071;

} // namespace

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r'))
        text.remove_suffix(1);
    return text;
}

double toReal(std::string_view text, bool* ok) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    *ok = !text.empty() && error == std::errc() && end == text.data() + text.size();
    return *ok ? value : 0.0;
}

int toInt(std::string_view text, bool* ok) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    *ok = !text.empty() && error == std::errc() && end == text.data() + text.size();
    return *ok ? value : 0;
}

Tokens::Tokens(const QByteArray& data)
    : m_pos(data.constData())
    , m_end(data.constData() + data.size()) {}

bool Tokens::nextLine(std::string_view& line) {
    if (m_pos >= m_end)
        return false;
    const void* found = std::memchr(m_pos, '\n', size_t(m_end - m_pos));
    const char* stop = found ? static_cast<const char*>(found) : m_end;
    line = std::string_view(m_pos, size_t(stop - m_pos));
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    m_pos = found ? stop + 1 : m_end;
    ++m_line;
    return true;
}

bool Tokens::next(Pair& pair) {
    if (m_malformed)
        return false;
    std::string_view codeLine;
    if (!nextLine(codeLine))
        return false;
    bool ok = false;
    pair.code = toInt(codeLine, &ok);
    if (!ok || pair.code < 0 || pair.code > kLastGroupCode) {
        // A blank last line is no fault.
        m_malformed = !trimmed(codeLine).empty() || m_pos < m_end;
        return false;
    }
    return nextLine(pair.value);
}

} // namespace dxf::read
