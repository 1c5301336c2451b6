// The user guide in a window of its own: pictured contents, pages, a search. frmHelp opens it.
#pragma once

#include "guide/GuideSearch.h"

#include <QWidget>
#include <optional>

class QLabel;
class QLineEdit;
class QStackedWidget;

namespace lumora {

struct AppContext;
class GuideContents;
class GuideReader;
class GuideResults;
class PictureButton;
class TitleStrip;

/// A window of Lumora's own look, with a grip to resize it. Belongs to the window from which it was opened, stays above
/// it and goes with it. Back and Forward follow the reader's way through pages and searches (Alt and the arrow keys
/// too); links to the web open in the desktop's browser. Ctrl+F goes to the search field. Esc empties it; where it is
/// empty, Esc closes the window.
class GuideWindow : public QWidget {
    Q_OBJECT

  public:
    GuideWindow(AppContext &context, QWidget *owner);

    /// Opens the guide for that window, or brings the one it has to the front.
    /// At that page, where one is named.
    static void open(AppContext &context, QWidget *owner, const QString &page = {});
    /// The guide of one window, if it has one, belongs to another from now on and stays as it is.
    static void move(QWidget *from, QWidget *to);

  protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    /// Where the reader was: a page (found by words, perhaps), a search, or the contents.
    struct Place {
        QString page;      ///< its file; empty for a search and the contents
        QString question;  ///< what is in the search field
        QStringList words; ///< marked on the page
        int scrolled = 0;  ///< of a page, in pixels
        bool isSearch() const { return page.isEmpty() && !question.isEmpty(); }
    };

    static GuideWindow *of(QWidget *owner);
    void build();
    void addKeys();
    void LoadLanguage();
    PictureButton *button(const QString &name, const QString &icon);
    void follow(const QUrl &link);
    void search(const QString &question);
    void showFound(const QString &question);
    void go(const Place &place);
    void step(int by);
    void showPlace();
    void leave();

    AppContext &m_context;
    const bool m_translucent; ///< has a shadow; else an edge
    TitleStrip *m_strip;
    PictureButton *cmdBack;
    PictureButton *cmdForward;
    PictureButton *cmdHome;
    PictureButton *cmdClose;
    QLineEdit *txtSearch;
    QStackedWidget *m_sheets;
    GuideContents *m_contents;
    GuideReader *txtGuide;
    GuideResults *m_results;
    QLabel *lblNothing;
    std::optional<GuideSearch> m_search; ///< made for the first question
    QList<Place> m_way = {{}};
    qsizetype m_at = 0; ///< the place of the way that shows
};

} // namespace lumora
