#include "ItemFactory.h"
#include "ToolsCatalogue.h"

#include <QApplication>
#include <QDir>
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
    // The catalogue's icons, the fallback, the rotation cursor and the text dialog's buttons.
    void everyNamedIconIsThere() {
        QStringList paths = {":/pencil.png", ":/cursor_rotate.png", ":/bold.png", ":/italic.png",
                             ":/colormodel.png"};
        for (const QString& className : toolFactoryClassNames() + mesureFactoryClassNames())
            paths << getIconPathFor(className);
        for (const QString& path : paths)
            QVERIFY2(QFile::exists(path), qPrintable(path));
    }

    void loads_data() {
        QTest::addColumn<QString>("name");
        for (const QString& name : iconNames())
            QTest::newRow(qPrintable(name)) << name;
    }

    // Each icon comes at 1x and 2x, 32 px except the text dialog's 16 px buttons, drawn on a
    // transparent ground: a visible mark, not a filled square.
    void loads() {
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
    void highDensityScreenGetsDoubleIcon() {
        QCOMPARE(qGuiApp->devicePixelRatio(), 2.0);
        const QPixmap icon = getIconFor("LineItem");
        QCOMPARE(icon.devicePixelRatio(), 2.0);
        QCOMPARE(icon.size(), QSize(64, 64));
        QCOMPARE(icon.deviceIndependentSize(), QSizeF(32, 32));
        QCOMPARE(icon.toImage(), QPixmap(":/line@2x.png").toImage());
    }
};

int main(int argc, char** argv) {
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication app(argc, argv);
    TestIcons test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_icons.moc"
