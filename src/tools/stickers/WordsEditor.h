// Where the words of a decoration are typed: a text field beside it. Whatever the keyboard, the input method or the
// direction of the script, it is the toolkit's own field; the words appear in the decoration as they are typed.
#pragma once

#include <QWidget>

class QPlainTextEdit;

namespace lumora {

class PhotoView;
class PictureButton;
struct AppContext;

/// A child of the view; hidden at first.
class WordsEditor : public QWidget {
    Q_OBJECT

  public:
    static constexpr int mostLetters = 200; ///< what is typed beyond is not taken

    WordsEditor(AppContext &ctx, PhotoView &view);

    /// Shows it with those words beside that part of the view, all of it in view, with the keyboard.
    void begin(const QString &words, const QRectF &part);
    /// The part is another one now.
    void moveBeside(const QRectF &part);
    /// The same, but only moves the field where it would cover it.
    void keepClearOf(const QRectF &part);
    void takeKeyboard();
    bool isActive() const { return isVisibleTo(parentWidget()); }
    /// Hides it; gives the keyboard back to the photo where it had it.
    void end();

  Q_SIGNALS:
    void wordsChanged(const QString &words);
    /// The tick, Esc or Ctrl+Enter.
    void done();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void LoadLanguage();
    void tell();

    AppContext &m_ctx;
    PhotoView &m_view;
    QPlainTextEdit *m_text;
    PictureButton *m_done;
};

} // namespace lumora
