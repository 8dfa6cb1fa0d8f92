// Times every image filter on one seeded 4096 x 4096 ARGB32 image, single-threaded, and prints the
// best of several runs in ms per megapixel next to the nearest ImageMagick and OpenCV operations
// and a memcpy of the same image. Usage: bench_filters [runs] [name filter]

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
#include <random>
#include <string>
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

// Best of `runs`; prepare() runs untimed before each timed call.
double bestOf(int runs, const std::function<void()>& prepare, const std::function<void()>& run) {
    double best = std::numeric_limits<double>::infinity();
    for (int i = 0; i < runs; ++i) {
        prepare();
        const double t0 = nowMs();
        run();
        best = std::min(best, nowMs() - t0);
    }
    return best / Megapixels;
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
using CvOp = std::function<void(cv::Mat& src, cv::Mat& dst)>;

cv::Mat lut4(const std::function<int(int)>& colour) {
    cv::Mat lut(1, 256, CV_8UC4);
    for (int i = 0; i < 256; ++i) {
        const uchar c = cv::saturate_cast<uchar>(colour(i));
        lut.at<cv::Vec4b>(i) = cv::Vec4b(c, c, c, uchar(i));
    }
    return lut;
}

CvOp perChannel(const std::function<void(cv::Mat&)>& op) {
    return [op](cv::Mat& src, cv::Mat& dst) {
        std::vector<cv::Mat> planes;
        cv::split(src, planes);
        for (int c = 0; c < 3; ++c)
            op(planes[c]);
        cv::merge(planes, dst);
    };
}

CvOp filter2D(cv::Mat kernel) {
    return [kernel](cv::Mat& src, cv::Mat& dst) {
        cv::filter2D(src, dst, -1, kernel, cv::Point(-1, -1), 0, cv::BORDER_REPLICATE);
    };
}

// The same weights as the library's sharpen kernel, normalised, at width 9 for sigma 1.
cv::Mat gaussianSharpenKernel(int width, double sigma) {
    cv::Mat k(width, width, CV_32F);
    double sum = 0;
    for (int v = 0; v < width; ++v)
        for (int u = 0; u < width; ++u) {
            const double du = u - width / 2, dv = v - width / 2;
            k.at<float>(v, u) = float(std::exp(-(du * du + dv * dv) / (2 * sigma * sigma)));
            sum += k.at<float>(v, u);
        }
    k.at<float>(width / 2, width / 2) = float(-2 * sum);
    return k / cv::sum(k)[0];
}

// Builds the displacement maps with the same formulas as the library, then remaps.
CvOp remapOp(const std::function<void(float d, float radius, float& dx, float& dy)>& map) {
    return [map](cv::Mat& src, cv::Mat& dst) {
        cv::Mat mapX(src.size(), CV_32F), mapY(src.size(), CV_32F);
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
         CV([](cv::Mat& s, cv::Mat& d) { cv::LUT(s, lut4([](int v) { return v + 20; }), d); }) "LUT"},
        {"contrast 40", Family::Point, [](QImage& i) { filterContrast(i, 40); },
         IM([](Magick::Image& im) { im.brightnessContrast(0, 40 / 2.55); }) "-brightness-contrast 0x15.7",
         CV([](cv::Mat& s, cv::Mat& d) {
             const cv::Scalar m = cv::mean(s);
             cv::LUT(s, lut4([&](int v) { return int(m[0]) + (v - int(m[0])) * 256 / 216; }), d);
         }) "mean+LUT"},
        {"gamma 2.2", Family::Point, [](QImage& i) { filterGamma(i, 2.2); },
         IM([](Magick::Image& im) { im.gamma(2.2); }) "-gamma 2.2", CV([](cv::Mat& s, cv::Mat& d) {
             cv::LUT(s, lut4([](int v) { return int(std::pow(v / 255.0, 1 / 2.2) * 255); }), d);
         }) "LUT"},
        {"colorize 10,0,0", Family::Point, [](QImage& i) { filterColorize(i, 10, 0, 0); },
         IM([](Magick::Image& im) {
             im.brightnessContrastChannel(Magick::BlueChannel, 10 / 2.55, 0);
         }) "-channel B -brightness-contrast",
         CV([](cv::Mat& s, cv::Mat& d) { cv::add(s, cv::Scalar(10, 0, 0, 0), d); }) "add Scalar"},
        {"desaturate 0.5", Family::Point, [](QImage& i) { filterDesaturate(i, 0.5f); },
         IM([](Magick::Image& im) { im.modulate(100, 50, 100); }) "-modulate 100,50",
         CV([](cv::Mat& s, cv::Mat& d) {
             cv::Mat bgr, hsv;
             cv::cvtColor(s, bgr, cv::COLOR_BGRA2BGR);
             cv::cvtColor(bgr, hsv, cv::COLOR_BGR2HSV);
             cv::multiply(hsv, cv::Scalar(1, 0.5, 1), hsv);
             cv::cvtColor(hsv, bgr, cv::COLOR_HSV2BGR);
             cv::cvtColor(bgr, d, cv::COLOR_BGR2BGRA);
         }) "cvtColor HSV x2"},
        {"grayscale", Family::Point, [](QImage& i) { filterGrayscale(i); },
         IM([](Magick::Image& im) { im.grayscale(MagickCore::Rec601LumaPixelIntensityMethod); }) "-grayscale",
         CV([](cv::Mat& s, cv::Mat& d) {
             cv::Mat grey;
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
         CV([](cv::Mat& s, cv::Mat& d) { cv::blur(s, d, cv::Size(5, 5)); }) "blur 5x5"},
        {"sharpen", Family::Neighbourhood, [](QImage& i) { filterSharpen(i, 1); },
         IM(imConvolve(sharpen3, 1)) "-convolve 3x3",
         CV(filter2D(cv::Mat(3, 3, CV_32F, cv::Scalar(0)) +
                     (cv::Mat_<float>(3, 3) << 0, -1, 0, -1, 5, -1, 0, -1, 0))) "filter2D 3x3"},
        {"edge", Family::Neighbourhood, [](QImage& i) { filterEdge(i); },
         IM([](Magick::Image& im) { im.edge(1); }) "-edge 1", CV([](cv::Mat& s, cv::Mat& d) {
             cv::Mat gx, gy, ax, ay;
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
         IM([](Magick::Image& im) { im.blur(0, 2); }) "-blur 0x2", CV([](cv::Mat& s, cv::Mat& d) {
             cv::GaussianBlur(s, d, cv::Size(11, 11), 2, 2, cv::BORDER_REPLICATE);
         }) "GaussianBlur 11x11"},
        {"gaussian sharpen s1", Family::Neighbourhood, [](QImage& i) { filterGaussianSharpen(i, 0, 1); },
         IM([](Magick::Image& im) { im.sharpen(0, 1); }) "-sharpen 0x1",
         CV(filter2D(gaussianSharpenKernel(9, 1))) "filter2D 9x9"},
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

void printFigure(double v) {
    if (std::isfinite(v))
        std::printf(" %9.2f", v);
    else
        std::printf(" %9s", "-");
}

} // namespace

int main(int argc, char** argv) {
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    const std::string only = argc > 2 ? argv[2] : "";
    const double none = std::numeric_limits<double>::quiet_NaN();
    const QImage base = seededImage();

#ifdef BENCH_MAGICK
    setenv("MAGICK_THREAD_LIMIT", "1", 1);
    Magick::InitializeMagick(*argv);
    Magick::ResourceLimits::thread(1);
    Magick::Image magickBase(Side, Side, "BGRA", Magick::CharPixel, base.constBits());
#endif
#ifdef BENCH_OPENCV
    cv::setNumThreads(1);
    const cv::Mat cvBase(Side, Side, CV_8UC4, const_cast<uchar*>(base.constBits()), base.bytesPerLine());
#endif

    std::vector<uchar> from(base.sizeInBytes()), to(base.sizeInBytes());
    std::memcpy(from.data(), base.constBits(), from.size());
    const double floor = bestOf(
        runs, [] {}, [&] { std::memcpy(to.data(), from.data(), to.size()); });

    std::printf("%d x %d ARGB32, best of %d runs, ms per megapixel, single thread\n", Side, Side, runs);
    std::printf("memcpy floor %.2f ms/MP\n\n", floor);
    std::printf("%-20s %9s %9s %9s %8s %8s  %s\n", "filter", "ours", "Magick", "OpenCV", "IM/ours", "ours/CV",
                "peers (ImageMagick | OpenCV)");
    for (const Row& row : rows()) {
        if (!only.empty() && std::string(row.name).find(only) == std::string::npos)
            continue;
        QImage work;
        const double ours = bestOf(
            runs, [&] { work = base.copy(); }, [&] { row.ours(work); });
        double magick = none, opencv = none;
#ifdef BENCH_MAGICK
        if (row.magick) {
            Magick::Image im;
            magick = bestOf(
                std::min(runs, 3),
                [&] {
                    im = magickBase;
                    im.modifyImage();
                },
                [&] { row.magick(im); });
        }
#endif
#ifdef BENCH_OPENCV
        if (row.opencv) {
            cv::Mat src, dst;
            opencv = bestOf(
                runs, [&] { src = cvBase.clone(); }, [&] { row.opencv(src, dst); });
        }
#endif
        std::printf("%-20s", row.name);
        printFigure(ours);
        printFigure(magick);
        printFigure(opencv);
        printFigure(magick / ours);
        printFigure(ours / opencv);
        std::printf("  %s | %s", row.magickName, row.opencvName);
        if (row.family == Family::Point)
            std::printf("  [%.1fx memcpy]", ours / floor);
        std::printf("\n");
    }
    return 0;
}
