// Shell scripts in the place of the helper program, for faults that it does not have.
#pragma once

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace lumora {

class HelperScriptTest : public testing::Test {
  protected:
    /// The path of a new script with these lines.
    QString script(const QByteArray &lines) {
        QString path = m_folder.filePath("helper" + QString::number(++m_scripts));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + lines);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

    QTemporaryDir m_folder;

  private:
    int m_scripts = 0;
};

} // namespace lumora
