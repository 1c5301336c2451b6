// The options: four tabs over the settings file, for grown-ups. The main window's gear shows it.
#pragma once

#include "widgets/BorderlessDialog.h"

#include <QList>

class QStackedWidget;

namespace lumora {

class AnimatedButton;
class OptionsMiscellaneous;
class OptionsPage;
class OptionsTabs;
struct AppContext;

/// Nothing is written and no field changes until OK; only the reset button acts at once.
class frmOptions : public BorderlessDialog {
    Q_OBJECT

  public:
    /// `helper` looks for devices, as in DeviceSearch.
    frmOptions(AppContext &ctx, QWidget *owner, const QString &helper = {});

    /// Shows it modally over its owner; it is deleted when closed. accepted() is emitted when the settings are in the
    /// file and in the main window's fields.
    static frmOptions *showModal(AppContext &ctx, QWidget *owner);

    void LoadLanguage();
    /// Reads the settings and shows them.
    void LoadMyINISettings();
    /// Writes what is shown.
    void SaveMyINISettings();

  Q_SIGNALS:
    /// Version, licence and credits should be shown above this window.
    void aboutWanted();
    /// The page "For me" should be shown above this window.
    void forMeWanted();

  protected:
    void changeEvent(QEvent *event) override;

  private:
    void addPage(OptionsPage *page);
    void accept() override;
    void askForAddress();

    AppContext &m_ctx;
    OptionsTabs *TabStrip1;
    QStackedWidget *m_pages;
    QList<OptionsPage *> m_allPages;
    OptionsMiscellaneous *m_miscellaneous = nullptr;
    AnimatedButton *cmdOK;
    AnimatedButton *cmdCancel;
};

} // namespace lumora
