// The ideas: every project has its pictures, its steps and its texts; what the window shows; the way to the pop-art
// row.
#include "ideas/frmSamples.h"

#include "ideas/IdeaPicture.h"
#include "ideas/IdeaProgress.h"
#include "support/SettingsFile.h"
#include "support/ShellCheck.h"
#include "support/TestPictures.h"
#include "widgets/CommandBar.h"
#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"
#include "widgets/Theme.h"
#include "window/frmMain.h"

#include <QImageReader>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <set>

namespace lumora {
namespace {

class Ideas : public test::Shell {
  protected:
    void openPhoto() {
        context.photo.openPicture({.picture = photo, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
    }
    QStringList shownSteps(const QWidget &window) {
        QStringList steps;
        for (int i = 1; i <= int(mostIdeaSteps); ++i) {
            const auto *text = window.findChild<QLabel *>(QString("lblIdeaStep%1").arg(i));
            const auto *icon = window.findChild<QLabel *>(QString("picIdeaStep%1").arg(i));
            EXPECT_EQ(text->isHidden(), icon->isHidden());
            if (!text->isHidden()) {
                EXPECT_FALSE(icon->pixmap().isNull());
                steps << text->text();
            }
        }
        return steps;
    }
    void choose(const QWidget &window, const char *id) {
        window.findChild<PictureButton *>(QString("cmdIdea_%1").arg(id))->click();
    }

    const QImage photo = test::photoLike(300, 200);
};

TEST_F(Ideas, EveryProjectHasItsPicturesStepsAndTexts) {
    std::set<QString> ids;
    for (const Idea &idea : ideas()) {
        SCOPED_TRACE(idea.id);
        EXPECT_TRUE(ids.insert(idea.id).second);
        for (int number = 1; number <= idea.pictures; ++number) {
            EXPECT_TRUE(QImageReader(ideaPicturePath(idea, number)).canRead()) << number;
        }
        EXPECT_FALSE(QFile::exists(ideaPicturePath(idea, idea.pictures + 1))) << "one that is never shown";
        for (const char *text : {idea.name, idea.title, idea.then}) {
            EXPECT_FALSE(context.texts.text(text).isEmpty()) << text;
        }
        for (const bool simple : {false, true}) {
            context.flags.SimpleModeOn = simple;
            int steps = 0;
            for (const IdeaStep &step : idea.steps) {
                if (isShown(step, context.flags, context.fields)) {
                    ++steps;
                    EXPECT_FALSE(iconPixmap(step.icon, 32, 1).isNull()) << step.icon;
                    EXPECT_FALSE(context.texts.text(step.text).isEmpty()) << step.text;
                }
            }
            EXPECT_GE(steps, 3);
        }
    }
    EXPECT_EQ(ids.size(), 8U);
}

TEST_F(Ideas, EachLooksDifferentAtEverySize) {
    for (const QSize size : {QSize(88, 66), QSize(512, 384)}) {
        for (const qreal density : {1.0, 2.0}) {
            QList<QImage> seen;
            for (const Idea &idea : ideas()) {
                const QImage picture = paintIdea(idea, size, density).toImage();
                EXPECT_EQ(picture.size(), size * density);
                EXPECT_FALSE(seen.contains(picture)) << idea.id;
                seen << picture;
            }
        }
    }
}

TEST_F(Ideas, TheWindowShowsTheStepsWhoseToolsAreOnTheScreen) {
    struct Case {
        bool simple;
        const char *level;
        const char *id;
        QStringList steps;
    };
    const Case cases[] = {
        {false, "0", "card", {"IdeaCardOpen", "IdeaCardColours", "IdeaCardFrame", "IdeaCardWords", "IdeaSave"}},
        {true, "0", "card", {"IdeaCardOpen", "IdeaCardFrame", "IdeaCardWords", "IdeaSave"}},
        {true, "0", "popart", {"IdeaPopArtOpen", "IdeaPopArtMake", "IdeaSave"}},
        {true, "1", "popart", {"IdeaPopArtOpen", "IdeaPopArtMake", "IdeaPopArtColours", "IdeaSave"}},
    };
    for (const auto &[simple, level, id, steps] : cases) {
        context.flags.SimpleModeOn = simple;
        context.fields.txtAndyStyle = settings::valueOf<Setting::AdvancedPopart>(level);
        frmSamples window(context, nullptr);
        choose(window, id);
        QStringList expected;
        for (const QString &step : steps) {
            expected << context.texts.text(step);
        }
        EXPECT_EQ(shownSteps(window), expected) << id << level << simple;
    }
}

TEST_F(Ideas, OnlyThePopArtRowIsMadeFromHereAndOnlyOfAPhoto) {
    for (const bool loaded : {false, true}) {
        if (loaded) {
            openPhoto();
        }
        frmSamples window(context, nullptr);
        const auto *make = window.findChild<PictureButton *>("cmdMakePopArt");
        const auto *stickers = window.findChild<PictureButton *>("cmdIdeaStickers");
        const auto *hint = window.findChild<QLabel *>("lblIdeaNeedsPhoto");
        for (const Idea &idea : ideas()) {
            choose(window, idea.id);
            EXPECT_EQ(!make->isHidden(), idea.canBeMade) << idea.id;
            const bool words = stepThatOpensTool(idea) != nullptr;
            EXPECT_EQ(!stickers->isHidden(), words) << idea.id;
            EXPECT_EQ(stickers->isEnabled(), loaded);
            EXPECT_EQ(!hint->isHidden(), (idea.canBeMade || words) && !loaded) << idea.id;
        }
        choose(window, "popart");
        EXPECT_EQ(make->isEnabled(), loaded);
        EXPECT_EQ(make->toolTip().isEmpty(), loaded);
        EXPECT_FALSE(make->accessibleName().isEmpty());
    }
}

TEST_F(Ideas, EscapeAndOkCloseIt) {
    for (const bool byKey : {true, false}) {
        frmSamples window(context, nullptr);
        QSignalSpy popArt(&window, &frmSamples::popArtWanted);
        window.open();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        const QSize size = window.size();
        for (const Idea &idea : ideas()) {
            choose(window, idea.id);
            QCoreApplication::processEvents();
            EXPECT_EQ(window.size(), size) << idea.id;
        }
        if (byKey) {
            QTest::keyClick(&window, Qt::Key_Escape);
        } else {
            window.findChild<PictureButton *>("cmdYes")->click();
        }
        EXPECT_FALSE(window.isVisible());
        EXPECT_EQ(popArt.count(), 0);
    }
}

TEST_F(Ideas, StepsAreTickedAsTheyHappen) {
    using Kind = IdeaEvent::Kind;
    const auto idea = [](const char *id) -> const Idea & {
        return *std::ranges::find_if(ideas(), [&](const Idea &each) { return QLatin1StringView(each.id) == id; });
    };
    struct Case {
        const char *what;
        const char *id;
        bool opened;
        std::vector<IdeaEvent> events;
        const char *done; ///< a letter a step: x done, > next, . neither
    };
    const IdeaEvent opened{Kind::Opened}, saved{Kind::Saved}, undone{Kind::Undone};
    const IdeaEvent colours{Kind::Changed, "cmdTool9", "keySaturation"};
    const IdeaEvent hearts{Kind::Changed, "cmdTool7", "keyFrame4"};
    const IdeaEvent leaves{Kind::Changed, "cmdTool7", "keyFrame6"};
    const IdeaEvent sepia{Kind::Changed, "cmdTool8", "keySepia"};
    const IdeaEvent crop{Kind::Changed, "cmdTool3", {}};
    const IdeaEvent words{Kind::Changed, "stickers", {}};
    const IdeaEvent popArt{Kind::Changed, "popArt", {}};
    const Case cases[] = {
        {"nothing yet", "card", false, {}, ">...."},
        {"with a photo on the table", "card", true, {}, "x>..."},
        {"one after the other", "card", false, {opened, colours, hearts}, "xxx>."},
        {"all", "card", false, {opened, colours, hearts, words, saved}, "xxxxx"},
        {"words and stickers", "card", true, {words}, "x..x>"},
        {"another frame is not meant", "card", true, {colours, leaves}, "xx>.."},
        {"what was left out stays open", "card", true, {hearts}, "x.x>."},
        {"and can be done later", "card", true, {hearts, colours}, "xxx>."},
        {"what was saved before", "card", true, {saved}, "x>..."},
        {"a step back is no step here", "card", true, {colours, undone}, "xx>.."},
        {"the next picture", "comic", true, {{Kind::Changed, "cmdTool10", "keySFX5"}, saved, opened}, "x>..."},
        {"any frame", "calendar", true, {leaves}, "xx>.."},
        {"a season", "calendar", true, {leaves, saved, undone}, "xx.xx"},
        {"the next season", "calendar", true, {leaves, saved, undone, hearts}, "xx>.."},
        {"cropped", "wanted", true, {crop, {Kind::Changed, "cmdTool7", "keyFrame3"}, sepia}, "xxxx>."},
        {"made by Lumora", "popart", true, {popArt}, "xx>"},
    };
    for (const auto &[what, id, hasPhoto, events, done] : cases) {
        std::vector<const IdeaStep *> shown;
        for (const IdeaStep &step : idea(id).steps) {
            if (isShown(step, context.flags, context.fields)) {
                shown.push_back(&step);
            }
        }
        IdeaProgress progress;
        progress.begin(idea(id), shown, hasPhoto);
        for (const IdeaEvent &event : events) {
            progress.tell(event);
        }
        std::string seen;
        for (std::size_t i = 0; i < shown.size(); ++i) {
            seen += progress.isDone(i) ? 'x' : i == progress.current() ? '>' : '.';
        }
        EXPECT_EQ(seen, done) << what;
    }
}

TEST_F(Ideas, TheMainWindowMakesTheRowAtOnceOrOpensItsPanel) {
    for (const char *level : {"0", "1"}) {
        test::writeSetting(context, "Popart", "Level", level);
        frmMain window(context);
        window.show();
        const auto *button = window.findChild<CommandBar *>("Toolbar1")->button("keyIdeas");
        EXPECT_TRUE(button->isEnabled()) << "without a photo too";
        openPhoto();
        window.fitPhoto();
        window.findChild<CommandBar *>("Toolbar1")->button("keyIdeas")->click();
        auto *samples = window.findChild<frmSamples *>();
        ASSERT_NE(samples, nullptr);
        EXPECT_TRUE(samples->isModal());
        choose(*samples, "popart");
        samples->findChild<PictureButton *>("cmdMakePopArt")->click();
        EXPECT_FALSE(samples->isVisible());
        auto *panel = window.findChild<SlidingPanel *>("pnlAndy");
        if (*level == '0') {
            EXPECT_FALSE(panel->isOpen());
            EXPECT_EQ(context.photo.picCanvas().size(), QSize(600, 100));
            continue;
        }
        EXPECT_TRUE(panel->isOpen());
        EXPECT_EQ(test::firstDifference(context.photo.picCanvas(), photo), QPoint(-1, -1));
        window.ResetTools(); // as every way out and every other tool does
        EXPECT_FALSE(panel->isOpen());
        EXPECT_EQ(test::firstDifference(context.photo.picCanvas(), photo), QPoint(-1, -1));
    }
}

TEST_F(Ideas, TheMainWindowOpensWordsAndStickersFromTheIdeasAndFromTheirSteps) {
    frmMain window(context);
    window.resize(1024, 768);
    window.show();
    openPhoto();
    const auto *panel = window.findChild<SlidingPanel *>("pnlStickers");
    window.findChild<CommandBar *>("Toolbar1")->button("keyIdeas")->click();
    auto *samples = window.findChild<frmSamples *>();
    choose(*samples, "comic");
    samples->findChild<PictureButton *>("cmdIdeaStickers")->click();
    EXPECT_FALSE(samples->isVisible());
    EXPECT_TRUE(panel->isOpen());
    EXPECT_TRUE(window.findChild<QWidget *>("pnlIdea")->isVisible()); // its other steps are to be done, too
    window.findChild<PictureButton *>("cmdToolBack")->click();
    EXPECT_FALSE(panel->isOpen());
    int buttons = 0;
    for (std::size_t step = 1; step <= mostIdeaSteps; ++step) {
        auto *button = window.findChild<PictureButton *>(QString("cmdIdeaOpen%1").arg(step));
        if (button->isVisible()) {
            ++buttons;
            button->click();
        }
    }
    EXPECT_EQ(buttons, 1);
    EXPECT_TRUE(panel->isOpen());
}

} // namespace
} // namespace lumora
