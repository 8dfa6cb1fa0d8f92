#pragma once

#include "Geometry.h"
#include "NearPoints.h"

#include <QTest>

#include <cmath>
#include <limits>

// Shared by the geometry tests: tolerant point comparison, a few constructions, and tables of
// hand-computed results where each row holds what a call returned and what it must return.

// Distance from p to the infinite line ab.
inline double offLine(const QPointF& p, const QPointF& a, const QPointF& b) {
    const QPointF d = b - a;
    return std::fabs(d.x() * (p.y() - a.y()) - d.y() * (p.x() - a.x())) / std::hypot(d.x(), d.y());
}

inline QPointF onCircle(const QPointF& c, double r, double degrees) {
    const double a = degrees * 3.141592653589793 / 180;
    return QPointF(c.x() + r * std::cos(a), c.y() + r * std::sin(a));
}

// Stands for "no point" in the tables: the call reported none.
inline QPointF none() {
    return QPointF(std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN());
}

template <typename T> void resultColumns() {
    QTest::addColumn<T>("got");
    QTest::addColumn<T>("want");
}

inline void row(const char* name, double got, double want) {
    QTest::newRow(name) << got << want;
}

inline void row(const char* name, const QPointF& got, const QPointF& want) {
    QTest::newRow(name) << got << want;
}

inline void row(const char* name, const QString& got, const QString& want) {
    QTest::newRow(name) << got << want;
}

// QCOMPARE on doubles is relative (and takes NaN as equal to NaN); exact quirks are tested apart.
inline void compareValue() {
    QFETCH(double, got);
    QFETCH(double, want);
    QCOMPARE(got, want);
}

inline bool matches(const QPointF& got, const QPointF& want) {
    return std::isnan(want.x()) ? std::isnan(got.x()) : near(got, want);
}

inline void comparePoint() {
    QFETCH(QPointF, got);
    QFETCH(QPointF, want);
    QVERIFY2(matches(got, want),
             qPrintable(QString("(%1, %2)").arg(got.x(), 0, 'g', 17).arg(got.y(), 0, 'g', 17)));
}
