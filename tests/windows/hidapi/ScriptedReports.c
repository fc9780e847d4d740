/* hidapi itself, with scripted calls of Windows: what they return at which moment decides about its
   waiting, and no device can be made to do that. */

#include "ScriptedReports.h"

#define ReadFile scriptedReadFile
#define WriteFile scriptedWriteFile
#define WaitForSingleObject scriptedWait
#define GetOverlappedResult scriptedResult

#include "hid.c"

enum { reportLength = 64 };

struct hid_device_* scriptedDevice(void)
{
    hid_device* device = new_hid_device();
    device->input_report_length = reportLength;
    device->output_report_length = reportLength;
    device->read_buf = (char*)malloc(reportLength);
    return device;
}
