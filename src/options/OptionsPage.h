// One page of the options window: its heading, and sheets of paper with the settings that belong together. Base class
// of the four pages; the window loads and saves the values.
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
    /// Shows the page's settings in its controls.
    virtual void showValues(const OptionsSettings &options) = 0;
    /// Reads the page's settings from its controls; other settings are not changed.
    virtual void takeValues(OptionsSettings &options) const = 0;

  protected:
    /// `headingName` is the object name of the heading's label.
    OptionsPage(const QString &headingName, QWidget *parent);

    QVBoxLayout *column() const { return m_column; }
    /// Adds a sheet of paper at the bottom of the page and returns the layout of its rows.
    QVBoxLayout *addSheet();
    /// A row on a sheet.
    static QHBoxLayout *addRow(QBoxLayout *sheet);
    /// A check box, with a picture of the feature where `icon` is not empty.
    QCheckBox *tickBox(const QString &name, const QString &icon = {});
    QLabel *label(const QString &name);
    /// A remark in smaller letters, over several lines where needed.
    QLabel *note(const QString &name);
    QLabel *picture(const QString &icon);

  private:
    QVBoxLayout *m_column;
};

} // namespace lumora
