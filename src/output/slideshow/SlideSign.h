// The large sign that the slideshow shows for a moment when it pauses or goes on.
#pragma once

#include <QWidget>

class QVariantAnimation;

namespace lumora {

class SlideSign : public QWidget {
    Q_OBJECT

  public:
    enum class Kind { Pause, Play };

    /// In the middle of its parent, hidden until flash(). Takes no clicks.
    explicit SlideSign(QWidget *parent);

    /// Shows the sign for a second; `text` is what a screen reader says.
    void flash(Kind kind, const QString &text);
    Kind kind() const { return m_kind; }

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    Kind m_kind = Kind::Pause;
    QVariantAnimation *m_fade;
};

} // namespace lumora
