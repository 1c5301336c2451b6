// Where a print window prints: on one of the printers or into a PDF file, and on what paper. Printers are looked for
// when the window opens; until they answer it shows what is known.
#pragma once

#include "devices/PrintSystem.h"

#include <QHash>
#include <QObject>
#include <QStringList>

namespace lumora {

struct AppContext;
class DeviceLists;

class PrinterChoice : public QObject {
    Q_OBJECT

  public:
    enum class Search { Running, Answered, NoAnswer };

    /// Begins to look for printers. `helper` as HelperRun takes it.
    PrinterChoice(AppContext &ctx, DeviceLists &devices, const QString &helper, QObject *parent);

    Search search() const { return m_search; }
    /// Looks once more, for what changes while the window is open.
    void searchAgain();
    /// The printers, in the system's order; before the answer those that are known.
    const QStringList &printers() const { return m_printers; }

    void choosePrinter(const QString &name);
    void choosePdf();
    bool isPdf() const { return m_isPdf; }
    /// Empty: the system's default printer, whose name is not known yet. Without a choice of the user it is the one in
    /// the settings, else the system's default, else the first; a PDF file where there is no printer.
    const QString &printer() const { return m_printer; }

    /// The paper as far as it is known; nothing while a printer has not told its own.
    std::optional<PrinterPaper> paper() const;

  Q_SIGNALS:
    /// The printers, the choice or the paper have changed.
    void changed();

  private:
    void takePrinters();
    void chooseUsual();
    void lookForPaper();

    AppContext &m_ctx;
    DeviceLists &m_devices;
    PaperSearch m_paperSearch;
    QHash<QString, PrinterPaper> m_papers;
    QStringList m_printers;
    QString m_printer;
    Search m_search = Search::Running;
    bool m_isPdf = false;
    bool m_chosen = false; ///< by the user
};

} // namespace lumora
