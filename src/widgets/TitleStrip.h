// The title strip of a borderless window, `picTBar`: its caption, and a way to drag the window.
#pragma once

#include <QFrame>
#include <vector>

class QHBoxLayout;
class QLabel;

namespace lumora {

class PictureButton;

/// The caption is the label `lblCaption`. The strip drags its window; what is added to its row does not.
class TitleStrip : public QFrame {
    Q_OBJECT

  public:
    explicit TitleStrip(QWidget *parent = nullptr);

    QLabel *lblCaption() const { return m_caption; }
    /// The drawing ":/icons/NAME.svg" before the caption.
    void setPicture(const QString &iconName);
    /// The strip's row, for further buttons after the caption.
    QHBoxLayout *row() const { return m_row; }
    /// Adds a button of that object name and picture, as large as all buttons of title strips; its click is the
    /// caller's to connect.
    PictureButton *addButton(const QString &objectName, const QString &iconName);
    /// The same with a cross.
    PictureButton *addCloseButton(const QString &objectName);
    /// How large its buttons are, in pixels: titleButton at first. The strip is a little higher.
    void setButtonSide(int side);

  protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

    /// Pixels free where a line of text begins and ends.
    void setSideMargins(int atStart, int atEnd);

  private:
    /// A button and the pixels that its picture has in a strip whose buttons are titleButton large.
    struct Button {
        PictureButton *button;
        int picture;
    };

    PictureButton *addButton(const QString &objectName, const QString &iconName, int picture);
    void fit(const Button &button) const;

    std::vector<Button> m_buttons;
    QHBoxLayout *m_row;
    QLabel *m_caption;
    int m_atStart = 0;
    int m_atEnd = 0;
    int m_side;
};

} // namespace lumora
