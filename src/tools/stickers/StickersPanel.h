// pnlStickers: what can be put on the photo. Above the bubbles, the words and the groups of stickers, below what the
// chosen one of them has.
#pragma once

#include "imaging/decorations/Decoration.h"
#include "widgets/SlidingPanel.h"

class QButtonGroup;
class QStackedWidget;

namespace lumora {

struct AppContext;
class PictureButton;

/// Its buttons are made when it is first opened.
class StickersPanel : public SlidingPanel {
    Q_OBJECT

  public:
    StickersPanel(AppContext &ctx, QWidget *window);

    /// Before it slides in.
    void prepare();
    /// No button is pressed any more: what was chosen has been placed, or is not wanted.
    void chooseNothing();

  Q_SIGNALS:
    /// One that the user has chosen to place: kind and row.
    void chosen(const lumora::Decoration &prototype);
    /// Another page is shown, with nothing chosen.
    void pageChosen();

  protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    struct Named {
        PictureButton *button;
        const char *identifier;
    };
    void build();
    PictureButton *addTop(const QString &name, const QString &icon, const char *identifier);
    QWidget *addPage(PictureButton *top);
    PictureButton *addChoice(QWidget *page, const QString &name, const Decoration &prototype, const char *identifier);
    void addLetterings();
    void addGroups();
    void LoadLanguage();

    AppContext &m_ctx;
    QButtonGroup *m_tops = nullptr;    ///< null before the first prepare()
    QButtonGroup *m_choices = nullptr; ///< of all pages
    QStackedWidget *m_pages = nullptr;
    QWidget *m_topRow = nullptr;
    std::vector<Named> m_named;
};

} // namespace lumora
