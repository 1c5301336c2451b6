// One page of the options window: its heading, and sheets of paper with the settings that belong together. Base class
// of the four pages; the window loads and saves the values.
#pragma once

#include "session/Settings.h"

#include <QHash>
#include <QWidget>

class QBoxLayout;
class QCheckBox;
class QHBoxLayout;
class QLabel;
class QVBoxLayout;

namespace lumora {

struct AppContext;
struct OptionsSettings;

class OptionsPage : public QWidget {
    Q_OBJECT

  public:
    /// Shows the page's settings in its controls.
    virtual void showValues(const OptionsSettings &options) = 0;
    /// Reads the page's settings from its controls; other settings are not changed.
    virtual void takeValues(OptionsSettings &options) const = 0;
    /// Disables what the administrator has locked, with a tool tip that says so.
    void showLocks(const AppContext &context);

  protected:
    /// `headingName` is the object name of the heading's label.
    OptionsPage(const QString &headingName, QWidget *parent);

    /// These controls belong to that lock; call it for each lock once.
    void lockWith(Lock lock, const QList<QWidget *> &controls);
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
    void addNote(QBoxLayout *sheet, const QString &name);
    QLabel *picture(const QString &icon);

  private:
    QVBoxLayout *m_column;
    QHash<Lock, QList<QWidget *>> m_lockable;
};

} // namespace lumora
