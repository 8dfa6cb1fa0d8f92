// Runs every image filter on an image whose format, size, pixels and filter parameters come from
// the input: no filter may crash, read or write out of bounds, or allocate without bound.
//
// Input: byte 0 the format (low four bits; both top bits set for a tall image that is split into
// bands of rows), bytes 1 and 2 the width and height, byte 3 the thread setting, then ten floats
// and six ints (four bytes each, as in memory) for the parameters, then the pixels (ARGB32 words,
// repeated to fill the image). Missing bytes read as zero.
#include "ImageFilters.h"

#include <QImage>
#include <QtGlobal>

#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

class Reader {
public:
    Reader(const uint8_t* data, size_t size)
        : m_data(data)
        , m_size(size) {}

    uint8_t byte() { return m_at < m_size ? m_data[m_at++] : 0; }
    template <typename T> T value() {
        uint8_t bytes[sizeof(T)];
        for (uint8_t& b : bytes)
            b = byte();
        T v;
        std::memcpy(&v, bytes, sizeof v);
        return v;
    }
    const uint8_t* rest(size_t& size) const {
        size = m_size - m_at;
        return m_data + m_at;
    }

private:
    const uint8_t* m_data;
    size_t m_size, m_at = 0;
};

// Square kernels grow with the radius and sigma, up to 8191 pixels: keep the accepted ones small
// so that each input runs quickly, and pass the absurd ones on to be refused.
float kernelRadius(float radius) {
    return std::isfinite(radius) && std::abs(radius) > 24 && std::abs(radius) < 1e4f
               ? std::fmod(radius, 24.0f)
               : radius;
}

float kernelSigma(float sigma) {
    return std::isfinite(sigma) && std::abs(sigma) > 6 && std::abs(sigma) < 1e5f ? std::fmod(sigma, 6.0f)
                                                                                 : sigma;
}

const QImage::Format formats[] = {QImage::Format_ARGB32,
                                  QImage::Format_ARGB32_Premultiplied,
                                  QImage::Format_RGB32,
                                  QImage::Format_Indexed8,
                                  QImage::Format_Mono,
                                  QImage::Format_Grayscale8,
                                  QImage::Format_RGB888,
                                  QImage::Format_RGBA8888,
                                  QImage::Format_RGBA64_Premultiplied,
                                  QImage::Format_RGB16,
                                  QImage::Format_Alpha8,
                                  QImage::Format_BGR30,
                                  QImage::Format_RGBX8888,
                                  QImage::Format_Grayscale16,
                                  QImage::Format_ARGB4444_Premultiplied,
                                  QImage::Format_RGBA32FPx4};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Refusing an absurd kernel warns; thousands of warnings would only slow the fuzzer down.
    static const QtMessageHandler quiet =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    Q_UNUSED(quiet);
    Reader in(data, size);
    const uint8_t shape = in.byte();
    const bool tall = (shape & 0xc0) == 0xc0;
    // At most 159 x 632 pixels, enough for several bands of rows.
    const int w = in.byte() % (tall ? 160 : 48), h = in.byte() % 80 * (tall ? 8 : 1);
    setFilterThreads(in.byte() % 5);
    float f[10];
    for (float& x : f)
        x = in.value<float>();
    int i[6];
    for (int& x : i)
        x = in.value<int32_t>();

    QImage argb(w, h, QImage::Format_ARGB32);
    size_t pixelBytes = 0;
    const uint8_t* pixels = in.rest(pixelBytes);
    for (int y = 0; y < h; ++y) {
        auto* row = reinterpret_cast<uint32_t*>(argb.scanLine(y));
        for (int x = 0; x < w; ++x) {
            uint32_t word = 0;
            for (size_t b = 0; b < 4 && pixelBytes > 0; ++b)
                word |= uint32_t(pixels[(size_t(y) * w * 4 + size_t(x) * 4 + b) % pixelBytes]) << (8 * b);
            row[x] = word;
        }
    }
    const QImage source = argb.convertToFormat(formats[shape % 16]);

    auto run = [&](void (*filter)(QImage&, const float*, const int*)) {
        QImage image = source;
        filter(image, f, i);
    };
    run([](QImage& m, const float*, const int* i) { filterBrightness(m, i[0]); });
    run([](QImage& m, const float*, const int* i) { filterContrast(m, i[1]); });
    run([](QImage& m, const float* f, const int*) { filterGamma(m, f[0]); });
    run([](QImage& m, const float*, const int* i) { filterColorize(m, i[2], i[3], i[4]); });
    run([](QImage& m, const float*, const int*) { filterAutoContrast(m); });
    run([](QImage& m, const float*, const int*) { filterEqualize(m); });
    run([](QImage& m, const float* f, const int*) { filterDesaturate(m, f[1]); });
    run([](QImage& m, const float*, const int*) { filterGrayscale(m); });
    run([](QImage& m, const float*, const int* i) { filterBlur(m, i[5]); });
    run([](QImage& m, const float*, const int* i) { filterSharpen(m, i[0]); });
    run([](QImage& m, const float*, const int*) { filterEdge(m); });
    run([](QImage& m, const float*, const int*) { filterDespeckle(m); });
    run([](QImage& m, const float*, const int*) { filterAntialias(m); });
    run([](QImage& m, const float* f, const int*) { filterGaussianBlur(m, f[2], f[3]); });
    run([](QImage& m, const float* f, const int*) {
        filterGaussianSharpen(m, kernelRadius(f[4]), kernelSigma(f[5]));
    });
    run([](QImage& m, const float* f, const int*) {
        filterEmboss(m, kernelRadius(f[6]), kernelSigma(f[7]));
    });
    run([](QImage& m, const float*, const int*) { filterCharcoal(m); });
    run([](QImage& m, const float* f, const int*) { filterSwirl(m, f[8]); });
    run([](QImage& m, const float* f, const int*) { filterImplode(m, f[9]); });
    return 0;
}
