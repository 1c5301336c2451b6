// The player on a small window: real input reaches the controls, modal windows are played through, and what cannot be
// done ends the run with its line and reason.
#include "Look.h"
#include "Playing.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumora::play {
namespace {

using test::Played;
using test::playScript;

struct Case {
    const char *script;
    QStringList diary;
};

TEST(Player, WorksEveryKindOfControlWithRealInput) {
    const Case cases[] = {
        {"click frmSmall.cmdWork\nclick Toolbar1.keyUndo", {"cmdWork", "undisturbed", "keyUndo"}},
        {"item Toolbar1 keyUndo\nitem Toolbar1 keyUndo", {"keyUndo", "keyUndo"}},
        {"click cmdHover\nkey Ctrl+Z", {"entered", "undone"}},
        {"click cmdLow", {"cmdLow"}},
        {"click cmdMenu\nitem QMenu Full", {"cmdMenu", "full"}},
        {"type txtName Größe & more\nexpect txtName Größe & more", {}},
        {"set txtName plain\nexpect txtName plain", {}},
        {"set sldValue -73\nexpect sldValue -73", {}},
        {"set spinValue 42\nexpect spinValue 42", {}},
        {"set chkShow 1\nexpect chkShow@checked true\nset chkShow on\nset chkShow 0\nexpect chkShow@checked false", {}},
        {"set cboFilter PNG\nexpect cboFilter PNG\nset cboFilter BMP\nexpect cboFilter BMP", {}},
        {"item File1 picture 40\nexpect File1 picture 40", {}},
        {"expect SBar a status *\nexpect SBar a status line\nexpect-not SBar a status\nexpect frmSmall Small", {}},
        {"point cmdHover", {"entered"}},
        {"point 3 4", {"over 3,4", "over 3,4"}},
        {"press 3 4", {"over 3,4", "over 3,4", "down 3,4", "up 3,4"}},
        {"expect state.started start advanced", {}},
        {"click cmdHover\nundo all\nexpect state.undo 0\nundo all", {"entered", "undone", "undone", "undone"}},
    };
    for (const Case &one : cases) {
        const Played run = playScript(QString("start advanced\n%1\nquit").arg(one.script), 3000);
        EXPECT_EQ(run.problem, "") << one.script << " in line " << run.line;
        EXPECT_EQ(run.diary, one.diary) << one.script;
    }
}

TEST(Player, DragsOverThePicturePixelByPixel) {
    const Played run = playScript("start\ndrag 1 1 9 1 9 25");
    ASSERT_EQ(run.problem, "");
    EXPECT_TRUE(run.diary.contains("down 1,1"));
    EXPECT_TRUE(run.diary.contains("over 5,1"));
    EXPECT_TRUE(run.diary.contains("over 9,13"));
    EXPECT_EQ(run.diary.last(), "up 9,25");
}

TEST(Player, PlaysThroughModalWindowsAndFileDialogs) {
    QTemporaryDir folder;
    const QString path = folder.filePath("a photo.png");
    ASSERT_TRUE(QImage(2, 2, QImage::Format_RGB32).save(path));
    const Played run = playScript("start\nclick cmdAsk\nexpect state.windows frmSmall,frmFirst\nclick frmFirst.cmdYes\n"
                                  "key Escape\nclick cmdAsk\nclick Yes\nclick cmdYes\nclick cmdOpen\nchoose " +
                                      path + "\nexpect state.windows frmSmall",
                                  8000);
    EXPECT_EQ(run.problem, "") << run.line;
    const QStringList expected = {"cmdAsk",     "frmFirst 1",  "frmSecond 0", "cmdAsk",
                                  "frmFirst 1", "frmSecond 1", "cmdOpen",     path};
    EXPECT_EQ(run.diary, expected);
}

TEST(Player, WritesSettingsBeforeTheStart) {
    const Played run =
        playScript("setting Two Words/Style=the other\nstart\nexpect frmSmall@Style Two Words the other");
    EXPECT_EQ(run.problem, "");
}

TEST(Player, WaitsForWhatIsStillToCome) {
    const Played run = playScript("start\nclick cmdLater\nexpect SBar now", 5000);
    EXPECT_EQ(run.problem, "");
}

TEST(Player, EndsWithLineAndReasonWhenAStepCannotBeDone) {
    const struct {
        const char *script;
        int line;
        const char *reason;
    } cases[] = {
        {"start\n\n# a remark\nclick cmdNone", 4, "there is no cmdNone"},
        {"start\nclick cmdHidden", 2, "it is hidden"},
        {"start\nclick cmdOff", 2, "it is disabled"},
        {"start\nclick cmdCovered", 2, "it is covered or out of view"},
        {"start\nclick cmdAsk\nclick cmdWork", 3, "the window frmFirst is in front of it"},
        {"start\nclick cmdAsk\npress 1 1", 3, "the window frmFirst is in front of it"},
        {"start\nclick cmdMenu\nclick cmdWork", 3, "the menu QMenu is open"},
        {"start\nitem Toolbar1 keyRedo", 2, "it is disabled"},
        {"start\nitem Toolbar1 keyZoom", 2, "Toolbar1 has no item keyZoom"},
        {"start\nset cboFilter GIF", 2, "it does not offer GIF"},
        {"start\nset sldValue 101", 2, "it does not take that value"},
        {"start\npress 400 1", 2, "pixel 400, 1 is not in view"},
        {"start\nchoose /tmp/x.png", 2, "no file dialog is open"},
        {"start\nclick cmdOpen\nchoose /nowhere/x.png", 3, "it is disabled"},
        {"start\nkey Hyper", 2, "there is no key Hyper"},
        {"start\nexpect SBar other", 2, "it is \"a status   line\""},
        {"start\nexpect-not SBar a*", 2, "it is just that"},
        {"start\nexpect-gone noSuchControl\nexpect-gone SBar", 3, "it is visible"},
        {"start\nexpect state.none 1", 2, "state has no none"},
        {"start\nmask pet", 2, "nothing is marked"},
        {"start\nhash outside pet", 2, "there is no mask pet"},
        {"start\npoint cmdOff", 2, "it is disabled"},
        {"start\npoint 400 1", 2, "pixel 400, 1 is not in view"},
        {"start\nfilm /nowhere/x.raw 10", 2, "/nowhere/x.raw cannot be written"},
        {"start\nfilm /dev/full 20\nwait 500\nfilm end", 4, "the film could not be written"},
        {"start\nfilm end", 2, "no film is being made"},
        {"start\nshot /nowhere/y.png cmdHidden", 2, "cmdHidden is hidden"},
        {"start\nshot /nowhere/x.png", 2, "/nowhere/x.png cannot be written"},
        {"start advanced nothing", 1, "it opens no window"},
    };
    for (const auto &one : cases) {
        const Played run = playScript(one.script, 300);
        EXPECT_EQ(run.line, one.line) << one.script;
        EXPECT_THAT(run.problem.toStdString(), testing::MatchesRegex(one.reason)) << one.script;
    }
}

TEST(Player, PrintsStateHashAndShot) {
    QTemporaryDir folder;
    const QString file = folder.filePath("shot.png");
    const Played run =
        playScript("start simple\nstate\nhash before\nexpect hash $before\nexpect-not hash 1x1*\nshot " + file);
    ASSERT_EQ(run.problem, "") << run.line;
    ASSERT_EQ(run.printed.size(), 3);
    EXPECT_EQ(run.printed[0], "started=\"start simple\" status=\"a b\" undo=3 windows=frmSmall");
    const QByteArray pixels("\x01\x02\x03\xff\x04\x05\x06\xff", 8);
    const QByteArray sum = QCryptographicHash::hash(pixels, QCryptographicHash::Sha256).toHex();
    EXPECT_EQ(run.printed[1], "2x1 " + QString::fromLatin1(sum));
    EXPECT_GT(QImage(file).width(), 300);
}

TEST(Player, ShowsAPartOfTheScreenAndThePointer) {
    QTemporaryDir folder;
    const auto picture = [&folder](const char *name) { return QImage(folder.filePath(QString(name) + ".png")); };
    const Played run = playScript(QString("start\npoint cmdHover\nshot %1/bar.png Toolbar1\n"
                                          "shot %1/both.png cmdAsk cmdWork\nshot %1/plain.png cmdHover\n"
                                          "pointer on\nshot %1/pointed.png cmdHover\npointer off\n"
                                          "shot %1/again.png cmdHover")
                                      .arg(folder.path()));
    ASSERT_EQ(run.problem, "") << run.line;
    EXPECT_GT(picture("both").height(), picture("bar").height());
    EXPECT_LT(picture("both").height(), 200);
    // The pointer's tip is at the place, the rest to the right of it and below; nothing else has changed.
    const QImage plain = picture("plain");
    const QImage pointed = picture("pointed");
    ASSERT_EQ(plain.size(), pointed.size());
    const QPoint tip = plain.rect().center();
    EXPECT_NE(plain.pixel(tip + QPoint(3, 10)), pointed.pixel(tip + QPoint(3, 10)));
    EXPECT_EQ(plain.pixel(tip - QPoint(20, 0)), pointed.pixel(tip - QPoint(20, 0)));
    EXPECT_EQ(plain, picture("again"));
}

TEST(Player, FilmsWhatItDoesAtACalmPace) {
    QTemporaryDir folder;
    const QString file = folder.filePath("film.raw");
    const Played run =
        playScript("start\nshot " + file + ".png\nfilm " + file +
                       " 50\npress 3 4\ncue later\nset sldValue 60\nexpect sldValue 60\nwait 200\nfilm end\npress 1 1",
                   3000);
    ASSERT_EQ(run.problem, "") << run.line;
    // It moves over the photo, presses once, and continues quickly once the film has ended.
    EXPECT_EQ(run.diary.count("down 3,4"), 1);
    EXPECT_GT(run.diary.indexOf("down 3,4"), 0);
    EXPECT_EQ(run.diary.mid(run.diary.size() - 4), QStringList({"over 1,1", "over 1,1", "down 1,1", "up 1,1"}));

    const QImage screen(file + ".png");
    const qint64 bytes = QFileInfo(file).size();
    const qint64 frame = qint64(screen.width()) * screen.height() * 4;
    EXPECT_EQ(bytes % frame, 0);
    EXPECT_GT(bytes / frame, 40) << "the pauses alone are more";
    EXPECT_EQ(run.printed.last(), QString("%1 frames").arg(bytes / frame));
    ASSERT_EQ(run.printed.value(run.printed.size() - 2).section(' ', 0, 1), "cue later");
    const int cue = run.printed.value(run.printed.size() - 2).section(' ', 2).toInt();
    EXPECT_GT(cue, 10) << "the press takes its time";
    EXPECT_LT(cue, bytes / frame - 10) << "and so do the slider and the pause";
    // Whole rows of blue, green, red, 255: the corner shows the screen's own ground.
    QFile film(file);
    ASSERT_TRUE(film.open(QIODevice::ReadOnly));
    film.seek(bytes - 4);
    const QRgb corner = screen.pixel(screen.width() - 1, screen.height() - 1);
    const char expected[] = {char(qBlue(corner)), char(qGreen(corner)), char(qRed(corner)), char(255)};
    EXPECT_EQ(film.read(4), QByteArray(expected, 4));
}

TEST(Player, HashesPixelsOutsideAMask) {
    const Played run = playScript("start\nmask pet\nhash outside pet before\nexpect outside.pet $before", 400,
                                  [](test::SmallWindow &window) {
                                      window.marked = QImage(2, 1, QImage::Format_Grayscale8);
                                      window.marked.fill(0);
                                      window.marked.scanLine(0)[0] = 255;
                                  });
    ASSERT_EQ(run.problem, "") << run.line;
    const QByteArray pixels("\0\0\0\0\x04\x05\x06\xff", 8);
    const QByteArray sum = QCryptographicHash::hash(pixels, QCryptographicHash::Sha256).toHex();
    EXPECT_EQ(run.printed.value(0), "2x1 " + QString::fromLatin1(sum));
}

TEST(Player, ComparesLooksWithStoredOnes) {
    QTemporaryDir folder;
    const QString file = folder.filePath("look.png");
    QImage other(2, 1, QImage::Format_RGB32);
    other.fill(qRgb(1, 2, 40));
    ASSERT_TRUE(lookOf(other).save(folder.filePath("other.png")));
    ASSERT_TRUE(lookOf(other.copy(0, 0, 1, 1)).save(folder.filePath("small.png")));
    const auto play = [&](const QString &lines, bool remakes = false) {
        return playScript("start\n" + lines, remakes ? 2000 : 200, {},
                          [remakes](Player &player) { player.remakesLooks = remakes; });
    };
    const Played made = play("expect-look " + file, true);
    EXPECT_EQ(made.problem, "");
    EXPECT_EQ(made.printed, QStringList(file));
    EXPECT_EQ(play("expect-look " + file, true).printed, QStringList()) << "the same look is not written again";
    EXPECT_EQ(play("expect-look " + file).problem, "");
    EXPECT_EQ(play("look before cmdHover\nexpect-look before cmdHover").problem, "");
    EXPECT_EQ(play("look before cmdHover\npoint cmdHover\nexpect-look before cmdWork", true).line, 4)
        << "what is kept in the run is never remade";
    EXPECT_TRUE(play("expect-look " + folder.filePath("other.png")).problem.startsWith("it looks different"));
    EXPECT_EQ(play("expect-look " + folder.filePath("small.png")).problem, "it is 2x1, not 1x1");
    EXPECT_EQ(play("expect-look nothing.png").problem, "there is no picture to compare with");
    EXPECT_EQ(play("look before cmdHidden").problem, "it is hidden");
    EXPECT_EQ(play("expect-look /nowhere/x.png", true).problem, "/nowhere/x.png cannot be written");
}

TEST(Look, RoundingIsNoDifferenceAndAnythingSeenIsOne) {
    QImage photo(400, 300, QImage::Format_RGB32);
    for (int y = 0; y < photo.height(); ++y) {
        for (int x = 0; x < photo.width(); ++x) {
            photo.setPixel(x, y, qRgb(x * 255 / 400, y * 255 / 300, (x / 3 + y / 5) % 2 * 90 + 80));
        }
    }
    const auto changed = [&photo](const std::function<QRgb(int, int, QRgb)> &change) {
        QImage copy = photo;
        for (int y = 0; y < copy.height(); ++y) {
            for (int x = 0; x < copy.width(); ++x) {
                copy.setPixel(x, y, change(x, y, photo.pixel(x, y)));
            }
        }
        return copy;
    };
    const struct {
        const char *name;
        QImage picture;
        bool same;
    } cases[] = {
        {"itself", photo, true},
        {"rounded otherwise", changed([](int x, int, QRgb p) { return x % 3 ? p : p ^ 0x010001U; }), true},
        {"a little brighter", changed([](int, int, QRgb p) {
             return qRgb(std::min(255, qRed(p) + 4), std::min(255, qGreen(p) + 4), std::min(255, qBlue(p) + 4));
         }),
         false},
        {"blurred", photo.scaled(200, 150, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).scaled(400, 300), false},
        {"mirrored", photo.mirrored(true, false), false},
        {"a frame of 9 pixels",
         changed([](int x, int y, QRgb p) { return x < 9 || y < 9 || x >= 391 || y >= 291 ? qRgb(200, 40, 40) : p; }),
         false},
        {"one row less", photo.copy(0, 0, 400, 299), false},
    };
    for (const auto &one : cases) {
        const QString said = difference(lookOf(one.picture), lookOf(photo));
        EXPECT_EQ(said.isEmpty(), one.same) << one.name << ": " << said.toStdString();
    }
}

} // namespace
} // namespace lumora::play
