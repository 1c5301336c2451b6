// The notice on a small screen: its texts come from the settings file, its answer is written there.
#include "dialogs/frmMessage.h"

#include "support/SettingsFile.h"
#include "support/ShellCheck.h"
#include "support/TextCheck.h"

#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QTest>

namespace lumora {
namespace {

using Message = test::Shell;

TEST_F(Message, TextsComeFromTheSettingsFile) {
    // A language file that has the same names changes nothing.
    QFile file(m_folder.filePath("language.ini"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    for (const char *name : {"ScreenMessageTitle", "ScreenMessage", "ScreenMessageButton"}) {
        file.write(QByteArray("[") + name + "]\nCaption=other\n");
    }
    file.close();
    const auto expectTexts = [](frmMessage &notice, const QString &title, const QString &text, const QString &button) {
        EXPECT_EQ(notice.windowTitle(), title);
        EXPECT_EQ(notice.findChild<QLabel *>("lblCaption")->text(), title);
        EXPECT_EQ(notice.findChild<QLabel *>("lblMessage")->text(), text);
        EXPECT_EQ(notice.findChild<QAbstractButton *>("cmdYes")->text(), button);
    };
    frmMessage plain(context, nullptr);
    expectTexts(plain, "Notice", "Lumora is designed to run best on screen size 1024 x 768 or higher.", "OK");
    test::writeSetting(context, "ScreenMessageTitle", "Caption", "Hinweis");
    test::writeSetting(context, "ScreenMessage", "Caption", "Zu klein.");
    test::writeSetting(context, "ScreenMessageButton", "Caption", "Gut");
    frmMessage changed(context, nullptr);
    expectTexts(changed, "Hinweis", "Zu klein.", "Gut");
}

TEST_F(Message, WritesItsAnswer) {
    const struct {
        int clicks; ///< on the check box
        bool answered;
        const char *written;
    } cases[] = {{0, true, "1"}, {1, true, "0"}, {2, true, "1"}, {0, false, "before"}, {1, false, "before"}};
    for (const auto &one : cases) {
        SCOPED_TRACE(testing::Message() << one.clicks << " clicks");
        test::writeSetting(context, "Display Message", "Value", "before");
        frmMessage notice(context, nullptr);
        notice.show();
        for (int i = 0; i < one.clicks; ++i) {
            notice.findChild<QCheckBox *>("chkDontShow")->click();
        }
        QTest::keyClick(&notice, one.answered ? Qt::Key_Return : Qt::Key_Escape);
        EXPECT_FALSE(notice.isVisible());
        EXPECT_EQ(test::setting(context, "Display Message", "Value", "?"), one.written);
    }
}

} // namespace
} // namespace lumora
