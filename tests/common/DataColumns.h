#pragma once

#include <QTest>

namespace detail {
template <typename> struct ColumnName { using type = const char*; };
} // namespace detail

// Declares a data table's columns in one go, one name for each type, in order, and returns the
// function that adds a row of values converted to those types:
// const auto row = addColumns<QString, double>("className", "factor"); row("tag", "LineItem", 0.5);
template <typename... T> auto addColumns(typename detail::ColumnName<T>::type... names) {
    (QTest::addColumn<T>(names), ...);
    return [](const char* tag, T... values) { (QTest::newRow(tag) << ... << values); };
}
