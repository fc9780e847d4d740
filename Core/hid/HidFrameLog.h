#pragma once

#include "HidFrame.h"

/// Debug lines about frames, in the form that support staff expect.
namespace HidFrameLog {

/// Logs an outgoing frame, one hexadecimal number without padding for each byte and the most
/// significant byte of a field first.
void sent(const unsigned char* frame);

/// Logs the fields of a received frame as whole numbers.
void received(const HidFrame::Response& response);

/// Logs the status of a received frame alone.
void status(const HidFrame::Response& response);

/// Logs the first @p count bytes of a received frame, one in each line.
void dump(const HidFrame::Buffer& frame, std::size_t count);

} // namespace HidFrameLog
