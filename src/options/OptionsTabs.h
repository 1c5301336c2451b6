// The tabs of the options window, `TabStrip1`: large picture buttons in a column, one of them chosen.
#pragma once

#include <QButtonGroup>
#include <QWidget>

class QVBoxLayout;

namespace lumora {

/// Arrow keys go from tab to tab and choose; the keyboard's tab key meets the chosen one only. Each tab carries its key
/// in the dynamic property "key".
class OptionsTabs : public QWidget {
    Q_OBJECT

  public:
    explicit OptionsTabs(const QString &name, QWidget *parent = nullptr);

    /// Adds a tab below the others; the first one is chosen.
    void addTab(const QString &key, const QString &iconName);
    int current() const { return m_tabs.checkedId(); }
    /// Chooses the tab of that place, 0 the first; others than there are change nothing.
    void setCurrent(int place);
    /// Chooses the next tab (1) or the one before (-1), round and round, and gives it the keyboard.
    void step(int by);

  Q_SIGNALS:
    void currentChanged(int place);

  private:
    QVBoxLayout *m_column;
    QButtonGroup m_tabs;
};

} // namespace lumora
