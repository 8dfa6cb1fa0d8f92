#pragma once

#include <QTest>

namespace detail {
template <typename> struct ColumnName { using type = const char*; };
} // namespace detail

// Declares a data table's columns in one go, one name for each type, in order:
// addColumns<QString, double>("className", "factor").
template <typename... T> void addColumns(typename detail::ColumnName<T>::type... names) {
    (QTest::addColumn<T>(names), ...);
}
