#include "FilterThreads.h"
#include "ImageFilters.h"

#include <QSemaphore>
#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <atomic>

namespace {

// A band smaller than this costs more to hand to a thread than it saves.
constexpr qint64 MinBandPixels = 1 << 15;
constexpr int MaxThreads = 256;

std::atomic<int> threadSetting{0};

// The filters' own pool, so that they neither wait for nor delay the host's tasks.
QThreadPool& pool() {
    static QThreadPool instance;
    return instance;
}

} // namespace

void setFilterThreads(int threads) {
    threadSetting = std::clamp(threads, 0, MaxThreads);
}

int filterThreads() {
    return threadSetting;
}

namespace filterthreads {

int bandCount(int rows, int width, int minRows) {
    const int setting = threadSetting;
    const qint64 threads = setting > 0 ? setting : std::max(1, QThread::idealThreadCount());
    const qint64 byRows = rows / std::max(1, minRows);
    const qint64 byPixels = qint64(rows) * std::max(0, width) / MinBandPixels;
    return int(std::max<qint64>(1, std::min({threads, byRows, byPixels})));
}

void forBands(int rows, int bands, const std::function<void(int, int, int)>& work) {
    if (bands <= 1) {
        work(0, 0, rows);
        return;
    }
    QThreadPool& threads = pool();
    if (threads.maxThreadCount() < bands - 1)
        threads.setMaxThreadCount(bands - 1);
    QSemaphore done;
    for (int b = 1; b < bands; ++b)
        threads.start([&, b] {
            work(b, bandBegin(rows, bands, b), bandBegin(rows, bands, b + 1));
            done.release();
        });
    work(0, 0, bandBegin(rows, bands, 1));
    done.acquire(bands - 1);
}

} // namespace filterthreads
