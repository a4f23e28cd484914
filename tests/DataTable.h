#pragma once

#include <QTest>

template <typename> using ColumnName = const char *;

// A data table's columns in one line: columns<int, QString>("count", "name").
template <typename... T> void columns(ColumnName<T>... names)
{
    (QTest::addColumn<T>(names), ...);
}
