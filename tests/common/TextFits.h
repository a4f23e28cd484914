#pragma once

#include <QFontMetrics>
#include <QLabel>

// Whether a label's text is drawn whole: ink of every glyph, descenders included, inside the
// label, with the line centred on its height as a label centres it.
inline bool textFits(const QLabel *label)
{
    const QFontMetrics fm(label->font());
    const QRect ink = fm.tightBoundingRect(label->text()); // from the baseline
    const QRect box = label->contentsRect();
    const int baseline = box.top() + (box.height() - fm.height()) / 2 + fm.ascent();
    return ink.width() <= box.width() && baseline + ink.top() >= box.top() &&
           baseline + ink.bottom() <= box.bottom();
}
