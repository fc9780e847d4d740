#pragma once

#include "ServiceTest.h"

inline QByteArray package(int size = 3'000'000)
{
    QByteArray content(size, '\0');
    for (int i = 0; i < size; ++i)
        content[i] = static_cast<char>((i * 7 + i / 251) & 0xff);
    return content;
}

/// A service with a package.
class HttpDownloadTest : public ServiceTest
{
protected:
    void SetUp() override
    {
        ServiceTest::SetUp();
        m_url = m_service->addPackage("firmware.bin", package());
    }

    QString m_url;
};
