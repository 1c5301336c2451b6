// The status line `SBar`: what is open, and now and then a sentence about what just happened.
#pragma once

#include "widgets/ElidedLabel.h"

namespace lumora {

/// Shows its base text and, until cleared, a message in plain words with a small sign before it instead. A longer text
/// gets smaller letters; what does not fit even so is left out in the middle. text() is what is shown.
class StatusLine : public ElidedLabel {
    Q_OBJECT

  public:
    /// The picture before a message: a tick where something has worked, an exclamation mark where it has not.
    enum class Tone { Good, Problem };

    explicit StatusLine(const QString &name, QWidget *parent = nullptr);

    void setBaseText(const QString &text);
    const QString &baseText() const { return m_base; }
    /// Says what happened; an empty message is the same as clearMessage().
    void showMessage(const QString &message, Tone tone = Tone::Problem);
    void clearMessage();
    const QString &message() const { return m_message; }
    bool isTextWhole() const;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    void refresh();
    QRect textPlace() const;
    QFont letters() const;

    QString m_base;
    QString m_message;
    Tone m_tone = Tone::Problem;
};

} // namespace lumora
