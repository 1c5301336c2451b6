// Scans with the scanner system's own test device and compares what comes with what the system's own program gets.
#include "output/scan/ScanReader.h"

#include "base/TaskControl.h"
#include "output/scan/ScanPicture.h"

#include <QElapsedTimer>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace lumora {
namespace {

const QString device = "test:0";

QString helper() {
    return qEnvironmentVariable("LUMORA_BIN") + "/lumora-devices";
}

QList<ScanValue> values(const QStringList &settings) {
    QList<ScanValue> values;
    for (const QString &each : settings) {
        values.append({each.section('=', 0, 0), each.section('=', 1)});
    }
    return values;
}

ScanRequest request(const QStringList &settings) {
    return {device, ScanProcess::Settings::AsGiven, values(settings), helper()};
}

ScanResult scan(const QStringList &settings) {
    return readScan(request(settings), [](const ScanStrip &) {});
}

/// What scanimage gets with the same settings, as 8 bits; null when it fails.
QImage byScanimage(const QStringList &settings) {
    QStringList arguments{"-d", device, "--format=pnm"};
    for (const QString &each : settings) {
        const QString name = each.section('=', 0, 0);
        const QString value = each.section('=', 1);
        if (name == "br-x" || name == "br-y") {
            arguments << (name == "br-x" ? "-x" : "-y") << value;
        } else {
            arguments << "--" + name + '=' + (value == "1" && name != "depth" ? "yes" : value);
        }
    }
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start("scanimage", arguments);
    EXPECT_TRUE(process.waitForFinished(60'000));
    const QByteArray pnm = process.readAllStandardOutput();
    // P4, P5 or P6, comments, width, height, the largest sample except in P4, one blank.
    QList<QByteArray> head;
    qsizetype at = 0;
    while (head.size() < 4 && at < pnm.size() && !(head.size() == 3 && head[0] == "P4")) {
        const qsizetype end = pnm.indexOf('\n', at);
        const QByteArray line = pnm.mid(at, end - at);
        if (!line.startsWith('#')) {
            head += line.split(' ');
        }
        at = end + 1;
    }
    if (process.exitCode() != 0 || head.size() < 3) {
        return {};
    }
    const int width = head[1].toInt();
    const int height = head[2].toInt();
    const bool bits = head[0] == "P4";
    const int bytes = !bits && head[3] == "65535" ? 2 : 1;
    const int channels = head[0] == "P6" ? 3 : 1;
    QImage picture(width, height, QImage::Format_RGB32);
    const qsizetype stride = (pnm.size() - at) / height; // it writes the bytes at the end of a line that are no pixels
    for (int y = 0; y < height; ++y) {
        const auto *line = reinterpret_cast<const uchar *>(pnm.constData()) + at + y * stride;
        for (int x = 0; x < width; ++x) {
            int sample[3];
            for (int c = 0; c < 3; ++c) {
                const int n = x * channels + (channels == 3 ? c : 0);
                if (bits) {
                    sample[c] = (line[x / 8] & 128 >> x % 8) != 0 ? 0 : 255;
                } else { // of 16 bits the high byte first
                    sample[c] = bytes == 1 ? line[n] : qRound((line[2 * n] * 256 + line[2 * n + 1]) / 257.0);
                }
            }
            picture.setPixel(x, y, qRgb(sample[0], sample[1], sample[2]));
        }
    }
    return picture;
}

class ScanReaderTest : public testing::Test {
  protected:
    ScanReaderTest() {
        qputenv("SANE_CONFIG_DIR", (qEnvironmentVariable("LUMORA_SOURCE") + "/tests/support/sane").toUtf8());
    }
    ~ScanReaderTest() override { qunsetenv("SANE_CONFIG_DIR"); }
};

TEST_F(ScanReaderTest, everyKindOfScanHasThePixelsThatTheSystemsOwnProgramGets) {
    const QStringList rows[] = {
        {"mode=Gray", "depth=8"},
        {"mode=Gray", "depth=1"},
        {"mode=Gray", "depth=16"},
        {"mode=Color", "depth=8"},
        {"mode=Color", "depth=16"},
        {"mode=Color", "depth=16", "invert-endianess=1"},
        {"mode=Color", "three-pass=1", "three-pass-order=RGB"},
        {"mode=Color", "three-pass=1", "three-pass-order=RBG"},
        {"mode=Color", "three-pass=1", "three-pass-order=GBR"},
        {"mode=Color", "three-pass=1", "three-pass-order=GRB"},
        {"mode=Color", "three-pass=1", "three-pass-order=BRG"},
        {"mode=Color", "three-pass=1", "three-pass-order=BGR"},
        {"mode=Gray", "hand-scanner=1"},
        {"mode=Gray", "depth=1", "hand-scanner=1"},
        {"mode=Color", "hand-scanner=1", "resolution=200"},
        {"mode=Color", "hand-scanner=1", "three-pass=1"},
        {"mode=Gray", "resolution=31", "br-x=77", "depth=1"}, // the last byte of a line is not full
        {"mode=Color", "ppl-loss=13", "br-x=50"},             // bytes at the end of each line
        {"mode=Color", "fuzzy-parameters=1"},
        {"mode=Color", "read-limit=1", "read-limit-size=7", "resolution=20"},
        {"mode=Color", "read-limit=1", "read-limit-size=65536", "resolution=300", "br-x=200", "br-y=200"},
        {"mode=Color", "read-delay=1", "read-delay-duration=5000"},
        {"mode=Color", "non-blocking=1", "select-fd=1"},
        {"mode=Gray", "source=Automatic Document Feeder"},
        {"mode=Color", "test-picture=Grid", "resolution=100"},
    };
    for (QStringList settings : rows) {
        const std::string name = settings.join(", ").toStdString();
        if (settings.filter("test-picture").isEmpty()) {
            settings << "test-picture=Color pattern";
        }
        const ScanResult scanned = scan(settings);
        const QImage expected = byScanimage(settings);
        ASSERT_EQ(scanned.status, ScanStatus::Good) << name;
        ASSERT_FALSE(expected.isNull()) << name;
        ASSERT_EQ(scanned.picture.size(), expected.size()) << name;
        EXPECT_EQ(scanned.picture.convertToFormat(QImage::Format_RGB32), expected) << name;
    }
}

TEST_F(ScanReaderTest, kindsThatTheSystemsOwnProgramRefuses) {
    // 16 bits in three passes: as in one pass. 1 bit in colour: squares of the eight pure colours.
    EXPECT_EQ(scan({"mode=Color", "depth=16", "three-pass=1", "test-picture=Color pattern"}).picture,
              byScanimage({"mode=Color", "depth=16", "test-picture=Color pattern"}));
    const QImage once = scan({"mode=Color", "depth=1", "test-picture=Color pattern"}).picture;
    EXPECT_EQ(scan({"mode=Color", "depth=1", "three-pass=1", "test-picture=Color pattern"}).picture, once);
    QStringList firstRow;
    for (int x = 2; x < 128; x += 16) {
        firstRow += QColor(once.pixel(x, 2)).name();
    }
    EXPECT_EQ(firstRow,
              QStringList({"#000000", "#0000ff", "#00ff00", "#00ffff", "#ff0000", "#ff00ff", "#ffff00", "#ffffff"}));
    EXPECT_EQ(QColor(scan({"mode=Gray", "depth=1", "test-picture=Solid black"}).picture.pixel(5, 5)),
              QColor(Qt::black));
    EXPECT_EQ(QColor(scan({"mode=Color", "depth=1", "test-picture=Solid white"}).picture.pixel(5, 5)),
              QColor(Qt::white));
}

TEST_F(ScanReaderTest, faultsSayWhatHappenedAndTheNextScanWorks) {
    const std::pair<const char *, ScanStatus> rows[] = {
        {"SANE_STATUS_UNSUPPORTED", ScanStatus::Unsupported}, {"SANE_STATUS_CANCELLED", ScanStatus::Cancelled},
        {"SANE_STATUS_DEVICE_BUSY", ScanStatus::Busy},        {"SANE_STATUS_INVAL", ScanStatus::Unsupported},
        {"SANE_STATUS_EOF", ScanStatus::NotAnswering}, // the end before the first line
        {"SANE_STATUS_JAMMED", ScanStatus::Jammed},           {"SANE_STATUS_NO_DOCS", ScanStatus::NoPaper},
        {"SANE_STATUS_COVER_OPEN", ScanStatus::CoverOpen},    {"SANE_STATUS_IO_ERROR", ScanStatus::NotAnswering},
        {"SANE_STATUS_NO_MEM", ScanStatus::NoMemory},         {"SANE_STATUS_ACCESS_DENIED", ScanStatus::NotAllowed},
    };
    for (const auto &[word, status] : rows) {
        const ScanResult result = scan({"mode=Color", QString("read-return-value=") + word});
        EXPECT_EQ(result.status, status) << word;
        EXPECT_TRUE(result.picture.isNull()) << word;
        EXPECT_EQ(scan({}).status, ScanStatus::Good) << "after " << word;
    }
    ScanRequest gone = request({});
    gone.device = "test:7";
    EXPECT_EQ(readScan(gone, [](const ScanStrip &) {}).status, ScanStatus::NotAnswering);
    gone.device = "epson2:libusb:001:009";
    EXPECT_EQ(readScan(gone, [](const ScanStrip &) {}).status, ScanStatus::NotAnswering);
    gone.helper = "/nowhere/lumora-devices";
    EXPECT_EQ(readScan(gone, [](const ScanStrip &) {}).status, ScanStatus::Crashed);
}

TEST_F(ScanReaderTest, theStripsTogetherAreThePicture) {
    const QStringList kinds[] = {{"mode=Gray"}, {"mode=Color", "three-pass=1"}, {"mode=Gray", "hand-scanner=1"}};
    for (const QStringList &kind : kinds) {
        for (const char *resolution : {"50", "200"}) { // as it is, and reduced
            QStringList settings = kind;
            settings << QString("resolution=") + resolution << "br-x=200"
                     << "br-y=200"
                     << "test-picture=Grid"
                     << "read-delay=1"
                     << "read-delay-duration=20000";
            QImage grown;
            int strips = 0;
            const ScanResult result = readScan(request(settings), [&](const ScanStrip &strip) {
                if (grown.height() < strip.top + strip.picture.height()) {
                    QImage taller(strip.picture.width(), strip.top + strip.picture.height(), QImage::Format_RGB32);
                    taller.fill(Qt::white);
                    QPainter(&taller).drawImage(0, 0, grown);
                    grown = taller;
                }
                QPainter(&grown).drawImage(0, strip.top, strip.picture);
                ++strips;
                EXPECT_EQ(strip.height < 0, kind.contains("hand-scanner=1"));
            });
            const std::string name = settings.join(", ").toStdString();
            ASSERT_EQ(result.status, ScanStatus::Good) << name;
            EXPECT_GT(strips, 2) << name;
            EXPECT_LE(grown.width(), 2 * scanOnScreen);
            const QImage small = result.picture.scaled(40, 40, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            const QImage shown = grown.scaled(40, 40, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            int worst = 0;
            for (int y = 0; y < 40; ++y) {
                for (int x = 0; x < 40; ++x) {
                    worst = std::max(worst, std::abs(qGray(small.pixel(x, y)) - qGray(shown.pixel(x, y))));
                }
            }
            EXPECT_LE(worst, 60) << name; // at the edges of the squares
        }
    }
}

/// Starts a scan that takes seconds in another thread, and cancels it once `moment` of it has come.
struct CancelledScan {
    QImage picture;
    ScanStatus status = ScanStatus::Good;
    qint64 waited = 0; ///< milliseconds from the cancelling to the end
};

CancelledScan cancelAt(double moment, const ScanRequest &wanted) {
    TaskControl control;
    CancelledScan scan;
    std::atomic<bool> done = false;
    std::thread worker([&] {
        const TaskControl::Scope scope(&control);
        const ScanResult result = readScan(wanted, [](const ScanStrip &) {});
        scan.picture = result.picture;
        scan.status = result.status;
        done = true;
    });
    while (!done && (moment > 0 ? control.percent() < moment * 100 : false)) {
        QThread::msleep(1);
    }
    QElapsedTimer clock;
    clock.start();
    control.cancel();
    worker.join();
    scan.waited = clock.elapsed();
    return scan;
}

TEST_F(ScanReaderTest, aScanCanBeCancelledAtAnyMoment) {
    const ScanRequest slow =
        request({"mode=Color", "resolution=100", "br-x=200", "br-y=200", "read-delay=1", "read-delay-duration=50000"});
    for (const double moment : {0.0, 0.01, 0.05, 0.1, 0.2, 0.3, 0.4, 0.55, 0.7, 0.9}) {
        const CancelledScan cancelled = cancelAt(moment, slow);
        EXPECT_EQ(cancelled.status, ScanStatus::Cancelled) << moment;
        EXPECT_TRUE(cancelled.picture.isNull()) << moment;
        EXPECT_LT(cancelled.waited, 4000) << moment << ": it had to be killed";
        EXPECT_EQ(scan({}).status, ScanStatus::Good) << moment;
    }
}

} // namespace
} // namespace lumora
