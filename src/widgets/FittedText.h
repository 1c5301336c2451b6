// What happens to a caption that is longer than its place, in every window: it wraps where there is height for another
// line, then its letters become smaller within reason, then it ends in an ellipsis and the tool tip shows it whole.
#pragma once

#include <QFont>
#include <QObject>
#include <QSize>
#include <QString>

class QWidget;

namespace lumora {

inline constexpr double smallestLetters = 0.85; ///< of the usual size, for a text that does not fit

/// How a text is drawn.
struct FittedText {
    QString text;
    QFont font;
    int flags = 0;     ///< of Qt::AlignmentFlag and Qt::TextFlag
    bool whole = true; ///< false where an ellipsis replaces a part
};

inline constexpr QChar wordJoiner(0x2060); ///< between two letters: no line ends there; it is not seen

/// Japanese may be broken between any two letters. Where it is written with blanks, for those who learn to read, the
/// result has joiners so that lines end at a blank or after a stop; any other text is returned as it is.
QString brokenAtBlanks(const QString &text);

/// Fits `text` into a place of that size in pixels. ThemeStyle draws every label, check box and radio button so.
FittedText fitText(const QString &text, const QFont &font, QSize place, int flags);

/// Whether a label (of plain text), check box or radio button shows less than its whole text. False for other controls.
bool isShortened(const QWidget &control);

/// Lets a label, check box or radio button become narrower than its text. The style calls it for each new control.
void letCaptionShrink(QWidget &control);

/// Shows the whole text as the tool tip of a shortened control that has no other. One for the application.
class ShortenedTips : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace lumora
