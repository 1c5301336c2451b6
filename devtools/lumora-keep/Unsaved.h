// What Lumora writes of a photo that is not saved: recovery copies, photos that were thrown away, undo steps.
#pragma once

#include <QString>
#include <functional>

namespace lumora::keep {

/// What is to be done while the disk or the system refuses something; why it failed, empty when it did not.
using Work = std::function<QString()>;

/// Opens the photo of the file, changes it and has Recovery keep it in that folder. The work: changes it to the other
/// picture, has that kept, by the thread and once more as at the end of the session, and steps back and forward.
Work recoveryWork(const QString &file, const QString &picture, const QString &folder);
/// Prints what the next start finds in that folder: "offered" and a sum that stands for the pixels, "nothing",
/// or "damaged" and how many.
Work recoveredWork(const QString &folder);
/// Opens and changes it as recoveryWork does. The work: throws it away.
Work discardWork(const QString &file, const QString &folder);
/// The work: changes the photo of the file so often that undo steps go to files in that folder, undoes all and redoes
/// all. A step that no longer leads to its picture is a failure. Prints how far it came and how many steps are lost.
Work historyWork(const QString &file, const QString &folder);

} // namespace lumora::keep
