#include "ItemFactory.h"
#include "ToolsCatalogue.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QPixmap>
#include <QRegularExpression>
#include <QTest>

namespace {

int opaquePixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 128;
    }
    return count;
}

// The icons' names, without the @2x files.
QStringList iconNames() {
    return QDir(":/", "*.png")
        .entryList(QDir::Files)
        .filter(QRegularExpression("^[^@]*$"))
        .replaceInStrings(".png", "");
}

} // namespace

class TestIcons : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { InitToolsNames(); }
    void everyNamedIconIsThere();
    void loads_data();
    void loads();
    void highDensityScreenGetsDoubleIcon();
    void contactSheet();
};

// The catalogue's icons, the fallback, the rotation cursor and the text dialog's buttons.
void TestIcons::everyNamedIconIsThere() {
    QStringList paths = {":/pencil.png", ":/cursor_rotate.png", ":/bold.png", ":/italic.png",
                         ":/colormodel.png"};
    for (const QString& className : toolFactoryClassNames() + mesureFactoryClassNames())
        paths << getIconPathFor(className);
    for (const QString& path : paths)
        QVERIFY2(QFile::exists(path), qPrintable(path));
}

void TestIcons::loads_data() {
    QTest::addColumn<QString>("name");
    for (const QString& name : iconNames())
        QTest::newRow(qPrintable(name)) << name;
}

// Each icon comes at 1x and 2x, 32 px except the text dialog's 16 px buttons, drawn on a
// transparent ground: a visible mark, not a filled square.
void TestIcons::loads() {
    QFETCH(QString, name);
    const int size = QStringList{"bold", "italic", "colormodel"}.contains(name) ? 16 : 32;
    const QPixmap base(":/" + name + ".png");
    const QPixmap doubled(":/" + name + "@2x.png");
    QCOMPARE(base.size(), QSize(size, size));
    QCOMPARE(doubled.size(), QSize(2 * size, 2 * size));
    QVERIFY(base.hasAlphaChannel());
    const int opaque = opaquePixels(base.toImage());
    QVERIFY(opaque > size && opaque < size * size * 3 / 4);
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

// Every icon at 16 px, 32 px and from its @2x file, on a light and a dark ground, for review by eye:
// icons_contact_sheet.png in the test's working folder.
void TestIcons::contactSheet() {
    const QStringList names = iconNames();
    const int cell = 180;
    const int rowHeight = 84;
    const int columns = 2;
    QImage sheet(columns * 2 * cell, (names.size() + columns - 1) / columns * rowHeight,
                 QImage::Format_ARGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    for (int i = 0; i < names.size(); ++i) {
        const QString& name = names[i];
        // Read as images: the @2x file must not stand in for the 1x one here.
        QImage base(":/" + name + ".png");
        QImage doubled(":/" + name + "@2x.png");
        base.setDevicePixelRatio(1);
        doubled.setDevicePixelRatio(1);
        const int x0 = (i % columns) * 2 * cell;
        const int y0 = (i / columns) * rowHeight;
        for (int ground = 0; ground < 2; ++ground) {
            const int x = x0 + ground * cell;
            painter.fillRect(x, y0, cell, rowHeight, ground ? QColor(40, 44, 52) : QColor(Qt::white));
            painter.drawImage(QRect(x + 4, y0 + 24, 16, 16), base);
            painter.drawImage(QRect(x + 28, y0 + 16, 32, 32), base);
            painter.drawImage(QPoint(x + 68, y0 + 2), doubled);
            painter.setPen(ground ? Qt::white : Qt::black);
            painter.drawText(QRect(x + 4, y0 + 66, cell - 8, 16), Qt::AlignLeft, name);
        }
    }
    painter.end();
    QVERIFY(sheet.save("icons_contact_sheet.png"));
}

int main(int argc, char** argv) {
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication app(argc, argv);
    TestIcons test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_icons.moc"
