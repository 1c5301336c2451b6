// A message or a question with a few words in a window of Lumora's own: the look of the other borderless windows, the
// buttons of the toolkit. What a child is asked before a picture could be lost has larger ones: see frmPrompt.
#pragma once

#include <QMessageBox>

namespace lumora {

class TitleStrip;

class MessageBox : public QMessageBox {
    Q_OBJECT

  public:
    /// `name` becomes the object name, `title` the window's, shown in a strip to drag it by (none where it is blank);
    /// `text` is plain. OK and Yes have a tick, No and Cancel a cross. `owner` may be null.
    MessageBox(const QString &name, const QString &title, const QString &text, QWidget *owner,
               StandardButtons buttons = Ok);

    /// The drawing ":/icons/NAME.svg" instead of a sign, 64 pixels large.
    void setPicture(const QString &iconName);
    /// Shows it, modal over its owner, and returns at once; it deletes itself when it is answered.
    void showAlone();

  protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

  private:
    bool m_translucent;
    TitleStrip *m_strip;
};

} // namespace lumora
