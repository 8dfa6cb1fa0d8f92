#pragma once

#include <QString>

#include <string_view>

// The text of TEXT and MTEXT entities as it is shown, without DXF's control and formatting codes.
namespace dxf::read {

// A string value of the file: UTF-8 from AutoCAD 2007 on, the Windows code page before.
QString decodeString(std::string_view raw, bool utf8);
// TEXT and ATTRIB: %% codes (degree, plus-minus, diameter, character numbers), \U+XXXX escapes and
// caret control characters resolved; underline and overline switches removed.
QString plainText(const QString& text);
// MTEXT: as plainText, and formatting removed: fonts, heights, colours and groups dropped, stacked
// fractions written a/b, paragraphs and column breaks turned into '\n'.
QString plainMText(const QString& text);

} // namespace dxf::read
