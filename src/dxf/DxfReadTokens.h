#pragma once

#include <QByteArray>

#include <string_view>

// The group code / value pairs of an ASCII DXF file, read in place.
namespace dxf::read {

struct Pair {
    int code = 0;
    std::string_view value; // the value line without its line end; views into the file's bytes
};

class Tokens {
public:
    explicit Tokens(const QByteArray& data);

    // The next pair; false at the end of the bytes or at a line that is no group code.
    bool next(Pair& pair);
    // Set once next() stopped at something that is no group code rather than at the end.
    bool malformed() const { return m_malformed; }
    qint64 line() const { return m_line; }

private:
    bool nextLine(std::string_view& line);

    const char* m_pos;
    const char* m_end;
    qint64 m_line = 0;
    bool m_malformed = false;
};

// Numbers as DXF writes them, surrounding blanks allowed. Anything else, out-of-range values
// included, is not ok.
double toReal(std::string_view text, bool* ok);
int toInt(std::string_view text, bool* ok);
std::string_view trimmed(std::string_view text);

} // namespace dxf::read
