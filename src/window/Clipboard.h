// The whole photo to and from other programs: what the Copy and Paste buttons of the command row use.
#pragma once

#include "base/TaskControl.h"
#include "imaging/PictureFile.h"

#include <QImage>
#include <QMimeData>
#include <future>

namespace lumora {

/// A picture as other programs take it: image/png, image/bmp and what Qt programs read. The PNG, which most ask for and
/// which takes long, is made in another thread from the beginning on; the BMP when somebody asks. The pixels are
/// shared.
class PhotoMimeData : public QMimeData {
    Q_OBJECT

  public:
    explicit PhotoMimeData(const QImage &photo);
    ~PhotoMimeData() override { m_control.cancel(); }

    const QImage &photo() const { return m_photo; }
    QStringList formats() const override;
    bool hasFormat(const QString &type) const override { return formats().contains(type); }

  protected:
    QVariant retrieveData(const QString &type, QMetaType wanted) const override;

  private:
    const QImage m_photo;
    TaskControl m_control;
    mutable QByteArray m_bmp;
    std::shared_future<QByteArray> m_png; ///< last: it goes, and waits for its thread, first
};

/// Puts the photo into the clipboard; with a null picture the clipboard stays as it is.
void CopyPhoto(const QImage &photo);

/// Whether there is something to paste: a picture, or the path or address of a picture file on this computer. Takes no
/// picture data from the other program; of a file it reads the header.
bool clipboardHasPicture();

/// What there is to paste: the picture (of several kinds the one that keeps most), else the picture file that the
/// clipboard names, by its address (text/uri-list) or as plain text. NotAPicture when there is neither. The bytes are
/// taken from the other program here; `run` does the decoding.
PictureRead readClipboardPicture(const TaskRunner &run);

} // namespace lumora
