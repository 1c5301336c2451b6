// The tabs of the options window, `TabStrip1`: large picture buttons in a column, one of them chosen.
#pragma once

#include <QButtonGroup>
#include <QWidget>

class QVBoxLayout;

namespace lumora {

/// Arrow keys move to a tab and choose it; the Tab key stops only at the chosen one. Each tab has its key in the
/// dynamic property "key".
class OptionsTabs : public QWidget {
    Q_OBJECT

  public:
    explicit OptionsTabs(const QString &name, QWidget *parent = nullptr);

    /// Adds a tab below the others; the first one is chosen.
    void addTab(const QString &key, const QString &iconName);
    int current() const { return m_tabs.checkedId(); }
    /// Chooses the tab at that index, from 0; an index out of range changes nothing.
    void setCurrent(int place);
    /// Chooses the next tab (1) or the one before (-1), wrapping around, and gives it the keyboard focus.
    void step(int by);

  Q_SIGNALS:
    void currentChanged(int place);

  private:
    QVBoxLayout *m_column;
    QButtonGroup m_tabs;
};

} // namespace lumora
