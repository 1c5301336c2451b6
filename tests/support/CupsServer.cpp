#include "support/CupsServer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace lumora::test {

namespace {

constexpr int patience = 30'000; // milliseconds

QString outputOf(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(patience);
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// The description of a printer with two sizes of paper.
QString description(const QString &sheet) {
    return QStringLiteral(R"ppd(*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "PAGES.PPD"
*Manufacturer: "Pages"
*Product: "(Pages)"
*ModelName: "Pages"
*ShortNickName: "Pages"
*NickName: "Pages"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*FileSystem: False
*cupsVersion: 2.4
*cupsFilter2: "application/vnd.cups-pdf application/pdf 0 -"
*OpenUI *PageSize/Media Size: PickOne
*OrderDependency: 10 AnySetup *PageSize
*DefaultPageSize: %1
*PageSize A4/A4: "<</PageSize[595 842]>>setpagedevice"
*PageSize Letter/Letter: "<</PageSize[612 792]>>setpagedevice"
*CloseUI: *PageSize
*OpenUI *PageRegion/Media Size: PickOne
*OrderDependency: 10 AnySetup *PageRegion
*DefaultPageRegion: %1
*PageRegion A4/A4: "<</PageSize[595 842]>>setpagedevice"
*PageRegion Letter/Letter: "<</PageSize[612 792]>>setpagedevice"
*CloseUI: *PageRegion
*DefaultImageableArea: %1
*ImageableArea A4: "18 36 577 824"
*ImageableArea Letter: "18 36 594 774"
*DefaultPaperDimension: %1
*PaperDimension A4: "595 842"
*PaperDimension Letter: "612 792"
*OpenUI *Resolution/Resolution: PickOne
*OrderDependency: 10 AnySetup *Resolution
*DefaultResolution: 300dpi
*Resolution 300dpi/300: "<</HWResolution[300 300]>>setpagedevice"
*CloseUI: *Resolution
*DefaultFont: Courier
*Font Courier: Standard "(1.05)" Standard ROM
)ppd")
        .arg(sheet);
}

} // namespace

CupsServer::CupsServer() {
    m_isRunning = start();
}

bool CupsServer::start() {
    for (const char *name : {"root", "spool", "state", "cache", "log", "tmp", "out"}) {
        QDir(m_folder.path()).mkdir(name);
    }
    write("cups-files.conf", QStringLiteral("FileDevice Yes\nServerRoot %1/root\nRequestRoot %1/spool\n"
                                            "StateDir %1/state\nCacheDir %1/cache\nTempDir %1/tmp\n"
                                            "AccessLog %1/log/access\nErrorLog %1/log/error\nPageLog %1/log/page\n"
                                            "DocumentRoot %1/root\nSyncOnClose No\n")
                                 .arg(m_folder.path()));
    write("cupsd.conf",
          QStringLiteral("LogLevel info\nListen %1/socket\nBrowsing No\nDefaultAuthType None\n"
                         "WebInterface No\nMaxJobTime 60\nDefaultPaperSize None\n<Location />\nAllow all\n</Location>\n"
                         "<Policy default>\n<Limit All>\nAllow all\n</Limit>\n</Policy>\n")
              .arg(m_folder.path()));
    QString program = "/usr/sbin/cupsd";
    QStringList arguments = {"-f", "-c", path("cupsd.conf"), "-s", path("cups-files.conf")};
    if (::geteuid() == 0) { // the superuser's scheduler would not do with folders of its own
        outputOf("chown", {"-R", "nobody:nogroup", m_folder.path()});
        arguments = QStringList{"--reuid=nobody", "--regid=nogroup", "--clear-groups", program} + arguments;
        program = "setpriv";
    }
    qputenv("CUPS_SERVER", QFile::encodeName(path("socket")));
    m_scheduler.setProcessChannelMode(QProcess::MergedChannels);
    m_scheduler.start(program, arguments);
    if (!m_scheduler.waitForStarted(patience)) {
        return false;
    }
    QElapsedTimer clock;
    clock.start();
    while (m_scheduler.state() == QProcess::Running && !clock.hasExpired(patience)) {
        if (outputOf("lpstat", {"-r"}).contains("is running")) {
            return true;
        }
        m_scheduler.waitForFinished(20);
    }
    return false;
}

CupsServer::~CupsServer() {
    m_scheduler.terminate();
    if (!m_scheduler.waitForFinished(5000)) {
        m_scheduler.kill();
        m_scheduler.waitForFinished(5000);
    }
    qunsetenv("CUPS_SERVER");
}

QString CupsServer::log() const {
    QFile file(path("log/error"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll().right(3000)) : QString();
}

void CupsServer::write(const QString &name, const QString &text) const {
    QFile file(path(name));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(text.toUtf8());
    }
}

bool CupsServer::command(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    return process.waitForFinished(patience) && process.exitCode() == 0;
}

bool CupsServer::addPrinter(const QString &name, Sheet sheet) {
    write("pages.ppd", description(sheet == Sheet::A4 ? "A4" : "Letter"));
    return command("/usr/sbin/lpadmin", {"-p", name, "-E", "-v", "file:" + path("out/" + name + ".pdf"), "-P",
                                         path("pages.ppd"), "-o", "printer-error-policy=abort-job"});
}

int CupsServer::waitingJobs() const {
    return static_cast<int>(outputOf("lpstat", {"-o"}).count('\n'));
}

QString CupsServer::takeFile(const QString &printer) {
    QElapsedTimer clock;
    clock.start();
    const QString printed = path("out/" + printer + ".pdf");
    while ((waitingJobs() > 0 || QFile(printed).size() == 0) && !clock.hasExpired(patience)) {
        QThread::msleep(20);
    }
    const QString taken = path(QStringLiteral("taken.pdf"));
    QFile::remove(taken);
    return QFile::rename(printed, taken) ? taken : QString();
}

QList<QImage> CupsServer::takePages(const QString &printer) {
    return pagesOf(takeFile(printer), 72);
}

SilentServer::SilentServer(const QString &path) : m_socket(::socket(AF_UNIX, SOCK_STREAM, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
    m_isListening = ::bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
                    ::listen(m_socket, 20) == 0; // the system takes the connections
}

SilentServer::~SilentServer() {
    ::close(m_socket);
}

QList<QImage> pagesOf(const QString &file, int dotsPerInch) {
    const QTemporaryDir folder;
    outputOf("pdftoppm", {"-r", QString::number(dotsPerInch), "-png", file, folder.filePath("page")});
    QList<QImage> pages;
    for (const QString &name : QDir(folder.path()).entryList({"*.png"}, QDir::Files, QDir::Name)) {
        pages << QImage(folder.filePath(name)).convertToFormat(QImage::Format_RGB32);
    }
    return pages;
}

} // namespace lumora::test
