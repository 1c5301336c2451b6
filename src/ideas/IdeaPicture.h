// The finished example of an idea, at any size: its pictures laid out on the paper as the project has them. The ideas
// window shows one large and all of them small.
#pragma once

#include "ideas/Ideas.h"

#include <QPixmap>
#include <QWidget>

namespace lumora {

/// The example in a picture of that size in logical pixels, sharp on its screen.
QPixmap paintIdea(const Idea &idea, QSize size, qreal devicePixelRatio);

/// The example, large.
class IdeaPicture : public QWidget {
    Q_OBJECT

  public:
    IdeaPicture(QSize size, QWidget *parent);

    void setIdea(const Idea &idea);

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    const Idea *m_idea = nullptr;
    QPixmap m_picture;
};

} // namespace lumora
