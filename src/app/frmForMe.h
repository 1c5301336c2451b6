// The page "For me": by pictures, how each user likes Lumora to look and to be handled. It comes by itself at the first
// start; the launcher's round button and the options open it.
#pragma once

#include "devices/speech/VoiceSearch.h"
#include "session/ForMe.h"
#include "widgets/BorderlessDialog.h"

#include <QList>

class QCheckBox;
class QGridLayout;
class QRadioButton;

namespace lumora {

struct AppContext;
class PictureButton;

/// Every choice is written and reported at once. The answer only closes it.
class frmForMe : public BorderlessDialog {
    Q_OBJECT

  public:
    frmForMe(AppContext &context, QWidget *owner);

    /// Shows it modally over its owner, which may be null; it is deleted when closed.
    static frmForMe *showModal(AppContext &context, QWidget *owner);

    void LoadLanguage();

  Q_SIGNALS:
    /// What the user has set is another; it is written.
    void forMeChanged();

  protected:
    void changeEvent(QEvent *event) override;

  private:
    void build();
    void addCard(QWidget *card);
    void take();
    void write(const ForMe &forMe);
    void showValues();
    void showVoice();
    void level();

    AppContext &m_context;
    QList<QRadioButton *> m_sizes; ///< in the order of ButtonSize
    QList<QCheckBox *> m_ticks;    ///< in the order of forMeTicks
    QGridLayout *m_cards;
    PictureButton *cmdReset;
    VoiceSearch m_voices;
    bool m_hasVoice = true; ///< until the search has found none
};

} // namespace lumora
