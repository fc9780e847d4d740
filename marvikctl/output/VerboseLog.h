#pragma once

#include <QtGlobal>

/// The lines of the log go to standard error, or nowhere. There may be one object at a time.
class VerboseLog
{
public:
    explicit VerboseLog(bool isVerbose);
    ~VerboseLog();
    VerboseLog(const VerboseLog&) = delete;
    VerboseLog& operator=(const VerboseLog&) = delete;

private:
    QtMessageHandler m_previous = nullptr;
};
