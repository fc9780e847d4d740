#include "CertificateKit.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QTemporaryDir>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    // With the system's settings TLS itself would refuse old protocols, and the library's check
    // would not be tested.
    const QTemporaryDir settings;
    if (!updateservice::CertificateKit::allowOldProtocols(settings.path())) {
        std::fputs("no directory for the settings\n", stderr);
        return 1;
    }
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
