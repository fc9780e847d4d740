#include "TestVendor.h"

namespace {

/// Takes the address of the test's service before main() begins.
struct ServiceAddress
{
    ServiceAddress()
    {
        TestVendor::setUpdateBaseUrl(qEnvironmentVariable("MARVIK_TEST_SERVICE"));
        TestVendor::setUpdateCaFile(qEnvironmentVariable("MARVIK_TEST_AUTHORITY"));
    }
};

const ServiceAddress s_address;

} // namespace
