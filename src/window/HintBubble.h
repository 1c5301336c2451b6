// What to do on the photo now, said by the mascot at the edge of the photo's table.
#pragma once

#include "tools/EditorTool.h"

#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

namespace lumora {

enum class BubbleSide;

/// A child of the view that lets every click through. It is beside the photo where there is room, otherwise over its
/// lower or upper edge, and off the controls that a tool shows in the view. It comes softly, goes out of the way while
/// the mouse is pressed, and is over once the photo was dragged on (or clicked, if that is what it asks for) or a key
/// was pressed there.
class HintBubble : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString text READ text)

  public:
    explicit HintBubble(PhotoView &view);

    void say(const QString &text, HintedAct act);
    void dismiss();
    /// Empty once it is over.
    const QString &text() const { return m_text; }

  protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    /// Where its parts are, in its own pixels.
    struct Form {
        QSize size;
        QRect panel;
        QRect mascot;
        BubbleSide side;
        QPoint tip;
    };
    Form rowForm(bool mascotLeft, int textWidth) const;
    Form tallForm(int width) const;
    void place();
    void fade(bool in);

    PhotoView &m_view;
    const QObject *m_viewport; // which is still watched while the view is being destroyed
    QString m_text;
    HintedAct m_act = HintedAct::Click;
    Form m_form;
    QPoint m_pressedAt;
    bool m_pressed = false; ///< on the photo, while it has something to say
    QTimer m_soon;
    QVariantAnimation m_fade; ///< 0 to 1: how much of it is seen
};

} // namespace lumora
