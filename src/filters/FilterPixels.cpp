#include "FilterRows.h"

#include <vector>

namespace filterpixels {

const uchar* unpremultiplyTable() {
    static const std::array<uchar, 256 * 256> table = [] {
        std::array<uchar, 256 * 256> t{};
        for (int a = 1; a < 256; ++a)
            for (int c = 0; c < 256; ++c)
                t[a * 256 + c] = uchar(std::min(c * 255 / a, 255));
        return t;
    }();
    return table.data();
}

void premultiplyInPlace(QImage& image) {
    if (image.format() == QImage::Format_ARGB32)
        forWordRows(image, [](quint32* words, int w) {
            premultiplyRow(reinterpret_cast<const uchar*>(words), reinterpret_cast<uchar*>(words), w);
        });
    image.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied);
}

namespace {

// Counts of straight colours. Large images count green and blue together, with one increment in a
// table of 65536 pairs, and red alone: two increments a pixel instead of three, the dearest part of
// the histograms, for a table that takes longer to clear and add up than a small image to count.
// The pairs are 16-bit counts, which halves the table the increments scatter over (it does not stay
// in the first-level cache either way), with the rare wraps past 65535 counted aside.
// Alternate pixels count into two banks, so that runs of equal pixels do not wait on each other's
// increments. 32-bit counts, added into the totals before they can overflow.
class Counts {
public:
    explicit Counts(bool pairs)
        : m_pairs(pairs ? 2 << 16 : 0)
        , m_wraps(m_pairs.size()) {}

    void word(int bank, quint32 q) {
        if (m_pairs.empty()) {
            channels(bank, (q >> 16) & 0xff, (q >> 8) & 0xff, q & 0xff);
            return;
        }
        const size_t pair = size_t(bank) << 16 | (q & 0xffff);
        if (Q_UNLIKELY(++m_pairs[pair] == 0))
            ++m_wraps[pair];
        ++m_single[bank][Histograms::R][(q >> 16) & 0xff];
    }
    void channels(int bank, uint red, uint green, uint blue) {
        ++m_single[bank][Histograms::R][red];
        ++m_single[bank][Histograms::G][green];
        ++m_single[bank][Histograms::B][blue];
    }
    void addTo(Histograms& h) {
        for (int bank = 0; bank < 2; ++bank) {
            for (int c = 0; c < 3; ++c)
                for (int level = 0; level < 256; ++level)
                    h.count[c][level] += m_single[bank][c][level];
            if (m_pairs.empty())
                continue;
            const size_t first = size_t(bank) << 16;
            for (int green = 0; green < 256; ++green)
                for (int blue = 0; blue < 256; ++blue) {
                    const size_t pair = first | size_t(green << 8 | blue);
                    const quint64 count = m_pairs[pair] + (quint64(m_wraps[pair]) << 16);
                    h.count[Histograms::G][green] += count;
                    h.count[Histograms::B][blue] += count;
                }
        }
        std::fill(m_pairs.begin(), m_pairs.end(), 0);
        std::fill(m_wraps.begin(), m_wraps.end(), 0);
        m_single = {};
    }

private:
    std::vector<quint16> m_pairs; // [bank][green << 8 | blue]
    std::vector<quint32> m_wraps; // how often each pair count went past 65535
    std::array<std::array<std::array<quint32, 256>, 3>, 2> m_single{};
};

void countRows(const QImage& image, int begin, int end, Histograms& h) {
    const bool premultiplied = image.format() == QImage::Format_ARGB32_Premultiplied;
    const uchar* unpremultiply = unpremultiplyTable();
    const int w = image.width();
    Counts counts(!premultiplied && qint64(end - begin) * w >= qint64(1) << 20);
    qint64 counted = 0;
    for (int y = begin; y < end; ++y) {
        const auto* p = reinterpret_cast<const quint32*>(image.constScanLine(y));
        if (premultiplied) {
            for (int x = 0; x < w; ++x) {
                const uchar* u = unpremultiply + (p[x] >> 24) * 256;
                counts.channels(x & 1, u[(p[x] >> 16) & 0xff], u[(p[x] >> 8) & 0xff], u[p[x] & 0xff]);
            }
        } else {
            int x = 0;
            for (; x + 2 <= w; x += 2) {
                counts.word(0, p[x]);
                counts.word(1, p[x + 1]);
            }
            if (x < w)
                counts.word(0, p[x]);
        }
        counted += w;
        if (counted >= qint64(1) << 30) {
            counts.addTo(h);
            counted = 0;
        }
    }
    counts.addTo(h);
}

} // namespace

Histograms straightHistograms(const QImage& image) {
    const int bands = filterthreads::bandCount(image.height(), image.width());
    std::vector<Histograms> parts(bands);
    filterthreads::forBands(image.height(), bands,
                            [&](int band, int begin, int end) { countRows(image, begin, end, parts[band]); });
    Histograms h;
    for (const Histograms& part : parts)
        for (int c = 0; c < 3; ++c)
            for (int level = 0; level < 256; ++level)
                h.count[c][level] += part.count[c][level];
    return h;
}

} // namespace filterpixels
