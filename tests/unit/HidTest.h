#pragma once

#include "LogCapture.h"
#include "QtPrinters.h"
#include "ScriptedHidapi.h"
#include "SupportedCameras.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QByteArray>

/// A test against a scripted HID library. Whatever the test does, the program must give back what
/// it took and use the library as it may be used.
class HidTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        EXPECT_EQ(hidapi.openHandles(), 0);
        EXPECT_EQ(hidapi.openEnumerations(), 0);
        EXPECT_EQ(hidapi.misuse(), QStringList());
    }

    static ScriptedHidapi::Interface camera(const QByteArray& path)
    {
        return {path, SupportedCameras::kVendorId, SupportedCameras::kProductId, L"Maker"};
    }

    ScriptedHidapi hidapi;
    LogCapture log;
};
