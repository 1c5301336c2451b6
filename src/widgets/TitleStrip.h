// The title strip of a borderless window, `picTBar`: its caption, and a way to drag the window.
#pragma once

#include <QFrame>

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
    /// The strip's row, for further buttons after the caption.
    QHBoxLayout *row() const { return m_row; }
    /// Adds a close button of that object name; its click is the caller's to connect.
    PictureButton *addCloseButton(const QString &objectName);

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    QHBoxLayout *m_row;
    QLabel *m_caption;
};

} // namespace lumora
