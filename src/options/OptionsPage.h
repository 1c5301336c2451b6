// One page of the options window: its heading, and sheets of paper with the settings that belong together. The four
// pages are made of it; the window moves the values in and out.
#pragma once

#include <QWidget>

class QBoxLayout;
class QCheckBox;
class QHBoxLayout;
class QLabel;
class QVBoxLayout;

namespace lumora {

struct OptionsSettings;

class OptionsPage : public QWidget {
    Q_OBJECT

  public:
    /// Puts the page's settings on its controls.
    virtual void showValues(const OptionsSettings &options) = 0;
    /// Takes the page's settings from its controls; the others stay as they are.
    virtual void takeValues(OptionsSettings &options) const = 0;

  protected:
    /// `headingName` is the object name of the heading's label.
    OptionsPage(const QString &headingName, QWidget *parent);

    QVBoxLayout *column() const { return m_column; }
    /// A sheet of paper below what the page has already; its rows.
    QVBoxLayout *addSheet();
    /// A row on a sheet.
    static QHBoxLayout *addRow(QBoxLayout *sheet);
    /// A box to tick, with the picture of what it switches where `icon` is not empty.
    QCheckBox *tickBox(const QString &name, const QString &icon = {});
    QLabel *label(const QString &name);
    /// A remark in smaller letters, over several lines where needed.
    QLabel *note(const QString &name);
    QLabel *picture(const QString &icon);

  private:
    QVBoxLayout *m_column;
};

} // namespace lumora
