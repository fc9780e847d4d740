#include "HidFrameLog.h"

#include "LogCategories.h"

namespace HidFrameLog {

void sent(const unsigned char* f)
{
    qCDebug(hidLog,
            "host_send:\treport_id:%x,magic:%x%x,cmd:%x%x,data_status:%x,data_len:%x%x,"
            "pack_num:%x%x%x%x,crc:%x%x\n",
            f[0], f[2], f[1], f[4], f[3], f[5], f[7], f[6], f[11], f[10], f[9], f[8], f[13], f[12]);
}

void received(const HidFrame::Response& r)
{
    qCDebug(hidLog,
            "report_id:%x,magic:%x,cmd:%x,data_status:%x,datalen:%x,response_status:%x,crc:%x\n",
            r.reportId, r.magic, r.cmd, r.dataStatus, r.dataLen, r.status, r.crc);
}

void status(const HidFrame::Response& r)
{
    qCDebug(hidLog, "respon:%x\n", r.status);
}

void dump(const HidFrame::Buffer& frame, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        qCDebug(hidLog, "%x", frame[i]);
}

} // namespace HidFrameLog
