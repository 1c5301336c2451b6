// What the tests of the shell's windows share: a separate program folder, and timers that tick on request.
#pragma once

#include "session/AppContext.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QTimerEvent>
#include <gtest/gtest.h>

namespace lumora::test {

/// Lets the window's timer of that name tick once, whatever its interval. Fails the test when it is not running.
inline void tick(QObject &window, const QString &name) {
    auto *timer = window.findChild<QTimer *>(name);
    ASSERT_NE(timer, nullptr) << name.toStdString();
    ASSERT_TRUE(timer->isActive()) << name.toStdString();
    QTimerEvent event(timer->timerId());
    QCoreApplication::sendEvent(timer, &event);
}

class Shell : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(m_folder.isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
    }

    QTemporaryDir m_folder;
    AppContext context{Installation{m_folder.path()}};
};

} // namespace lumora::test
