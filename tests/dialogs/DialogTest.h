// A temporary installation and helpers that answer modal windows, for the tests of the dialogs.
#pragma once

#include "imaging/PictureFile.h"
#include "session/AppContext.h"
#include "support/TestPictures.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

namespace lumora {

class DialogTest : public testing::Test {
  protected:
    DialogTest() : m_context(std::make_unique<AppContext>(Installation{m_folder.path() + "/program"})) {
        QDir().mkpath(m_folder.filePath("program"));
        QDir().mkpath(photos());
        writeFile("program/Lumora.ini", "[MyDocs]\nValue=0\n[Working Directory]\nPath=" + photos().toUtf8() + "\n");
    }

    AppContext &context() { return *m_context; }
    QString photos() const { return m_folder.filePath("photos"); }
    QString samples() const { return m_folder.filePath("program/My Photos"); }

    void writeFile(const QString &name, const QByteArray &content) {
        const QString path = m_folder.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(content);
        file.close();
        context().ini.lookAgain();
    }
    void writePhoto(const QString &name) {
        const QString path = m_folder.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        ASSERT_TRUE(writePicture(test::photoLike(32, 24), path).ok());
    }

    /// Runs the modal call while `hand` operates its window; closes the window if `hand` does not.
    void play(const std::function<void()> &modalCall, const std::function<void(QWidget &)> &hand) {
        QTimer::singleShot(0, [&] {
            QWidget *window = QApplication::activeModalWidget();
            ASSERT_NE(window, nullptr);
            hand(*window);
            if (window->isVisible()) {
                window->close();
            }
        });
        modalCall();
    }

    /// Records title and text of every message box that comes up during `action`, and presses OK in it.
    static QStringList messagesDuring(const std::function<void()> &action) {
        QStringList messages;
        QTimer presser;
        QObject::connect(&presser, &QTimer::timeout, [&] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                const QString kind = box->icon() == QMessageBox::Critical ? "critical" : "other";
                messages += kind + '/' + box->windowTitle() + '/' + box->text();
                box->button(QMessageBox::Ok)->click();
            }
        });
        presser.start(5);
        action();
        return messages;
    }

    template <typename Control> static Control *control(QWidget &window, const char *name) {
        auto *found = window.findChild<Control *>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    static void click(QWidget &window, const char *name) {
        QTest::mouseClick(control<QAbstractButton>(window, name), Qt::LeftButton);
    }

    QTemporaryDir m_folder;

  private:
    std::unique_ptr<AppContext> m_context;
};

} // namespace lumora
