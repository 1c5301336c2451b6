// A tip in a speech bubble whose beak points at what it is about.
#pragma once

#include <QPointer>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QVBoxLayout;

namespace lumora {

class PictureButton;

/// A child of the window it is made for; floats over its other parts, wholly inside it. The text wraps.
class Bubble : public QWidget {
    Q_OBJECT

  public:
    Bubble(const QString &name, QWidget *window);

    QLabel *label() const { return m_label; }
    void setText(const QString &text);
    /// The bubble's column below the text, for further controls.
    QVBoxLayout *body() const { return m_body; }
    /// Adds a button to the row at the bubble's foot and returns it.
    PictureButton *addButton(const QString &objectName, const QString &iconName);

    /// Shows the bubble with its beak at the middle of one of that widget's edges: below what is in the window's
    /// top quarter, beside what is in its left or right quarter, else above.
    void pointAt(QWidget *target);

  protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    enum class Side { Top, Bottom, Left, Right };
    Side sideFor(const QRect &target) const;
    void settle();

    QLabel *m_label;
    QVBoxLayout *m_body;
    QHBoxLayout *m_buttons;
    QPointer<QWidget> m_target;
    Side m_side = Side::Top; ///< the bubble's own side that carries the beak
    QPoint m_tip;            ///< the beak's point in the bubble's own pixels
};

} // namespace lumora
