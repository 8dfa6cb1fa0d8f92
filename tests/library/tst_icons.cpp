#include "ToolsCatalogue.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QPixmap>
#include <QTest>

namespace {

struct Icon {
    const char* name;
    int size;
};

// Every icon the library's items and dialogs name, with its size at a device pixel ratio of 1.
const Icon icons[] = {
    {"line", 32},      {"point", 32},    {"ellipse", 32},    {"circle", 32},     {"circleP", 32},
    {"arc", 32},       {"curve", 32},    {"rectangle", 32},  {"polyclosed", 32}, {"poly", 32},
    {"orthosnap", 32}, {"distance", 32}, {"angle", 32},      {"perpline", 32},   {"tanline", 32},
    {"parallel", 32},  {"font", 32},     {"arrow", 32},      {"smiley", 32},     {"image", 32},
    {"zoomplus", 32},  {"qrule", 32},    {"protractor", 32}, {"pencil", 32},     {"cursor_rotate", 32},
    {"bold", 16},      {"italic", 16},   {"colormodel", 16},
};

int opaquePixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 128;
    }
    return count;
}

} // namespace

class TestIcons : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { InitToolsNames(); }
    void loads_data();
    void loads();
    void highDensityScreenGetsDoubleIcon();
    void contactSheet();
};

void TestIcons::loads_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("size");
    for (const Icon& icon : icons)
        QTest::newRow(icon.name) << QString::fromLatin1(icon.name) << icon.size;
}

void TestIcons::loads() {
    QFETCH(QString, name);
    QFETCH(int, size);
    const QPixmap base(":/" + name + ".png");
    const QPixmap doubled(":/" + name + "@2x.png");
    QVERIFY(!base.isNull());
    QVERIFY(!doubled.isNull());
    QCOMPARE(base.size(), QSize(size, size));
    QCOMPARE(doubled.size(), QSize(2 * size, 2 * size));
    QVERIFY(base.hasAlphaChannel());
    // Drawn, but not a filled square: a transparent corner and a visible mark.
    const QImage image = base.toImage();
    QVERIFY(opaquePixels(image) > size);
    QVERIFY(opaquePixels(image) < size * size * 3 / 4);
}

// The test runs with a scale factor of 2 (see main).
void TestIcons::highDensityScreenGetsDoubleIcon() {
    QCOMPARE(qGuiApp->devicePixelRatio(), 2.0);
    const QPixmap icon = getIconFor("LineItem");
    QCOMPARE(icon.devicePixelRatio(), 2.0);
    QCOMPARE(icon.size(), QSize(64, 64));
    QCOMPARE(icon.deviceIndependentSize(), QSizeF(32, 32));
    QCOMPARE(icon.toImage(), QPixmap(":/line@2x.png").toImage());
}

// Every icon at 16 and 32 px on a light and a dark ground, its @2x image and its 16 px pixels
// magnified, for review by eye.
void TestIcons::contactSheet() {
    const int count = int(std::size(icons));
    const int rows = (count + 1) / 2, columnWidth = 320, rowHeight = 84;
    QImage sheet(2 * columnWidth, rows * rowHeight, QImage::Format_ARGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (int i = 0; i < count; ++i) {
        const QString name = QString::fromLatin1(icons[i].name);
        const QPoint origin((i / rows) * columnWidth, (i % rows) * rowHeight);
        // Drawn in device pixels: the @2x file name alone gives the image a ratio of 2.
        QPixmap doubled(":/" + name + "@2x.png");
        doubled.setDevicePixelRatio(1);
        const auto at = [&doubled](int size) {
            return doubled.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        };
        painter.fillRect(QRect(origin + QPoint(248, 0), QSize(64, 64)), QColor(60, 63, 68));
        for (const int left : {0, 248}) {
            painter.drawPixmap(origin + QPoint(left + 6, 24), at(16));
            painter.drawPixmap(origin + QPoint(left + 28, 16), at(32));
        }
        painter.drawPixmap(origin + QPoint(64, 0), doubled);
        painter.drawPixmap(origin + QPoint(140, 0),
                           at(16).scaled(64, 64, Qt::KeepAspectRatio, Qt::FastTransformation));
        painter.setPen(Qt::black);
        painter.drawText(QRect(origin + QPoint(4, 66), QSize(columnWidth - 8, 16)), Qt::AlignLeft, name);
    }
    painter.end();
    const QString path = QDir::current().absoluteFilePath("icons_contact_sheet.png");
    QVERIFY(sheet.save(path));
    qInfo("contact sheet: %s", qPrintable(path));
}

int main(int argc, char** argv) {
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication app(argc, argv);
    TestIcons test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_icons.moc"
