// The controls of the scanner window, made from what the scanner can do: what it cannot is not shown.
#pragma once

#include "devices/ScanOption.h"

#include <QRectF>
#include <QWidget>

class QBoxLayout;
class QButtonGroup;
class QComboBox;
class QLabel;
class QSlider;

namespace lumora {

struct AppContext;
class PictureButton;

class ScanSettings : public QWidget {
    Q_OBJECT

  public:
    ScanSettings(AppContext &ctx, QWidget *parent);

    /// What the scanner can do now. The first time its picture is in colour and for printing; later what is chosen
    /// stays, as far as it can.
    void setOptions(const QList<ScanOption> &options);

    /// The size of the glass in the scanner's unit; empty where it has no area to choose.
    QSizeF glass() const;
    /// The paper chosen, from the glass's top left corner; null when it is the frame that counts.
    QRectF paper() const;
    /// The frame was drawn by hand, no paper counts any more.
    void chooseOwnFrame();

    /// The picture comes from a feeder, which has no glass to look at.
    bool isFeeder() const;
    /// What has been chosen, in the order in which it is to be set, for that area of the glass.
    QList<ScanValue> values(const QRectF &area) const;
    /// The same for a quick look at all of the glass.
    QList<ScanValue> previewValues() const;
    /// What decides which values the others can have.
    QList<ScanValue> decidingValues() const;

  Q_SIGNALS:
    /// The source or the colours have changed: the scanner should be asked again.
    void decisionChanged();
    void paperChosen();

  private:
    QLabel *addLabel(const char *name);
    QComboBox *addList(const char *caption, const char *name);
    QSlider *addSlider(const char *caption, const char *name);
    void addColours();
    void fillSources();
    void fillColours();
    void fillDetails();
    void fillPapers();
    void fillSlider(QSlider *slider, const char *option);
    QString sourceWords(const QString &source) const;
    QList<ScanValue> colourValues() const;
    QList<ScanValue> areaValues(const QRectF &area) const;
    const ScanOption *find(const char *name) const { return findOption(m_options, name); }

    AppContext &m_ctx;
    QList<ScanOption> m_options;
    bool m_asked = false; ///< the options have come once
    QBoxLayout *m_column;
    QComboBox *cboSource;
    QButtonGroup *m_colours; ///< by ScanColours
    QComboBox *cboDetail;    ///< data: dots per inch
    QComboBox *cboPaper;     ///< data: QSizeF, empty for the frame
    QSlider *sldBrightness;
    QSlider *sldContrast;
};

} // namespace lumora
