#pragma once

#include "CameraModels.h"
#include "LogCapture.h"
#include "QtPrinters.h"
#include "ScriptedHidapi.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QByteArray>

/// A test with a scripted HID library. In every test the program must release what it acquired and
/// must not misuse the library.
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
        return {path, CameraModels::rows().begin()->vendorId,
                CameraModels::rows().begin()->productId, L"Maker"};
    }

    ScriptedHidapi hidapi;
    LogCapture log;
};
