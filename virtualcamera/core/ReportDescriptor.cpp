#include "ReportDescriptor.h"

namespace virtualcamera {

const Bytes& reportDescriptor()
{
    // One vendor-defined input and one output report with id 1 and 1023 bytes.
    static const Bytes descriptor{
        0x06, 0x00, 0xFF,       // usage page: vendor defined
        0x09, 0x01,             // usage: 1
        0xA1, 0x01,             // collection: application
        0x85, 0x01,             //   report id: 1
        0x15, 0x00,             //   logical minimum: 0
        0x26, 0xFF, 0x00,       //   logical maximum: 255
        0x75, 0x08,             //   report size: 8 bits
        0x96, 0xFF, 0x03,       //   report count: 1023
        0x09, 0x01, 0x81, 0x02, //   usage 1, input: data, variable, absolute
        0x96, 0xFF, 0x03,       //   report count: 1023
        0x09, 0x01, 0x91, 0x02, //   usage 1, output: data, variable, absolute
        0xC0,                   // end of collection
    };
    return descriptor;
}

} // namespace virtualcamera
