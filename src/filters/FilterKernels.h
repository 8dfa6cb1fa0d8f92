#pragma once

// Row kernels with a version for each vector unit, picked when first used. Every version does the
// same integer or float operations, in the same order, on each byte or float it computes, so the
// results never depend on the machine.

#include "FilterPixels.h"

namespace filterpixels {

enum class Isa { Baseline, Avx2, Avx512 };

// The widest unit of this processor (AVX-512 counts with its byte and word instructions). The
// environment variable GRAPHICSOBJECTS_FILTER_ISA=baseline or avx2 caps it, so that the narrower
// versions can be tested on a wider machine.
Isa isa();

// AVX-512 with the byte permutes (VBMI) that look a byte up in a 256-entry table in four instructions.
bool hasByteLookup();

// Each colour byte of n words becomes clamp(byte + add - sub), add and sub being the bytes of the
// channel in `add` and `sub` (one of the two is zero); alpha bytes are kept.
void shiftWords(quint32* words, int n, quint32 add, quint32 sub);

// Adds the blue, green and red bytes of n words to sums[0], sums[1] and sums[2].
void addChannelSums(const quint32* words, int n, quint64 (&sums)[3]);

// Replaces each colour byte of n words through its channel's table; alpha bytes are kept.
class WordTables {
public:
    WordTables(const ByteTable& red, const ByteTable& green, const ByteTable& blue);
    void apply(quint32* words, int n) const;

private:
    alignas(64) uchar m_bytes[3][256]; // blue, green, red
};

} // namespace filterpixels

// Function attributes for the versions; clones of plain loops use FILTER_ROW_LOOP instead.
#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#define FILTER_X86 1
#define FILTER_AVX2 __attribute__((target("avx2")))
#define FILTER_AVX512 __attribute__((target("avx512f,avx512bw")))
#define FILTER_VBMI __attribute__((target("avx512f,avx512bw,avx512vbmi")))
#endif
