// A tip in a speech bubble whose beak points at what it is about.
#pragma once

#include <QPointer>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPainter;
class QVBoxLayout;

namespace lumora {

class PictureButton;

/// Where a bubble's beak is.
enum class BubbleSide { Top, Bottom, Left, Right };

inline constexpr int beakLength = 16; ///< pixels

/// Paints a speech bubble with its shadow: paper with a beak of beakLength on that side, whose point is `tip`.
void paintBubble(QPainter &painter, const QRectF &panel, BubbleSide side, QPointF tip);

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
    /// Low and wide, with what is in its body beside the text; from now on it is always beside its target, where the
    /// reader's next word would be.
    void layInRow();

  Q_SIGNALS:
    /// It was closed, by an answer or by Esc.
    void closed();

  protected:
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    using Side = BubbleSide;
    Side sideFor(const QRect &target) const;
    void settle();

    QLabel *m_label;
    QVBoxLayout *m_body;
    QHBoxLayout *m_buttons;
    QPointer<QWidget> m_target;
    Side m_side = Side::Top; ///< the bubble's own side that carries the beak
    bool m_inRow = false;
    QPoint m_tip; ///< the beak's point in the bubble's own pixels
};

} // namespace lumora
