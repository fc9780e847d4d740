#pragma once

#include <windows.h>

#ifdef __cplusplus
extern "C" {
#endif

struct hid_device_;

/// A device of hidapi whose reports have 64 bytes, without a handle of the system.
/// @return to be closed with hid_close()
struct hid_device_* scriptedDevice(void);

/// @name The calls of Windows that hidapi makes for it, in the place of the system's
/// @{
BOOL scriptedReadFile(HANDLE file, LPVOID buffer, DWORD size, LPDWORD read,
                      LPOVERLAPPED overlapped);
BOOL scriptedWriteFile(HANDLE file, LPCVOID buffer, DWORD size, LPDWORD written,
                       LPOVERLAPPED overlapped);
DWORD scriptedWait(HANDLE event, DWORD milliseconds);
BOOL scriptedResult(HANDLE file, LPOVERLAPPED overlapped, LPDWORD transferred, BOOL wait);
/// @}

#ifdef __cplusplus
}
#endif
