// A few large colours to choose one from: CP1 of the effects panel.
#pragma once

#include <QColor>
#include <QList>
#include <QWidget>

class QButtonGroup;

namespace lumora {

/// Swatches in two rows, one of them chosen. Each carries its key ("white", "red", ...) in the dynamic property "key".
class ColourPicker : public QWidget {
    Q_OBJECT

  public:
    explicit ColourPicker(const QString &name, QWidget *parent = nullptr);

    QColor colour() const;
    /// Chooses the swatch of that colour; another colour chooses none.
    void setColour(const QColor &colour);

  Q_SIGNALS:
    /// The user has chosen a colour.
    void chosen(const QColor &colour);

  private:
    QButtonGroup *m_swatches;
};

} // namespace lumora
