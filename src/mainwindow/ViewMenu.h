#pragma once

#include "mainwindow/ViewFilters.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <algorithm>

class QAction;
class QMenu;

// The View menu: "All Events", "None", the "Recurrence" submenu and one check item per
// category from number 2 on. Its checks are the filter state itself.
//
// A damaged store may count a hundred thousand categories; a menu that long is of no use and
// costs seconds to build, so items exist up to kLastItem only. The categories beyond share the
// check of the hidden item 1, from which every new item takes its check.
class ViewMenu : public QObject, public ViewFilters
{
    Q_OBJECT

public:
    static constexpr int kLastItem = 1000;

    // Adds the items to `view`, which must be empty.
    explicit ViewMenu(QMenu *view);

    // The category items for these names (element 1, "More", has none). The items take the
    // hidden item's check, as new ones do.
    void load(const QStringList &names);

    void allevents_Click();
    void None_Click();
    void v1_Click(int index);
    void weekly_Click();
    void mon_Click();
    void yearly_Click();

    // The hidden item counts even without categories.
    int lastCategory() const override { return std::max(1, int(names_.size()) - 1); }
    bool categoryShown(int index) const override;
    QString categoryCaption(int index) const override;
    void showCategory(int index) override;
    bool kindShown(Kind kind) const override;
    void showKind(Kind kind) override;

signals:
    void repaintRequested();
    // "Monthly" checked: the monthly days go over what is shown, without a repaint.
    void monthlyRequested();
    void dailyRequested();

private:
    QAction *item(int index) const;
    QAction *kindItem(Kind kind) const;

    QMenu *view_;
    QAction *weekly_ = nullptr;
    QAction *mon_ = nullptr;
    QAction *yearly_ = nullptr;
    QList<QAction *> v1_; // index 0 unused; 1 is the hidden item, then up to kLastItem
    QStringList names_;
};
