// How many copies: a number between two buttons, one fewer and one more. The print windows have it.
#pragma once

#include <QWidget>

class QLineEdit;

namespace lumora {

/// Takes digits only. The buttons `cmdDown` and `cmdUp` stop at 1 and at 999.
class CopiesBox : public QWidget {
    Q_OBJECT

  public:
    /// `name` is the object name of the text field.
    CopiesBox(const QString &name, QWidget *parent = nullptr);

    /// 1 to 999; 1 for an empty field and for 0.
    int copies() const;
    QLineEdit *field() const { return m_field; }

  private:
    void step(int by);

    QLineEdit *m_field;
};

} // namespace lumora
