#pragma once

#include <QMainWindow>
#include <QUrl>

class QTextBrowser;

// The user guide, "help.hlp" in the program folder: an HTML document with a contents page
// and a keyword index, shown here so that no browser is needed. Its links to the web go to
// the maker's pages; the scheme "shop" names a shop department by its link id.
class HelpWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit HelpWindow(QWidget *parent = nullptr);

    // Each shows the window at that page; false, after telling the user, when the guide
    // is missing.
    bool showContents();
    bool showIndex();

    QTextBrowser *browser() const { return browser_; }

    void anchorClicked(const QUrl &url);

private:
    bool showAt(const QString &anchor);

    QTextBrowser *browser_ = nullptr;
};
