#include "ToolsCatalogue.h"

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

// All icons at 16, 32 and 64 px on a light and a dark ground, for review by eye.
void TestIcons::contactSheet() {
    const int cell = 120, rowHeight = 84;
    const int count = int(std::size(icons));
    QImage sheet(2 * cell, count * rowHeight / 2 + rowHeight, QImage::Format_ARGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (int i = 0; i < count; ++i) {
        const QString name = QString::fromLatin1(icons[i].name);
        const QRect area((i % 2) * cell, (i / 2) * rowHeight, cell, rowHeight);
        painter.fillRect(area.adjusted(0, 0, 0, -rowHeight / 2 - 2), QColor(250, 250, 250));
        painter.fillRect(area.adjusted(0, rowHeight / 2 - 2, 0, -16), QColor(60, 63, 68));
        const QPixmap base(":/" + name + ".png"), doubled(":/" + name + "@2x.png");
        const QPixmap small = base.scaled(16, 16, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        for (const int top : {area.top() + 2, area.top() + rowHeight / 2 - 1}) {
            painter.drawPixmap(area.left() + 4, top + 10, small);
            painter.drawPixmap(area.left() + 24, top + 4,
                               base.scaled(32, 32, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        }
        painter.drawPixmap(area.left() + 56, area.top() + 2, doubled.scaled(64, 64));
        painter.setPen(Qt::black);
        painter.drawText(QRect(area.left() + 2, area.bottom() - 14, cell - 4, 14), Qt::AlignLeft, name);
    }
    painter.end();
    const QString path = QDir::current().absoluteFilePath("icons_contact_sheet.png");
    QVERIFY(sheet.save(path));
    qInfo("contact sheet: %s", qPrintable(path));
}

QTEST_MAIN(TestIcons)
#include "tst_icons.moc"
