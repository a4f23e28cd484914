#pragma once

#include <QList>
#include <QString>

// The View menu's checks: all there is of the filter state.
struct ViewFilters {
    struct CategoryItem {
        QString caption;
        bool checked = false;
    };
    QList<CategoryItem> v1; // by the menu array's index
    bool weekly = false;
    bool mon = false;
    bool yearly = false;
};
