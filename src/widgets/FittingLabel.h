// A label that shows its text whole: where one line is too narrow it takes two, and a smaller font before it cuts.
#pragma once

#include <QLabel>

namespace lumora {

/// As high as it is given, without asking for more than one line of its own font. What does not fit even so ends in an
/// ellipsis, and the tool tip shows it whole.
class FittingLabel : public QLabel {
    Q_OBJECT

  public:
    explicit FittingLabel(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool isTextWhole() const;

  protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

  private:
    struct Fit {
        QFont font;
        QStringList lines;
        bool isWhole;
    };
    Fit fit() const;
    QString words() const;
};

} // namespace lumora
