#include "CertificateKit.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QTemporaryDir>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    // The system's own settings would refuse old protocols before the library can.
    const QTemporaryDir settings;
    if (!updateservice::CertificateKit::allowOldProtocols(settings.path())) {
        std::fputs("no directory for the settings\n", stderr);
        return 1;
    }
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
