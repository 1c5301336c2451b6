// What is to be said of what the pointer rests on, of what the keyboard goes to, and of what opens by itself. Knows
// words, not voices: its signals are connected to what speaks.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>
#include <QTimer>

class QAbstractButton;
class QMouseEvent;
class QWidget;
class QWindow;

namespace lumora {

/// For all windows of the application, while it lives; one at a time. It says
/// - what the pointer has rested on for restTime, or a finger was held on that long: a button that was heard in this
///   way is not pressed when the finger is lifted,
/// - what a key has moved the focus to,
/// - what opens by itself: the question or the title of a window, the text of a bubble.
/// The same words are not said twice in a row within `pause`.
class ReadAloud : public QObject {
    Q_OBJECT

  public:
    static constexpr int restTime = 500; ///< milliseconds
    static constexpr int pause = 2000;   ///< milliseconds

    explicit ReadAloud(QObject *parent = nullptr);
    ~ReadAloud() override;

    /// Says a text that has just appeared. Does nothing while there is no ReadAloud.
    static void announce(const QString &text);
    /// A control's accessible name, its value where it has one, and its description or tool tip where that says more.
    static QString wordsOf(QWidget &control);

  Q_SIGNALS:
    /// To be said instead of what is being said.
    void wordsChosen(const QString &words);
    /// The name that is being said is not of interest any more.
    void movedOn();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void pointerMoved(const QMouseEvent &event);
    void pressed(const QMouseEvent &event);
    void released();
    void keyPressed();
    void opened(QWidget &widget);
    void sayPointed();
    void sayFocused();
    void leave();
    void say(const QString &text);
    QWidget *pointedWidget() const;

    QTimer m_rest;             ///< until the pointer has rested
    QTimer m_focusRest;        ///< until the focus has
    QPointer<QWindow> m_under; ///< the window that has the pointer
    QPoint m_pointer;          ///< in that window
    QRect m_named;             ///< on the screen: of what was named or pressed, until the pointer leaves it
    bool m_sayingName = false; ///< the last words were the name of a thing
    bool m_touching = false;
    QPointer<QAbstractButton> m_heard; ///< by the finger that is on it
    QString m_focusWords;              ///< of what has the focus, once they were said
    QString m_words;                   ///< the last ones
    QElapsedTimer m_since;             ///< since then
};

} // namespace lumora
