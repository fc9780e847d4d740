#include "TestVendor.h"

#include "Vendor.h"

namespace {

struct Values
{
    QByteArray updateBaseUrl;
    QByteArray updateCaFile;
    bool checksForApplicationUpdate = false;
};

Values& values()
{
    static Values instance;
    return instance;
}

} // namespace

void TestVendor::setUpdateBaseUrl(const QString& url)
{
    values().updateBaseUrl = url.toUtf8();
}

void TestVendor::setUpdateCaFile(const QString& path)
{
    values().updateCaFile = path.toUtf8();
}

void TestVendor::setChecksForApplicationUpdate(bool checks)
{
    values().checksForApplicationUpdate = checks;
}

const char* Vendor::contactLine()
{
    return "help@test.invalid";
}

const char* Vendor::companyLine()
{
    return "Test";
}

const char* Vendor::privacyPolicyUrl()
{
    return "https://test.invalid/privacy";
}

const char* Vendor::termsOfServiceUrl()
{
    return "https://test.invalid/terms";
}

const char* Vendor::updateBaseUrl()
{
    return values().updateBaseUrl.constData();
}

const char* Vendor::updateCaFile()
{
    return values().updateCaFile.constData();
}

bool Vendor::checksForApplicationUpdate()
{
    return values().checksForApplicationUpdate;
}
