#include "FilterKernels.h"

#include <cstdlib>
#include <cstring>

#ifdef FILTER_X86
#include <immintrin.h>
#endif

namespace filterpixels {

namespace {

struct Units {
    Isa isa = Isa::Baseline;
    bool byteLookup = false;
};

Units detect() {
    Units u;
#ifdef FILTER_X86
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2"))
        u.isa = Isa::Avx2;
    if (u.isa == Isa::Avx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw"))
        u.isa = Isa::Avx512;
    const char* cap = std::getenv("GRAPHICSOBJECTS_FILTER_ISA");
    if (cap && std::strcmp(cap, "baseline") == 0)
        u.isa = Isa::Baseline;
    else if (cap && std::strcmp(cap, "avx2") == 0 && u.isa == Isa::Avx512)
        u.isa = Isa::Avx2;
    u.byteLookup = u.isa == Isa::Avx512 && __builtin_cpu_supports("avx512vbmi");
#endif
    return u;
}

const Units& units() {
    static const Units u = detect();
    return u;
}

void shiftScalar(uchar* bytes, size_t n, const uchar* add, const uchar* sub) {
    for (size_t j = 0; j < n; ++j) {
        const int v = bytes[j] + add[j & 3] - sub[j & 3];
        bytes[j] = clampByte(v);
    }
}

#ifdef FILTER_VBMI
// Sixteen words at a time: each channel's table is four 64-byte registers, two permutes look up
// the lower and the upper 128 entries and bit 7 picks between them.
FILTER_VBMI inline __m512i lookup16(const __m512i (&t)[3][4], __m512i v) {
    constexpr __mmask64 blue = 0x1111111111111111ull;
    const __mmask64 upper = _mm512_movepi8_mask(v);
    __m512i out = v;
    for (int c = 0; c < 3; ++c) {
        const __m512i low = _mm512_permutex2var_epi8(t[c][0], v, t[c][1]);
        const __m512i high = _mm512_permutex2var_epi8(t[c][2], v, t[c][3]);
        out = _mm512_mask_mov_epi8(out, blue << c, _mm512_mask_blend_epi8(upper, low, high));
    }
    return out;
}

FILTER_VBMI void lookupVbmi(quint32* words, int n, const uchar (*tables)[256]) {
    __m512i t[3][4];
    for (int c = 0; c < 3; ++c)
        for (int q = 0; q < 4; ++q)
            t[c][q] = _mm512_load_si512(tables[c] + 64 * q);
    int x = 0;
    for (; x + 16 <= n; x += 16) {
        auto* p = reinterpret_cast<__m512i*>(words + x);
        _mm512_storeu_si512(p, lookup16(t, _mm512_loadu_si512(p)));
    }
    if (x < n) {
        const __mmask64 rest = (1ull << (4 * (n - x))) - 1;
        _mm512_mask_storeu_epi8(words + x, rest, lookup16(t, _mm512_maskz_loadu_epi8(rest, words + x)));
    }
}
#endif

#ifdef FILTER_X86
// Sums of absolute differences from zero add up the bytes of each 64-bit lane, wherever they are in
// it: masking one channel at a time gives that channel's sum.
FILTER_AVX512 int addChannelSumsAvx512(const quint32* words, int n, quint64 (&sums)[3]) {
    const __m512i zero = _mm512_setzero_si512();
    __m512i total[3] = {zero, zero, zero};
    int x = 0;
    for (; x + 16 <= n; x += 16) {
        const __m512i p = _mm512_loadu_si512(words + x);
        for (int c = 0; c < 3; ++c) {
            const __m512i channel = _mm512_and_si512(p, _mm512_set1_epi32(0xff << (8 * c)));
            total[c] = _mm512_add_epi64(total[c], _mm512_sad_epu8(channel, zero));
        }
    }
    for (int c = 0; c < 3; ++c) {
        alignas(64) quint64 lanes[8];
        _mm512_store_si512(lanes, total[c]);
        for (quint64 lane : lanes)
            sums[c] += lane;
    }
    return x;
}
#endif

} // namespace

Isa isa() {
    return units().isa;
}

bool hasByteLookup() {
    return units().byteLookup;
}

void shiftWords(quint32* words, int n, quint32 add, quint32 sub) {
    uchar up[4], down[4];
    std::memcpy(up, &add, 4);
    std::memcpy(down, &sub, 4);
    auto* bytes = reinterpret_cast<uchar*>(words);
    size_t j = 0;
#ifdef __SSE2__
    const __m128i a = _mm_set1_epi32(int(add)), s = _mm_set1_epi32(int(sub));
    for (; j + 16 <= size_t(4) * n; j += 16) {
        auto* p = reinterpret_cast<__m128i*>(bytes + j);
        _mm_storeu_si128(p, _mm_subs_epu8(_mm_adds_epu8(_mm_loadu_si128(p), a), s));
    }
#endif
    shiftScalar(bytes + j, size_t(4) * n - j, up, down);
}

void addChannelSums(const quint32* words, int n, quint64 (&sums)[3]) {
    int x = 0;
#ifdef FILTER_X86
    if (isa() == Isa::Avx512)
        x = addChannelSumsAvx512(words, n, sums);
#endif
    quint32 blue = 0, green = 0, red = 0;
    for (; x < n; ++x) {
        blue += words[x] & 0xff;
        green += words[x] >> 8 & 0xff;
        red += words[x] >> 16 & 0xff;
    }
    sums[0] += blue;
    sums[1] += green;
    sums[2] += red;
}

WordTables::WordTables(const ByteTable& red, const ByteTable& green, const ByteTable& blue) {
    for (int i = 0; i < 256; ++i) {
        m_bytes[0][i] = blue[i];
        m_bytes[1][i] = green[i];
        m_bytes[2][i] = red[i];
    }
}

void WordTables::apply(quint32* words, int n) const {
#ifdef FILTER_VBMI
    if (hasByteLookup()) {
        lookupVbmi(words, n, m_bytes);
        return;
    }
#endif
    // Byte by byte: quicker than putting words together from three tables.
    auto* p = reinterpret_cast<uchar*>(words);
    for (int x = 0; x < n; ++x, p += 4) {
        p[Blue] = m_bytes[0][p[Blue]];
        p[Green] = m_bytes[1][p[Green]];
        p[Red] = m_bytes[2][p[Red]];
    }
}

} // namespace filterpixels
