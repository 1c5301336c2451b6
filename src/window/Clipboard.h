// Copies the whole photo to and from other programs: used by the Copy and Paste buttons of the command row.
#pragma once

#include "base/TaskControl.h"
#include "imaging/PictureFile.h"

#include <QImage>
#include <QMimeData>
#include <future>

namespace lumora {

/// A picture in the types that other programs read: image/png, image/bmp and Qt's own type. The PNG, which most
/// programs request and which is slow, is encoded in another thread at once; the BMP on request. The pixels are shared.
class PhotoMimeData : public QMimeData {
    Q_OBJECT

  public:
    PhotoMimeData(const QImage &photo, const PictureMetadata &metadata);
    ~PhotoMimeData() override { m_control.cancel(); }

    const QImage &photo() const { return m_photo; }
    const PictureMetadata &metadata() const { return m_metadata; } ///< for Lumora itself, not for other programs
    QStringList formats() const override;
    bool hasFormat(const QString &type) const override { return formats().contains(type); }

  protected:
    QVariant retrieveData(const QString &type, QMetaType wanted) const override;

  private:
    const QImage m_photo;
    const PictureMetadata m_metadata;
    TaskControl m_control;
    mutable QByteArray m_bmp;
    std::shared_future<QByteArray> m_png; ///< last member: destroyed first, which waits for its thread
};

/// Puts the photo into the clipboard; with a null picture the clipboard stays as it is.
void CopyPhoto(const QImage &photo, const PictureMetadata &metadata = {});

/// Whether there is something to paste: a picture, or the path or address of a picture file on this computer. Reads no
/// picture data from the other program; of a file it reads the header.
bool clipboardHasPicture();

/// Reads the picture to paste (of several types the most lossless one), else the picture file that the clipboard names,
/// by its address (text/uri-list) or as plain text. NotAPicture when there is neither. The bytes are read from the
/// other program here; `run` does the decoding.
PictureRead readClipboardPicture(const TaskRunner &run);

} // namespace lumora
