#pragma once

#include "CacheHome.h"
#include "DeviceIniStore.h"

#include <gtest/gtest.h>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

inline PictureParameters pictureOf(int bright)
{
    PictureParameters p;
    p.bright = bright;
    p.contrast = bright + 1;
    p.saturation = bright + 2;
    p.sharpness = bright + 3;
    p.imageMode = 3;
    return p;
}

/// A store in a separate cache location, which does not exist yet.
class DeviceIniStoreTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_location = QStandardPaths::standardLocations(QStandardPaths::CacheLocation).first();
        m_path = m_location + QStringLiteral("/device.ini");
    }

    [[nodiscard]] QByteArray contents() const
    {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void setContents(const QByteArray& bytes) const
    {
        ASSERT_TRUE(QDir().mkpath(m_location));
        const QDateTime before = QFileInfo(m_path).lastModified();
        QFile file(m_path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
        ASSERT_TRUE(file.flush());
        if (before.isValid() && QFileInfo(m_path).lastModified() <= before) {
            ASSERT_TRUE(file.setFileTime(before.addMSecs(1), QFileDevice::FileModificationTime));
        }
    }

    [[nodiscard]] QStringList files() const
    {
        return QDir(m_location).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    CacheHome m_home;
    QString m_location;
    QString m_path;
    DeviceIniStore m_store;
};
