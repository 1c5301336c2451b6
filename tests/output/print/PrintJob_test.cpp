// Prints to a real print system and looks at the pages that come out.
#include "output/print/PrintJob.h"

#include "base/TaskControl.h"
#include "imaging/Scale.h"
#include "output/print/PageDrawing.h"
#include "output/print/crafts/PaperCrafts.h"
#include "output/print/crafts/PhotoDetails.h"
#include "support/CupsServer.h"

#include <QFile>
#include <QPainter>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>
#include <thread>

namespace lumora {
namespace {

using test::CupsServer;
using test::SilentServer;

QString helper() {
    return qEnvironmentVariable("LUMORA_BIN") + "/lumora-devices";
}

/// Four colours, so that a photo that is turned or mirrored is seen; nothing in it is white.
QImage quarters(int width, int height) {
    QImage photo(width, height, QImage::Format_RGB32);
    QPainter painter(&photo);
    const int x = width / 2;
    const int y = height / 2;
    painter.fillRect(0, 0, x, y, QColor(220, 30, 30));
    painter.fillRect(x, 0, width - x, y, QColor(30, 180, 30));
    painter.fillRect(0, y, x, height - y, QColor(30, 30, 220));
    painter.fillRect(x, y, width - x, height - y, QColor(200, 180, 20));
    return photo;
}

/// The sheet as it is held to look at it: turned, where the page lies.
QImage held(const QImage &sheet, const PrintPage &page) {
    const bool lies = page.size.width() > page.size.height();
    return lies == (sheet.width() > sheet.height()) ? sheet : sheet.transformed(QTransform().rotate(-90));
}

/// The mean difference of two pictures of the same size, in levels.
double difference(const QImage &a, const QImage &b) {
    EXPECT_EQ(a.size(), b.size());
    double sum = 0;
    for (int y = 0; y < a.height() && y < b.height(); ++y) {
        for (int x = 0; x < a.width() && x < b.width(); ++x) {
            const QRgb one = a.pixel(x, y);
            const QRgb other = b.pixel(x, y);
            sum += std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other)) +
                   std::abs(qBlue(one) - qBlue(other));
        }
    }
    return sum / (3.0 * a.width() * a.height());
}

/// What the preview shows, at the size of the printed page.
QImage preview(const PrintPage &page, const QImage &photo, QSize size) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.scale(size.width() / page.size.width(), size.height() / page.size.height());
    drawPage(painter, page, photo);
    return picture;
}

/// Where something is printed.
QRect printedPart(const QImage &sheet) {
    QRect part;
    for (int y = 0; y < sheet.height(); ++y) {
        for (int x = 0; x < sheet.width(); ++x) {
            if (qMin(qMin(qRed(sheet.pixel(x, y)), qGreen(sheet.pixel(x, y))), qBlue(sheet.pixel(x, y))) < 235) {
                part |= QRect(x, y, 1, 1);
            }
        }
    }
    return part;
}

/// Fills it in to the right colours, in the right place: compares the sheets with what the preview shows.
void expectAsPreviewed(const QImage &sheet, const PrintPage &page, const QImage &photo, double most = 2) {
    const QImage upright = held(sheet, page);
    EXPECT_LT(difference(upright, preview(page, photo, upright.size())), most);
    const QRect room = sheet.rect().adjusted(18, 18, -18, -36).adjusted(-1, -1, 1, 1);
    EXPECT_TRUE(room.contains(printedPart(sheet))) << "over the margins";
}

class PrintJobTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        server = std::make_unique<CupsServer>();
        ASSERT_TRUE(server->isRunning()) << qPrintable(server->log());
        ASSERT_TRUE(server->addPrinter("Photo", CupsServer::Sheet::A4));
        ASSERT_TRUE(server->addPrinter("Office", CupsServer::Sheet::Letter));
    }
    static void TearDownTestSuite() { server.reset(); }

    static PrintJob job(const QString &printer, const QImage &photo) {
        PrintJob one;
        one.photo = photo;
        one.printer = printer;
        one.title = "Lumora";
        return one;
    }

    static std::unique_ptr<CupsServer> server;
    QTemporaryDir m_folder;
};

std::unique_ptr<CupsServer> PrintJobTest::server;

TEST_F(PrintJobTest, ThePaperIsThePrinters) {
    const struct {
        const char *printer;
        QSizeF size;
    } rows[] = {{"Photo", {595, 842}}, {"Office", {612, 792}}};
    for (const auto &[printer, size] : rows) {
        const auto paper = askForPaper(printer, helper());
        ASSERT_TRUE(paper) << printer;
        EXPECT_EQ(paper->size, size);
        EXPECT_EQ(paper->margins, QMarginsF(18, 18, 18, 36));
        EXPECT_EQ(paper->dotsPerInch, 300);
    }
    EXPECT_FALSE(askForPaper("Nobody", helper()));
}

TEST_F(PrintJobTest, EveryLayoutComesOutAsPreviewedOnBothPapers) {
    for (const char *printer : {"Photo", "Office"}) {
        const auto paper = askForPaper(printer, helper());
        ASSERT_TRUE(paper);
        for (const QImage &photo : {quarters(1200, 900), quarters(600, 900)}) {
            for (const int photos : {1, 2, 4, 9}) {
                SCOPED_TRACE(testing::Message() << printer << ", " << photo.width() << " x " << photo.height() << ", "
                                                << photos << " to a page");
                PrintJob one = job(printer, photo);
                one.layout.photos = photos;
                ASSERT_EQ(doPrintJob(one, helper()), PrintResult::Printed) << qPrintable(server->log());
                const QList<QImage> pages = server->takePages(printer);
                ASSERT_EQ(pages.size(), 1) << qPrintable(server->log());
                EXPECT_EQ(QSizeF(pages[0].size()), paper->size);
                expectAsPreviewed(pages[0], layOutPages(*paper, photo.size(), one.layout).sheets.first(), photo);
            }
        }
    }
}

TEST_F(PrintJobTest, EveryCraftComesOutAsPreviewedAndCopiesAreSets) {
    const QImage photo = quarters(1200, 900);
    const auto paper = askForPaper("Office", helper());
    ASSERT_TRUE(paper);
    for (const PaperCraft &craft : paperCrafts()) {
        SCOPED_TRACE(craft.button);
        PrintJob one = job("Office", photo);
        one.layout.craft = &craft;
        one.layout.content = {{"Hurrah %1 %2", "By"}, differingDetails(photo)};
        one.copies = 2;
        const QList<PrintPage> sheets = layOutPages(*paper, photo.size(), one.layout).sheets;
        ASSERT_EQ(doPrintJob(one, helper()), PrintResult::Printed) << qPrintable(server->log());
        const QList<QImage> pages = server->takePages("Office");
        ASSERT_EQ(pages.size(), 2 * sheets.size());
        for (qsizetype i = 0; i < pages.size(); ++i) {
            expectAsPreviewed(pages[i], sheets[i % sheets.size()], photo, 4); // lines are wider in a small preview
        }
    }
}

TEST_F(PrintJobTest, EachCopyIsAPageAndThePictureIsStoredOnce) {
    PrintJob one = job("Photo", quarters(1200, 900));
    ASSERT_EQ(doPrintJob(one, helper()), PrintResult::Printed);
    const qint64 once = QFileInfo(server->takeFile("Photo")).size();
    one.copies = 20;
    one.layout.photos = 9;
    ASSERT_EQ(doPrintJob(one, helper()), PrintResult::Printed);
    const QString file = server->takeFile("Photo");
    EXPECT_LT(QFileInfo(file).size(), once + 60'000);
    const QList<QImage> pages = test::pagesOf(file, 20);
    ASSERT_EQ(pages.size(), 20);
    EXPECT_EQ(pages.first(), pages.last());
}

TEST_F(PrintJobTest, CentreFitTransparencyAndThePageAsItIsLookedAt) {
    QImage photo = quarters(400, 300).convertToFormat(QImage::Format_ARGB32);
    for (int x = 100; x < 200; ++x) {
        for (int y = 50; y < 100; ++y) {
            photo.setPixel(x, y, 0);
        }
    }
    PrintJob one = job({}, photo);
    one.layout = {.photos = 1, .centre = false, .fit = false};
    one.paper = PrinterPaper{{595, 842}, {18, 18, 18, 36}, 300};
    one.pdfFile = m_folder.filePath("page.pdf");
    ASSERT_EQ(doPrintJob(one, helper()), PrintResult::Saved);
    const QList<QImage> pages = test::pagesOf(one.pdfFile, 72);
    ASSERT_EQ(pages.size(), 1);
    EXPECT_EQ(pages[0].size(), QSize(842, 595)) << "the sheet lies for a photo that is wider than high";
    EXPECT_TRUE(QRect(35, 17, 302, 227).contains(printedPart(pages[0])));
    EXPECT_TRUE(printedPart(pages[0]).contains(QRect(36, 18, 300, 225)));
    EXPECT_EQ(pages[0].pixel(36 + 112, 18 + 56), 0xffffffff) << "paper shows through";
}

TEST_F(PrintJobTest, WhatThePrinterCannotDoIsSaid) {
    const QImage photo = quarters(200, 100);
    EXPECT_EQ(doPrintJob(job("Nobody", photo), helper()), PrintResult::NoPrinter);
    ASSERT_TRUE(CupsServer::command("/usr/sbin/cupsreject", {"Office"}));
    EXPECT_EQ(doPrintJob(job("Office", photo), helper()), PrintResult::Refused);
    ASSERT_TRUE(CupsServer::command("/usr/sbin/cupsaccept", {"Office"}));
    ASSERT_TRUE(CupsServer::command("/usr/sbin/cupsdisable", {"Office"}));
    EXPECT_EQ(doPrintJob(job("Office", photo), helper()), PrintResult::Waiting);
    EXPECT_EQ(server->waitingJobs(), 1);
    ASSERT_TRUE(CupsServer::command("/usr/sbin/cupsenable", {"Office"}));
    EXPECT_EQ(server->takePages("Office").size(), 1) << "it prints once it is on again";
}

TEST_F(PrintJobTest, NoServerAndOneThatNeverAnswers) {
    const QByteArray real = qgetenv("CUPS_SERVER");
    qputenv("CUPS_SERVER", "/nowhere/cups.sock");
    EXPECT_EQ(doPrintJob(job("Photo", quarters(200, 100)), helper()), PrintResult::NoAnswer);
    EXPECT_EQ(doPrintJob(job({}, quarters(200, 100)), helper()), PrintResult::NoAnswer);
    const SilentServer silent(m_folder.filePath("silent"));
    ASSERT_TRUE(silent.isListening());
    qputenv("CUPS_SERVER", m_folder.filePath("silent").toUtf8());
    EXPECT_EQ(doPrintJob(job("Photo", quarters(200, 100)), helper(), 500), PrintResult::NoAnswer);
    qputenv("CUPS_SERVER", real);
    EXPECT_EQ(doPrintJob(job("Photo", quarters(200, 100)), "/nowhere"), PrintResult::NoAnswer) << "no helper program";
    EXPECT_EQ(doPrintJob(job("Photo", quarters(200, 100)), helper()), PrintResult::Printed) << "and then it works";
    EXPECT_EQ(server->takePages("Photo").size(), 1);
}

TEST_F(PrintJobTest, ACancelledJobEndsSoonAndPrintsNothing) {
    const QByteArray real = qgetenv("CUPS_SERVER");
    const SilentServer silent(m_folder.filePath("silent"));
    ASSERT_TRUE(silent.isListening());
    for (const int after : {0, 100, 400}) {
        qputenv("CUPS_SERVER", after == 400 ? m_folder.filePath("silent").toUtf8() : real);
        TaskControl control;
        const TaskControl::Scope scope(&control);
        std::thread user([&control, after] {
            QThread::msleep(static_cast<unsigned long>(after));
            control.cancel();
        });
        const PrintResult result = doPrintJob(job("Photo", quarters(5000, 4000)), helper());
        user.join();
        qputenv("CUPS_SERVER", real);
        if (result == PrintResult::Printed) { // it was quicker, and says so
            EXPECT_EQ(server->takePages("Photo").size(), 1);
        } else {
            EXPECT_EQ(result, PrintResult::Cancelled);
            EXPECT_EQ(server->waitingJobs(), 0);
        }
    }
}

TEST_F(PrintJobTest, APdfFileIsWrittenWholeOrNotAtAll) {
    const QImage photo = quarters(900, 1200);
    PrintJob one = job({}, photo);
    one.pdfFile = m_folder.filePath("page.pdf");
    one.copies = 3;
    EXPECT_EQ(doPrintJob(one, "/nowhere"), PrintResult::Saved) << "it needs no printer";
    const QList<QImage> pages = test::pagesOf(one.pdfFile, 72);
    ASSERT_EQ(pages.size(), 3);
    const PrintPage page = layOutPages(standardPaper(), photo.size(), {}).sheets.first();
    EXPECT_LT(difference(pages[2], preview(page, photo, pages[2].size())), 2.0);

    const auto contents = [&one] {
        QFile file(one.pdfFile);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QByteArray before = contents();
    TaskControl control;
    const TaskControl::Scope scope(&control);
    control.cancel();
    EXPECT_EQ(doPrintJob(one, {}), PrintResult::Cancelled);
    EXPECT_EQ(contents(), before);
    const TaskControl::Scope again(nullptr);
    one.pdfFile = m_folder.filePath("no folder/page.pdf");
    EXPECT_EQ(doPrintJob(one, {}), PrintResult::NotWritable);
    one.pdfFile = "/dev/full";
    EXPECT_EQ(doPrintJob(one, {}), PrintResult::NotWritable);
}

TEST_F(PrintJobTest, ThePictureHasThePrintersDotsAndNoMore) {
    struct Row {
        QSize photo;
        PrinterPaper paper;
        int photos;
        QSize dots;
    };
    const Row rows[] = {
        {{6000, 4000}, {{612, 792}, {36, 36, 36, 36}, 300}, 1, {3000, 2000}}, // 720 points wide
        {{600, 400}, {{612, 792}, {36, 36, 36, 36}, 300}, 1, {3000, 2000}},
        {{400, 600}, {{612, 792}, {36, 36, 36, 36}, 72}, 9, {154, 231}},
    };
    for (const Row &row : rows) {
        const PrintPages page = layOutPages(row.paper, row.photo, {row.photos});
        const QImage picture =
            pictureForPages(quarters(row.photo.width(), row.photo.height()), page, row.paper.dotsPerInch);
        EXPECT_EQ(picture.size(), row.dots);
    }
    const PrintPages poster = layOutPages({{2384, 3370}, {}, 600}, {3000, 4000}, {});
    const QImage picture = pictureForPages(quarters(3000, 4000), poster, 600);
    EXPECT_LE(qint64(picture.width()) * picture.height(), 40'000'000) << "a page is at most 160 MB";
    EXPECT_GT(qint64(picture.width()) * picture.height(), 30'000'000);
    for (const PaperCraft &craft : paperCrafts()) {
        for (const QSize size : {QSize(3000, 2000), QSize(8000, 40), QSize(3, 900), QSize(1, 1)}) {
            const QImage photo = quarters(size.width(), size.height());
            const PrintLayout layout{.craft = &craft, .content = {{"%1 %2"}, differingDetails(photo)}};
            const QImage used = pictureForPages(photo, layOutPages({{595, 842}, {}, 600}, size, layout), 600);
            EXPECT_FALSE(used.isNull());
            EXPECT_LE(qint64(used.width()) * used.height(), 40'010'000) << craft.button << ' ' << size.width();
            EXPECT_LE(std::max(used.width(), used.height()), 32767);
        }
    }
}

} // namespace
} // namespace lumora
