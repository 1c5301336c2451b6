#include "support/SpeechServer.h"

#include <QFile>
#include <QTest>

namespace lumora::test {

namespace {

constexpr int speechPatience = 30'000; // milliseconds

QString contentsOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

SpeechAddress::SpeechAddress(const QString &socket) : m_before(qgetenv("SPEECHD_ADDRESS")) {
    qputenv("SPEECHD_ADDRESS", "unix_socket:" + QFile::encodeName(socket));
}

SpeechAddress::~SpeechAddress() {
    qputenv("SPEECHD_ADDRESS", m_before);
}

SpeechServer::SpeechServer() {
    start();
}

SpeechServer::~SpeechServer() {
    m_server.terminate();
    if (!m_server.waitForFinished(5000)) {
        kill();
    }
}

bool SpeechServer::start() {
    if (m_server.state() == QProcess::NotRunning) {
        QFile::remove(m_folder.filePath("socket"));
        m_server.start("sh",
                       {qEnvironmentVariable("LUMORA_SOURCE") + "/tests/support/speech-server.sh", m_folder.path()});
    }
    return QTest::qWaitFor([this] { return QFile::exists(m_folder.filePath("socket")); }, speechPatience);
}

void SpeechServer::kill() {
    m_server.kill();
    m_server.waitForFinished(5000);
}

QString SpeechServer::log() const {
    return contentsOf(m_folder.filePath("log/output")).right(3000);
}

QStringList SpeechServer::said() const {
    return contentsOf(m_folder.filePath("said")).split('\n', Qt::SkipEmptyParts);
}

bool SpeechServer::waitFor(const QString &line) const {
    return QTest::qWaitFor([&] { return !said().isEmpty() && said().constLast() == line; }, speechPatience);
}

} // namespace lumora::test
