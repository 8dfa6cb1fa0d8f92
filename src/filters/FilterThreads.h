#pragma once

// Splitting a filter's rows over threads. A filter cuts its image into bands of whole rows and
// computes each band exactly as it would the whole image, so the result never depends on how many
// bands there are.

#include <QtGlobal>

#include <functional>

namespace filterthreads {

// How many bands `rows` rows of `width` pixels are cut into: no more than the thread setting, each
// band at least `minRows` rows and enough pixels to be worth a thread.
int bandCount(int rows, int width, int minRows = 1);

// First row of band `band` of `bands` over `rows` rows; band b covers [bandBegin(b), bandBegin(b + 1)).
inline int bandBegin(int rows, int bands, int band) {
    return int(qint64(rows) * band / bands);
}

// Calls work(band, begin, end) once for each band, the first on the calling thread, and returns
// when all have ended.
void forBands(int rows, int bands, const std::function<void(int band, int begin, int end)>& work);

// Both at once: work(begin, end) over the bands of `rows` rows of `width` pixels.
inline void forRows(int rows, int width, const std::function<void(int begin, int end)>& work) {
    forBands(rows, bandCount(rows, width), [&](int, int begin, int end) { work(begin, end); });
}

} // namespace filterthreads
