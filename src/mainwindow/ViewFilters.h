#pragma once

#include <QString>

// What the calendar paints, as the painters read it. The View menu's checks are all there is
// of this state; the painters set a check where they paint on their own account.
class ViewFilters
{
public:
    enum class Kind { Weekly, Monthly, Yearly };

    // Categories are numbered 1 to lastCategory().
    virtual int lastCategory() const = 0;
    virtual bool categoryShown(int index) const = 0;
    // The name whose events paint under that number.
    virtual QString categoryCaption(int index) const = 0;
    virtual void showCategory(int index) = 0;

    virtual bool kindShown(Kind kind) const = 0;
    virtual void showKind(Kind kind) = 0;

protected:
    ~ViewFilters() = default;
};
