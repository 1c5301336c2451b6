// pnlAndy, the panel of the pop-art row: the four prints of the user's photo, under each its two colours, the palette
// to choose another from, surprise colours, and Apply.
#pragma once

#include "imaging/transforms/PopArtRow.h"
#include "widgets/SlidingPanel.h"

#include <QImage>
#include <array>

class QButtonGroup;
class QLabel;

namespace lumora {

struct AppContext;
class PopArtPalette;

class PopArtPanel : public SlidingPanel {
    Q_OBJECT

  public:
    static constexpr QSize pictureSize{96, 72}; ///< pixels of a print in the panel

    PopArtPanel(AppContext &ctx, QWidget *window);

    const PopArtPairs &pairs() const { return m_pairs; }
    /// Shows these pairs and emits the change.
    void setPairs(const PopArtPairs &pairs);
    /// Selects the first colour.
    void chooseFirst();
    /// The row of the photo, small; cut into its four prints.
    void setRow(const QImage &row);

  Q_SIGNALS:
    void pairsChanged();
    void applyWanted();

  protected:
    void changeEvent(QEvent *event) override;

  private:
    QWidget *makePrint(int number);
    QWidget *makeButtons();
    std::uint32_t &colourOf(int swatch);
    void chooseColour(quint32 rgb);
    void showColours();

    AppContext &m_ctx;
    PopArtPairs m_pairs;
    std::array<QLabel *, 4> m_pictures{};
    QButtonGroup *m_swatches; ///< dark and light of the first print, of the second ...
    PopArtPalette *m_palette;
};

} // namespace lumora
