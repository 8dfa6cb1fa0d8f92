#pragma once

// Row-by-row output of the converted filters. A fresh 64 MB result costs more in page faults than
// most filters spend computing, so the result goes back into the caller's own buffer whenever it
// already holds straight 32-bit pixels and nobody shares it; the premultiplication that ends every
// converted filter is done as each row is stored instead of in a pass of its own.

#include "FilterPixels.h"

#include <vector>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace filterpixels {

// Qt's rounding of qPremultiply, (c * a + (c * a >> 8) + 128) >> 8, on whole rows.
inline void premultiplyRow(const uchar* in, uchar* out, int w) {
    int x = 0;
#if defined(__SSE2__) && Q_BYTE_ORDER == Q_LITTLE_ENDIAN
    const __m128i zero = _mm_setzero_si128(), half = _mm_set1_epi16(128);
    const __m128i alphaMask = _mm_set1_epi32(int(0xff000000u));
    auto half4 = [&](__m128i c) {
        __m128i a = _mm_shufflelo_epi16(c, _MM_SHUFFLE(3, 3, 3, 3));
        a = _mm_shufflehi_epi16(a, _MM_SHUFFLE(3, 3, 3, 3));
        const __m128i t = _mm_mullo_epi16(c, a);
        return _mm_srli_epi16(_mm_add_epi16(_mm_add_epi16(t, _mm_srli_epi16(t, 8)), half), 8);
    };
    for (; x + 4 <= w; x += 4) {
        const __m128i p = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 4 * x));
        const __m128i colour =
            _mm_packus_epi16(half4(_mm_unpacklo_epi8(p, zero)), half4(_mm_unpackhi_epi8(p, zero)));
        const __m128i result = _mm_or_si128(_mm_andnot_si128(alphaMask, colour), _mm_and_si128(alphaMask, p));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4 * x), result);
    }
#endif
    const auto* src = reinterpret_cast<const QRgb*>(in);
    auto* dst = reinterpret_cast<QRgb*>(out);
    for (; x < w; ++x)
        dst[x] = qPremultiply(src[x]);
}

// Writes a converted filter's straight result, row by row, and leaves the image premultiplied.
// `reach` is how many rows above and below its own one output row reads; a row is stored only once
// no later output row reads the source row it replaces.
class ResultRows {
public:
    // makeSource gives the straight source when the image cannot be used as it is.
    ResultRows(QImage& image, int reach, QImage::Format straightFormat,
               QImage (*makeSource)(const QImage&) = argb32Source)
        : m_image(image)
        , m_premultiply(straightFormat == QImage::Format_ARGB32)
        , m_inPlace(ownsStraightWords(image) && reach < image.height())
        , m_reach(m_inPlace ? reach : 0) {
        if (m_inPlace) {
            m_dst = image.bits();
        } else {
            m_source = makeSource(image);
            m_out = QImage(image.size(), QImage::Format_ARGB32_Premultiplied);
            m_dst = m_out.bits();
        }
        m_bpl = m_inPlace ? image.bytesPerLine() : m_out.bytesPerLine();
        m_pending.resize(size_t(m_reach + 1) * size_t(4 * image.width()));
    }

    // The straight ARGB32 (or RGB32) source.
    const QImage& source() const { return m_inPlace ? m_image : m_source; }

    // Where output row y is built; call stored(y) when it is complete.
    uchar* row(int y) { return m_pending.data() + size_t(y % (m_reach + 1)) * size_t(4 * m_image.width()); }

    void stored(int y) {
        if (y >= m_reach)
            store(y - m_reach);
    }

    // Stores the remaining rows and hands the result to the image.
    void finish() {
        for (int y = std::max(0, m_image.height() - m_reach); y < m_image.height(); ++y)
            store(y);
        if (m_inPlace)
            m_image.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied);
        else
            m_image = std::move(m_out);
    }

private:
    void store(int y) {
        const int w = m_image.width();
        uchar* dst = m_dst + y * m_bpl;
        if (m_premultiply)
            premultiplyRow(row(y), dst, w);
        else
            std::copy_n(row(y), 4 * w, dst);
    }

    QImage& m_image;
    const bool m_premultiply, m_inPlace;
    const int m_reach; // rows held back; a separate result needs none
    QImage m_source, m_out;
    uchar* m_dst = nullptr;
    qsizetype m_bpl = 0;
    std::vector<uchar> m_pending;
};

} // namespace filterpixels
