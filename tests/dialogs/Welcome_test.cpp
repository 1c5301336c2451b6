// The welcome bubble: what it writes, and the ring around the button it refers to.
#include "dialogs/frmWelcome.h"

#include "support/SettingsFile.h"
#include "support/ShellCheck.h"
#include "support/TextCheck.h"
#include "widgets/AnimatedButton.h"

#include <QCheckBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace lumora {
namespace {

class Welcome : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        m_window.resize(800, 600);
        m_folderButton.setGeometry(20, 40, 60, 60);
        m_window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_bubble = new frmWelcome(context, &m_window);
        m_bubble->showAt(&m_folderButton);
    }
    void TearDown() override { delete m_bubble.data(); }
    QAbstractButton *button(const char *name) { return m_bubble->findChild<QAbstractButton *>(name); }

    QWidget m_window;
    QPushButton m_folderButton{&m_window};
    QPointer<frmWelcome> m_bubble;
};

TEST_F(Welcome, OnlyOkWritesTheAnswer) {
    const struct {
        bool ticked;
        const char *answer; ///< a button, or nothing for Esc
        const char *written;
    } cases[] = {
        {false, "cmdOK", "1"},          {true, "cmdOK", "0"},      {true, "cmdCancel", "before"},
        {false, "cmdCancel", "before"}, {true, nullptr, "before"},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.answer == nullptr ? "Esc" : one.answer);
        delete m_bubble.data();
        test::writeSetting(context, "Welcome", "Show", "before");
        m_bubble = new frmWelcome(context, &m_window);
        m_bubble->showAt(&m_folderButton);
        m_bubble->findChild<QCheckBox *>("chkShow")->setChecked(one.ticked);
        if (one.answer == nullptr) {
            QTest::keyClick(button("cmdOK"), Qt::Key_Escape);
        } else {
            button(one.answer)->click();
        }
        EXPECT_TRUE(QTest::qWaitFor([&] { return m_bubble.isNull(); }));
        EXPECT_EQ(m_window.findChild<QWidget *>("picRing"), nullptr);
        EXPECT_EQ(test::setting(context, "Welcome", "Show", "?"), one.written);
    }
}

TEST_F(Welcome, AClearedTickIsNotSaved) {
    auto *box = m_bubble->findChild<QCheckBox *>("chkShow");
    box->click();
    box->click();
    button("cmdOK")->click();
    EXPECT_EQ(test::setting(context, "Welcome", "Show", "?"), "1");
}

TEST_F(Welcome, RingFlashesAroundTheFolderAndLetsClicksThrough) {
    auto *ring = m_window.findChild<QWidget *>("picRing");
    ASSERT_NE(ring, nullptr);
    EXPECT_TRUE(ring->isVisible());
    EXPECT_TRUE(ring->geometry().contains(m_folderButton.geometry()));
    test::tick(*m_bubble, "tmrBlinker");
    EXPECT_FALSE(ring->isVisible());
    test::tick(*m_bubble, "tmrBlinker");
    EXPECT_TRUE(ring->isVisible());

    m_folderButton.move(600, 40);
    EXPECT_TRUE(ring->geometry().contains(m_folderButton.geometry()));
    QSignalSpy clicked(&m_folderButton, &QPushButton::clicked);
    QTest::mouseClick(m_window.windowHandle(), Qt::LeftButton, {}, m_folderButton.geometry().center());
    EXPECT_EQ(clicked.count(), 1);
}

TEST_F(Welcome, BothButtonsMoveTogetherThroughEightPictures) {
    auto *yes = m_bubble->findChild<AnimatedButton *>("cmdOK");
    auto *cancel = m_bubble->findChild<AnimatedButton *>("cmdCancel");
    for (const int expected : {2, 3, 4, 5, 6, 7, 8, 1, 2}) {
        test::tick(*m_bubble, "tmrYes");
        EXPECT_EQ(yes->frame(), expected);
        EXPECT_EQ(cancel->frame(), expected);
    }
}

TEST_F(Welcome, ShowsItsTexts) {
    ASSERT_TRUE(test::writeChangedLanguageFile(m_folder.filePath("language.ini")));
    AppContext translated(Installation{m_folder.path()});
    frmWelcome bubble(translated, &m_window);
    EXPECT_EQ(test::textsNotShown(bubble), QStringList());
    for (const char *name : {"cmdOK", "cmdCancel"}) {
        EXPECT_FALSE(bubble.findChild<QAbstractButton *>(name)->accessibleName().isEmpty()) << name;
    }
}

} // namespace
} // namespace lumora
