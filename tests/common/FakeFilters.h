#pragma once

#include "mainwindow/ViewFilters.h"

#include <QList>
#include <set>

// Filter checks held in plain members, for painters tested without a menu.
struct FakeFilters : ViewFilters {
    struct Item {
        QString caption;
        bool checked = false;
    };
    QList<Item> v1; // by category number; element 0 unused
    std::set<Kind> kinds;

    int lastCategory() const override { return int(v1.size()) - 1; }
    bool categoryShown(int index) const override { return v1[index].checked; }
    QString categoryCaption(int index) const override { return v1[index].caption; }
    void showCategory(int index) override { v1[index].checked = true; }
    bool kindShown(Kind kind) const override { return kinds.count(kind) > 0; }
    void showKind(Kind kind) override { kinds.insert(kind); }
};
