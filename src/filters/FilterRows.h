#pragma once

// Row-by-row output of the converted filters. A fresh 64 MB result costs more in page faults than
// most filters spend computing, so the result goes back into the caller's own buffer whenever it
// already holds straight 32-bit pixels and nobody shares it; the premultiplication that ends every
// converted filter is done as each row is stored instead of in a pass of its own.

#include "FilterPixels.h"
#include "FilterThreads.h"

#include <memory>
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

// How a converted filter's rows are stored and the format the image is left in.
enum class Store {
    Premultiply, // straight ARGB32 rows, premultiplied on the way; premultiplied result
    Opaque,      // opaque rows, the same in both readings; premultiplied result
    Straight,    // straight ARGB32 rows left for a later pass; ARGB32 result
};

// Writes a converted filter's result, row by row, in bands of rows that may run on threads of their
// own. `read` is how many rows above and below its own one output row reads from the source; `held`
// how many output rows are kept back before the source row they replace is no longer read (in place,
// a band's rows are read from the image itself and those of its neighbours from copies taken first).
class ResultRows {
public:
    class Band {
    public:
        const int begin, end; // output rows

        // Source row y, clamped to the image.
        const uchar* in(int y) const {
            y = std::clamp(y, 0, m_rows.m_height - 1);
            if (y < begin && m_rows.m_inPlace)
                return m_above.data() + size_t(y - (begin - m_aboveRows)) * m_rowBytes;
            if (y >= end && m_rows.m_inPlace)
                return m_below.data() + size_t(y - end) * m_rowBytes;
            return m_rows.m_sourceBits + y * m_rows.m_sourceBpl;
        }

        // Where output row y is built; call stored(y) when it is complete.
        uchar* row(int y) { return m_pending.data() + size_t(y % m_rows.m_slots) * m_rowBytes; }

        void stored(int y) {
            if (y - m_rows.m_held >= begin)
                m_rows.store(y - m_rows.m_held, row(y - m_rows.m_held));
        }

    private:
        friend class ResultRows;
        Band(ResultRows& rows, int first, int last)
            : begin(first)
            , end(last)
            , m_rows(rows)
            , m_rowBytes(size_t(4) * size_t(rows.m_width))
            , m_pending(size_t(rows.m_slots) * m_rowBytes) {
            if (!rows.m_inPlace)
                return;
            m_aboveRows = std::min(rows.m_read, begin);
            const int belowRows = std::min(rows.m_read, rows.m_height - end);
            m_above.resize(size_t(m_aboveRows) * m_rowBytes);
            m_below.resize(size_t(belowRows) * m_rowBytes);
            for (int y = 0; y < m_aboveRows; ++y)
                std::copy_n(rows.m_sourceBits + (begin - m_aboveRows + y) * rows.m_sourceBpl, m_rowBytes,
                            m_above.data() + size_t(y) * m_rowBytes);
            for (int y = 0; y < belowRows; ++y)
                std::copy_n(rows.m_sourceBits + (end + y) * rows.m_sourceBpl, m_rowBytes,
                            m_below.data() + size_t(y) * m_rowBytes);
        }

        // Stores the rows still held back.
        void finish() {
            for (int y = std::max(begin, end - m_rows.m_held); y < end; ++y)
                m_rows.store(y, row(y));
        }

        ResultRows& m_rows;
        const size_t m_rowBytes;
        int m_aboveRows = 0;
        std::vector<uchar> m_above, m_below, m_pending;
    };

    // makeSource gives the straight source when the image cannot be used as it is; atOnce is how many
    // output rows are built before the first of them is stored.
    ResultRows(QImage& image, int read, int held, Store store,
               QImage (*makeSource)(const QImage&) = argb32Source, int atOnce = 1)
        : m_image(image)
        , m_store(store)
        , m_width(image.width())
        , m_height(image.height())
        , m_inPlace(ownsStraightWords(image) && held < image.height())
        , m_read(read)
        , m_held(m_inPlace ? held : 0)
        , m_slots(m_held + atOnce) {
        if (m_inPlace) {
            m_dst = image.bits();
            m_bpl = image.bytesPerLine();
            m_sourceBits = m_dst;
            m_sourceBpl = m_bpl;
        } else {
            m_source = makeSource(image);
            m_out = QImage(image.size(), store == Store::Straight ? QImage::Format_ARGB32
                                                                  : QImage::Format_ARGB32_Premultiplied);
            m_dst = m_out.bits();
            m_bpl = m_out.bytesPerLine();
            m_sourceBits = m_source.constBits();
            m_sourceBpl = m_source.bytesPerLine();
        }
    }

    // Calls work(band) for each band of output rows, on as many threads; a band builds its rows in
    // order from band.begin to band.end and has at least minRows rows, unless the image has fewer.
    template <typename Work> void forBands(Work work, int minRows = 1) {
        // In place, each band copies the rows it reads from its neighbours: keep them fewer than its own.
        const int bands =
            filterthreads::bandCount(m_height, m_width, std::max(minRows, m_inPlace ? m_read : 1));
        std::vector<std::unique_ptr<Band>> all;
        for (int b = 0; b < bands; ++b)
            all.emplace_back(new Band(*this, filterthreads::bandBegin(m_height, bands, b),
                                      filterthreads::bandBegin(m_height, bands, b + 1)));
        filterthreads::forBands(m_height, bands, [&](int b, int, int) {
            work(*all[b]);
            all[b]->finish();
        });
    }

    // Hands the result to the image.
    void finish() {
        if (!m_inPlace)
            m_image = std::move(m_out);
        else
            m_image.reinterpretAsFormat(m_store == Store::Straight ? QImage::Format_ARGB32
                                                                   : QImage::Format_ARGB32_Premultiplied);
    }

private:
    void store(int y, const uchar* row) {
        uchar* dst = m_dst + y * m_bpl;
        if (m_store == Store::Premultiply)
            premultiplyRow(row, dst, m_width);
        else
            std::copy_n(row, 4 * size_t(m_width), dst);
    }

    QImage& m_image;
    const Store m_store;
    const int m_width, m_height;
    const bool m_inPlace;
    const int m_read, m_held; // a separate result holds nothing back
    const int m_slots;        // rows being built or held back
    QImage m_source, m_out;
    const uchar* m_sourceBits = nullptr;
    qsizetype m_sourceBpl = 0;
    uchar* m_dst = nullptr;
    qsizetype m_bpl = 0;
};

} // namespace filterpixels
