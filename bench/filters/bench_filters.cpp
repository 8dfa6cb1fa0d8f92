// Times every image filter on one seeded 4096 x 4096 ARGB32 image next to the nearest OpenCV and
// ImageMagick operations and a memcpy of the same image, on one thread and on all cores. The sides
// take turns (ours, OpenCV, ImageMagick, memcpy, then all again on all cores, round after round) so
// that a busy machine slows them alike; each reports the median of its rounds in ms per megapixel,
// and each ratio is the median of the ratios of the rounds. Every side starts from a fresh copy of
// the image made outside the timing; OpenCV's results and temporaries are allocated by an untimed
// first call and reused.
// Usage: bench_filters [rounds] [name filter]

#include "ImageFilters.h"

#include <QImage>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#ifdef BENCH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#ifdef BENCH_MAGICK
#include <Magick++.h>
#endif

namespace {

constexpr int Side = 4096;
constexpr double Megapixels = double(Side) * Side / 1e6;

enum class Family { Point, Neighbourhood, Distortion };

double nowMs() {
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

QImage seededImage() {
    QImage image(Side, Side, QImage::Format_ARGB32);
    std::mt19937 random(20200113);
    for (int y = 0; y < Side; ++y) {
        auto* p = reinterpret_cast<quint32*>(image.scanLine(y));
        for (int x = 0; x < Side; ++x)
            p[x] = random();
    }
    return image;
}

#ifdef BENCH_OPENCV
// An OpenCV operation; a lambda keeps its temporaries in its own captures, so that they are
// allocated once.
using CvOp = std::function<void(const cv::Mat& src, cv::Mat& dst)>;

// A table for cv::LUT that maps the colour bytes and keeps alpha, written into `lut` when it has the
// table's size already.
cv::Mat lut4(const std::function<int(int)>& colour, cv::Mat lut = {}) {
    lut.create(1, 256, CV_8UC4);
    for (int i = 0; i < 256; ++i) {
        const uchar c = cv::saturate_cast<uchar>(colour(i));
        lut.at<cv::Vec4b>(i) = cv::Vec4b(c, c, c, uchar(i));
    }
    return lut;
}

CvOp perChannel(const std::function<void(cv::Mat&)>& op) {
    return [op, planes = std::vector<cv::Mat>()](const cv::Mat& src, cv::Mat& dst) mutable {
        cv::split(src, planes);
        for (int c = 0; c < 3; ++c)
            op(planes[c]);
        cv::merge(planes, dst);
    };
}

CvOp filter2D(cv::Mat kernel) {
    return [kernel](const cv::Mat& src, cv::Mat& dst) {
        cv::filter2D(src, dst, -1, kernel, cv::Point(-1, -1), 0, cv::BORDER_REPLICATE);
    };
}

// Our Gaussian sharpen is (1 + b) x - b blur(x), b = S / (S + 1) for the sum S of the unnormalised
// Gaussian weights (centre 1) of its square kernel: what a user writes with OpenCV.
CvOp gaussianSharpen(int width, double sigma) {
    double line = 0;
    for (int u = -width / 2; u <= width / 2; ++u)
        line += std::exp(-u * u / (2 * sigma * sigma));
    const double b = line * line / (line * line + 1);
    return [=, blur = cv::Mat()](const cv::Mat& src, cv::Mat& dst) mutable {
        cv::GaussianBlur(src, blur, cv::Size(width, width), sigma, sigma, cv::BORDER_REPLICATE);
        cv::addWeighted(src, 1 + b, blur, -b, 0, dst);
    };
}

// Builds the displacement maps with the same formulas as the library, then remaps.
CvOp remapOp(const std::function<void(float d, float radius, float& dx, float& dy)>& map) {
    return [map, mapX = cv::Mat(), mapY = cv::Mat()](const cv::Mat& src, cv::Mat& dst) mutable {
        mapX.create(src.size(), CV_32F);
        mapY.create(src.size(), CV_32F);
        const float c = 0.5f * src.cols, radius = c;
        for (int y = 0; y < src.rows; ++y)
            for (int x = 0; x < src.cols; ++x) {
                float dx = x - c, dy = y - c;
                const float d = dx * dx + dy * dy;
                if (d < radius * radius)
                    map(d, radius, dx, dy);
                mapX.at<float>(y, x) = dx + c;
                mapY.at<float>(y, x) = dy + c;
            }
        cv::remap(src, dst, mapX, mapY, cv::INTER_LINEAR, cv::BORDER_CONSTANT);
    };
}
#endif

#ifdef BENCH_MAGICK
using ImOp = std::function<void(Magick::Image&)>;

ImOp imConvolve(std::vector<double> kernel, double divisor) {
    for (double& k : kernel)
        k /= divisor;
    return [kernel](Magick::Image& im) { im.convolve(3, kernel.data()); };
}
#endif

struct Row {
    const char* name;
    Family family;
    std::function<void(QImage&)> ours;
#ifdef BENCH_MAGICK
    ImOp magick;
#endif
    const char* magickName;
#ifdef BENCH_OPENCV
    CvOp opencv;
#endif
    const char* opencvName;
};

#if defined(BENCH_MAGICK)
#define IM(...) __VA_ARGS__,
#else
#define IM(...)
#endif
#if defined(BENCH_OPENCV)
#define CV(...) __VA_ARGS__,
#else
#define CV(...)
#endif

void swirlMap(float d, float radius, float& dx, float& dy) {
    const float f = 1.0f - std::sqrt(d) / radius, theta = float(M_PI / 2) * f * f;
    const float c = std::cos(theta), s = std::sin(theta), x = dx;
    dx = c * x - s * dy;
    dy = s * x + c * dy;
}

void implodeMap(float d, float radius, float& dx, float& dy) {
    const float factor = d == 0 ? 1.0f : std::pow(std::sin(float(M_PI / 2) * std::sqrt(d) / radius), -0.5f);
    dx *= factor;
    dy *= factor;
}

std::vector<Row> rows() {
    const std::vector<double> sharpen3{0, -1, 0, -1, 5, -1, 0, -1, 0};
    const std::vector<double> antialias3{1, 2, 1, 2, 8, 2, 1, 2, 1};
    (void)sharpen3;
    (void)antialias3;
    return {
        {"brightness +20", Family::Point, [](QImage& i) { filterBrightness(i, 20); },
         IM([](Magick::Image& im) { im.brightnessContrast(20 / 2.55, 0); }) "-brightness-contrast 7.8x0",
         CV([lut = lut4([](int v) { return v + 20; })](const cv::Mat& s, cv::Mat& d) {
             cv::LUT(s, lut, d);
         }) "LUT"},
        {"contrast 40", Family::Point, [](QImage& i) { filterContrast(i, 40); },
         IM([](Magick::Image& im) { im.brightnessContrast(0, 40 / 2.55); }) "-brightness-contrast 0x15.7",
         CV([lut = cv::Mat()](const cv::Mat& s, cv::Mat& d) mutable {
             const cv::Scalar m = cv::mean(s);
             lut = lut4([&](int v) { return int(m[0]) + (v - int(m[0])) * 256 / 216; }, lut);
             cv::LUT(s, lut, d);
         }) "mean+LUT"},
        {"gamma 2.2", Family::Point, [](QImage& i) { filterGamma(i, 2.2); },
         IM([](Magick::Image& im) { im.gamma(2.2); }) "-gamma 2.2",
         CV([lut = lut4([](int v) { return int(std::pow(v / 255.0, 1 / 2.2) * 255); })](
                const cv::Mat& s, cv::Mat& d) { cv::LUT(s, lut, d); }) "LUT"},
        {"colorize 10,0,0", Family::Point, [](QImage& i) { filterColorize(i, 10, 0, 0); },
         IM([](Magick::Image& im) {
             im.brightnessContrastChannel(Magick::BlueChannel, 10 / 2.55, 0);
         }) "-channel B -brightness-contrast",
         CV([](const cv::Mat& s, cv::Mat& d) { cv::add(s, cv::Scalar(10, 0, 0, 0), d); }) "add Scalar"},
        {"desaturate 0.5", Family::Point, [](QImage& i) { filterDesaturate(i, 0.5f); },
         IM([](Magick::Image& im) { im.modulate(100, 50, 100); }) "-modulate 100,50",
         CV([bgr = cv::Mat(), hsv = cv::Mat()](const cv::Mat& s, cv::Mat& d) mutable {
             cv::cvtColor(s, bgr, cv::COLOR_BGRA2BGR);
             cv::cvtColor(bgr, hsv, cv::COLOR_BGR2HSV);
             cv::multiply(hsv, cv::Scalar(1, 0.5, 1), hsv);
             cv::cvtColor(hsv, bgr, cv::COLOR_HSV2BGR);
             cv::cvtColor(bgr, d, cv::COLOR_BGR2BGRA);
         }) "cvtColor HSV x2"},
        {"grayscale", Family::Point, [](QImage& i) { filterGrayscale(i); },
         IM([](Magick::Image& im) { im.grayscale(MagickCore::Rec601LumaPixelIntensityMethod); }) "-grayscale",
         CV([grey = cv::Mat()](const cv::Mat& s, cv::Mat& d) mutable {
             cv::cvtColor(s, grey, cv::COLOR_BGRA2GRAY);
             cv::cvtColor(grey, d, cv::COLOR_GRAY2BGRA);
         }) "cvtColor GRAY x2"},
        {"auto-contrast", Family::Point, [](QImage& i) { filterAutoContrast(i); },
         IM([](Magick::Image& im) { im.autoLevel(); }) "-auto-level",
         CV(perChannel([](cv::Mat& p) { cv::normalize(p, p, 0, 255, cv::NORM_MINMAX); })) "normalize x3"},
        {"equalize", Family::Point, [](QImage& i) { filterEqualize(i); },
         IM([](Magick::Image& im) { im.equalize(); }) "-equalize",
         CV(perChannel([](cv::Mat& p) { cv::equalizeHist(p, p); })) "equalizeHist x3"},
        {"box blur r2", Family::Neighbourhood, [](QImage& i) { filterBlur(i, 2); }, IM(nullptr) "-",
         CV([](const cv::Mat& s, cv::Mat& d) { cv::blur(s, d, cv::Size(5, 5)); }) "blur 5x5"},
        {"sharpen", Family::Neighbourhood, [](QImage& i) { filterSharpen(i, 1); },
         IM(imConvolve(sharpen3, 1)) "-convolve 3x3",
         CV(filter2D(cv::Mat(3, 3, CV_32F, cv::Scalar(0)) +
                     (cv::Mat_<float>(3, 3) << 0, -1, 0, -1, 5, -1, 0, -1, 0))) "filter2D 3x3"},
        {"edge", Family::Neighbourhood, [](QImage& i) { filterEdge(i); },
         IM([](Magick::Image& im) { im.edge(1); }) "-edge 1",
         CV([gx = cv::Mat(), gy = cv::Mat(), ax = cv::Mat(), ay = cv::Mat()](const cv::Mat& s,
                                                                             cv::Mat& d) mutable {
             cv::Sobel(s, gx, CV_16S, 1, 0, 3, 1, 0, cv::BORDER_REPLICATE);
             cv::Sobel(s, gy, CV_16S, 0, 1, 3, 1, 0, cv::BORDER_REPLICATE);
             cv::convertScaleAbs(gx, ax);
             cv::convertScaleAbs(gy, ay);
             cv::add(ax, ay, d);
         }) "Sobel x2 + |gx|+|gy|"},
        {"despeckle", Family::Neighbourhood, [](QImage& i) { filterDespeckle(i); },
         IM([](Magick::Image& im) { im.despeckle(); }) "-despeckle", CV(nullptr) "-"},
        {"antialias", Family::Neighbourhood, [](QImage& i) { filterAntialias(i); },
         IM(imConvolve(antialias3, 20)) "-convolve 3x3",
         CV(filter2D((cv::Mat_<float>(3, 3) << 1, 2, 1, 2, 8, 2, 1, 2, 1) / 20)) "filter2D 3x3"},
        {"gaussian blur s2", Family::Neighbourhood, [](QImage& i) { filterGaussianBlur(i, 0, 2); },
         IM([](Magick::Image& im) { im.blur(0, 2); }) "-blur 0x2", CV([](const cv::Mat& s, cv::Mat& d) {
             cv::GaussianBlur(s, d, cv::Size(11, 11), 2, 2, cv::BORDER_REPLICATE);
         }) "GaussianBlur 11x11"},
        {"gaussian sharpen s1", Family::Neighbourhood, [](QImage& i) { filterGaussianSharpen(i, 0, 1); },
         IM([](Magick::Image& im) { im.sharpen(0, 1); }) "-sharpen 0x1",
         CV(gaussianSharpen(9, 1)) "GaussianBlur 9x9 + addWeighted"},
        {"emboss s1", Family::Neighbourhood, [](QImage& i) { filterEmboss(i, 0, 1); },
         IM([](Magick::Image& im) { im.emboss(0, 1); }) "-emboss 0x1", CV(nullptr) "-"},
        {"charcoal", Family::Neighbourhood, [](QImage& i) { filterCharcoal(i); },
         IM([](Magick::Image& im) { im.charcoal(0, 1); }) "-charcoal 0x1", CV(nullptr) "-"},
        {"swirl 90", Family::Distortion, [](QImage& i) { filterSwirl(i, 90); },
         IM([](Magick::Image& im) { im.swirl(90); }) "-swirl 90", CV(remapOp(swirlMap)) "maps + remap"},
        {"implode 0.5", Family::Distortion, [](QImage& i) { filterImplode(i, 0.5f); },
         IM([](Magick::Image& im) { im.implode(0.5); }) "-implode 0.5",
         CV(remapOp(implodeMap)) "maps + remap"},
    };
}

// One side of a comparison: prepare() runs untimed before each timed run(); the side sets its
// own thread count before each run.
struct Contender {
    std::function<void()> prepare, run;
    std::vector<double> ms;

    void time() {
        prepare();
        const double t0 = nowMs();
        run();
        ms.push_back(nowMs() - t0);
    }
    // Median in ms per megapixel; NaN for a side that never ran.
    double median() const { return middle(ms) / Megapixels; }

    // Median over the rounds of this side's time over `other`'s in the same round: sides timed one
    // after the other see the same load, which a ratio of the two medians would not pair up.
    double ratio(const Contender& other) const {
        std::vector<double> ratios;
        for (size_t r = 0; r < std::min(ms.size(), other.ms.size()); ++r)
            ratios.push_back(ms[r] / other.ms[r]);
        return middle(ratios);
    }

private:
    static double middle(std::vector<double> v) {
        if (v.empty())
            return std::numeric_limits<double>::quiet_NaN();
        std::sort(v.begin(), v.end());
        const size_t n = v.size();
        return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
    }
};

// memcpy of the image, its rows split over `threads` threads.
void copyRows(uchar* to, const uchar* from, size_t bytes, int threads) {
    if (threads <= 1) {
        std::memcpy(to, from, bytes);
        return;
    }
    std::vector<std::thread> pool;
    const size_t part = bytes / size_t(threads) / 64 * 64;
    for (int t = 0; t < threads; ++t) {
        const size_t begin = part * size_t(t), end = t + 1 == threads ? bytes : begin + part;
        pool.emplace_back([=] { std::memcpy(to + begin, from + begin, end - begin); });
    }
    for (std::thread& t : pool)
        t.join();
}

void printFigure(double v, const char* format = " %8.2f") {
    if (std::isfinite(v))
        std::printf(format, v);
    else
        std::printf(" %8s", "-");
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    const std::string only = argc > 2 ? argv[2] : "";
    const double none = std::numeric_limits<double>::quiet_NaN();
    const int cores = int(std::max(1u, std::thread::hardware_concurrency()));
    const int modes[2] = {1, cores};
    const QImage base = seededImage();

#ifdef BENCH_MAGICK
    Magick::InitializeMagick(*argv);
    Magick::Image magickBase(Side, Side, "BGRA", Magick::CharPixel, base.constBits());
#endif
#ifdef BENCH_OPENCV
    const cv::Mat cvBase(Side, Side, CV_8UC4, const_cast<uchar*>(base.constBits()), base.bytesPerLine());
#endif
    std::vector<uchar> from(base.sizeInBytes()), to(base.sizeInBytes());

    std::printf(
        "%d x %d ARGB32, ms per megapixel, median of %d interleaved rounds, on 1 thread | %d threads\n", Side,
        Side, rounds, cores);
    std::printf("%-20s %8s %8s %8s %8s %8s | %8s %8s %8s %8s %8s  %s\n", "filter", "ours", "OpenCV", "Magick",
                "ours/CV", "/memcpy", "ours", "OpenCV", "Magick", "ours/CV", "/memcpy",
                "peers (OpenCV | ImageMagick)");
    for (const Row& row : rows()) {
        if (!only.empty() && std::string(row.name).find(only) == std::string::npos)
            continue;
        // ours, OpenCV, ImageMagick, memcpy for each thread mode.
        std::vector<Contender> sides(8);
        QImage work;
        for (int m = 0; m < 2; ++m) {
            const int threads = modes[m];
            Contender* side = &sides[4 * m];
            side[0] = {[&, threads] {
                           work = base.copy();
                           setFilterThreads(threads);
                       },
                       [&] { row.ours(work); },
                       {}};
#ifdef BENCH_OPENCV
            if (row.opencv) {
                auto src = std::make_shared<cv::Mat>(), dst = std::make_shared<cv::Mat>();
                side[1] = {[=, &cvBase] {
                               *src = cvBase.clone();
                               cv::setNumThreads(threads);
                           },
                           [=, &row] { row.opencv(*src, *dst); },
                           {}};
            }
#endif
#ifdef BENCH_MAGICK
            if (row.magick) {
                auto im = std::make_shared<Magick::Image>();
                side[2] = {[=, &magickBase] {
                               *im = magickBase;
                               im->modifyImage();
                               Magick::ResourceLimits::thread(threads);
                           },
                           [=, &row] { row.magick(*im); },
                           {}};
            }
#endif
            if (row.family == Family::Point)
                side[3] = {[&] { std::memcpy(from.data(), base.constBits(), from.size()); },
                           [&, threads] { copyRows(to.data(), from.data(), to.size(), threads); },
                           {}};
        }
        // An untimed first call allocates results, temporaries and threads (ImageMagick's are too
        // slow to run twice).
        for (int s = 0; s < 8; ++s)
            if (sides[s].run && s % 4 != 2) {
                sides[s].time();
                sides[s].ms.clear();
            }
        for (int r = 0; r < rounds; ++r)
            for (Contender& side : sides)
                if (side.run)
                    side.time();
        std::printf("%-20s", row.name);
        for (int m = 0; m < 2; ++m) {
            const Contender& ours = sides[4 * m];
            printFigure(ours.median());
            printFigure(sides[4 * m + 1].median());
            printFigure(sides[4 * m + 2].median());
            printFigure(ours.ratio(sides[4 * m + 1]));
            printFigure(row.family == Family::Point ? ours.ratio(sides[4 * m + 3]) : none, " %7.1fx");
            std::printf(m == 0 ? " |" : "");
        }
        std::printf("  %s | %s\n", row.opencvName, row.magickName);
        std::fflush(stdout);
    }
    setFilterThreads(0);
    return 0;
}
