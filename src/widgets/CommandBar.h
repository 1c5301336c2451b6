// A row of numbered command buttons and separators: `Toolbar1` of the main window.
#pragma once

#include "widgets/PictureButton.h"

#include <QMap>
#include <QWidget>

class QHBoxLayout;

namespace lumora {

/// Buttons and separators are numbered from 1 in one sequence; each number can be switched off and on again. A
/// separator shows only between buttons that show. Each button carries its key in the dynamic property "key".
class CommandBar : public QWidget {
    Q_OBJECT

  public:
    explicit CommandBar(const QString &name, QWidget *parent = nullptr);

    /// Adds a button at the end of the row and returns it.
    PictureButton *addButton(int number, const QString &key, const QString &iconName);
    void addSeparator(int number);

    /// Shows or hides the button or separator of that number; unknown numbers change nothing.
    void setButtonOn(int number, bool on);
    bool isButtonOn(int number) const;
    /// Buttons of at least that many pixels a side, with pictures of that many.
    void setButtonSize(int side, int picture);
    /// Buttons of that width (pixels), side by side and without separators; 0: as wide as they like, with separators.
    void setTight(int buttonWidth);
    int buttonsShown() const;
    void setButtonEnabled(const QString &key, bool enabled);
    /// The button of that key, or null.
    PictureButton *button(const QString &key) const;

  Q_SIGNALS:
    void buttonClicked(const QString &key);
    /// The bar was pressed beside its buttons.
    void barClicked();

  protected:
    void mousePressEvent(QMouseEvent *event) override;

  private:
    struct Item {
        QWidget *widget = nullptr;
        bool on = true;
        bool separator = false;
    };
    void showItems();

    QHBoxLayout *m_row;
    QMap<int, Item> m_items;
    bool m_tight = false;
};

} // namespace lumora
