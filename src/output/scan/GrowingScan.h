// Lies over the photo's table while a scan comes in, and shows what there is of it so far.
#pragma once

#include "output/scan/ScanReader.h"
#include "view/PhotoTable.h"

#include <QWidget>

namespace lumora {

class GrowingScan : public QWidget {
    Q_OBJECT

  public:
    /// Made before the panels that are to lie above it.
    explicit GrowingScan(QWidget *window);

    /// Begins with an empty table. Shown with the first lines, so that the photo stays in sight while the scanner warms
    /// up.
    void begin();
    void add(const ScanStrip &strip);
    void end();

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    QRectF sheet() const;

    PhotoTable m_table;
    QImage m_picture;
    int m_height = -1; ///< of the whole picture, -1 while nobody knows
    int m_lines = 0;   ///< that have come in this pass
    int m_factor = 1;  ///< lines of the scan to one of the picture
    bool m_active = false;
};

} // namespace lumora
