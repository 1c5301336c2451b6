// A column that scrolls when it does not fit: `Pager1` around the tool column.
#pragma once

#include <QWidget>

class QScrollArea;

namespace lumora {

class PictureButton;

/// Two arrow buttons, `cmdPageUp` and `cmdPageDown`, show only while the column is taller than the pager; the wheel, a
/// finger and the keyboard's focus scroll too. An arrow with nothing further in its direction is disabled.
class Pager : public QWidget {
    Q_OBJECT

  public:
    explicit Pager(const QString &name, QWidget *parent = nullptr);

    /// The column to show; the pager owns it. Its minimum height decides whether it fits.
    void setWidget(QWidget *column);
    QWidget *widget() const;

    /// Pixels by which the column is scrolled down.
    int offset() const;
    void scrollTo(int pixels);
    /// Scrolls as little as needed to show that part of the column.
    void ensureVisible(QWidget *part);

    QSize sizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    PictureButton *arrow(const QString &name, const QString &iconName, int direction);
    void refreshArrows();

    QScrollArea *m_area;
    PictureButton *m_up;
    PictureButton *m_down;
};

} // namespace lumora
