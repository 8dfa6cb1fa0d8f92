#include "DataColumns.h"
#include "Types.h"

#include <QTest>

class TestTypes : public QObject {
    Q_OBJECT
private slots:
    // Names match exactly, anything else reads as unit 0; an unknown unit has factor 0.
    void unitTable() {
        const QList<QPair<QString, int>> names = {{"mm", 1}, {"in", 3}, {"pt", 5},
                                                  {"MM", 0}, {"", 0},   {"furlong", 0}};
        for (const auto& [name, unit] : names)
            QCOMPARE(int(Types::unitOfLenthFromString(name)), unit);
        const auto unknown = Types::UnitsOfLength(42);
        QCOMPARE(Types::unitNameOfLength(unknown), QString());
        QCOMPARE(Types::convertAbsToUnitsOfLength(5, unknown), 0.0);
        QVERIFY(qIsInf(Types::convertMMToDistance(5, unknown)));
        QCOMPARE(Types::convertAbsToUnitsOfLength(2, Types::Inch), 50.8);
    }

    void conversions_data() {
        addColumns<double, int, int, double>("value", "from", "to", "expected");
        QTest::newRow("inch to cm") << 1.0 << 3 << 2 << 2.54;
        QTest::newRow("72 points make an inch") << 72.0 << 5 << 3 << 1.0;
        QTest::newRow("same unit untouched") << 3.3 << 4 << 4 << 3.3;
        QTest::newRow("micrometres to mm") << 1500.0 << 0 << 1 << 1.5;
        QTest::newRow("mm to micrometres") << 1.5 << 1 << 0 << 1500.0;
        QTest::newRow("foot to inches") << 1.0 << 4 << 3 << 12.0;
    }

    void conversions() {
        QFETCH(double, value);
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(double, expected);
        const auto f = Types::UnitsOfLength(from);
        const auto t = Types::UnitsOfLength(to);
        QVERIFY(qAbs(Types::convertBetweenUnitsOfLength(value, f, t) - expected) < 1e-12);
        const QSizeF s = Types::convertBetweenUnitsOfLength(QSizeF(value, 2 * value), f, t);
        QVERIFY(qAbs(s.width() - expected) < 1e-12 && qAbs(s.height() - 2 * expected) < 1e-12);
        // Through the millimetre and back.
        QVERIFY(qAbs(Types::convertMMToDistance(Types::convertDistanceToMM(value, f), f) - value) < 1e-12);
        QCOMPARE(Types::convertSizeToMM(QSizeF(value, value), f).width(),
                 Types::convertDistanceToMM(value, f));
    }

    void paperSize_data() {
        addColumns<QString, int, int, QSizeF>("name", "orientation", "unit", "expected");
        QTest::newRow("A4 portrait mm") << "DIN A4" << 0 << 1 << QSizeF(210, 297);
        QTest::newRow("A4 landscape mm") << "DIN A4" << 1 << 1 << QSizeF(297, 210);
        QTest::newRow("A4 landscape inches") << "DIN A4" << 1 << 3 << QSizeF(297 / 25.4, 210 / 25.4);
        QTest::newRow("Letter cm") << "Letter" << 0 << 2 << QSizeF(21.6, 27.9);
        QTest::newRow("unknown gives null size") << "A0" << 0 << 1 << QSizeF(-1, -1);
        QTest::newRow("unknown, swapped and divided") << "A0" << 1 << 2 << QSizeF(-0.1, -0.1);
    }

    void paperSize() {
        QFETCH(QString, name);
        QFETCH(int, orientation);
        QFETCH(int, unit);
        QFETCH(QSizeF, expected);
        const QSizeF s =
            Types::paperSize(name, QPageLayout::Orientation(orientation), Types::UnitsOfLength(unit));
        QVERIFY2(qAbs(s.width() - expected.width()) < 1e-9 && qAbs(s.height() - expected.height()) < 1e-9,
                 qPrintable(QString("%1 x %2").arg(s.width()).arg(s.height())));
    }
};

QTEST_GUILESS_MAIN(TestTypes)
#include "tst_types.moc"
