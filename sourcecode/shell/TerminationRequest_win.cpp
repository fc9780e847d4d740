#include "TerminationRequest.h"

/// Nothing to watch: Windows sends the end of a session to the windows, and Qt handles it.
class TerminationRequest::Watch
{
};

TerminationRequest::TerminationRequest(QObject* parent)
    : QObject(parent)
{
}

TerminationRequest::~TerminationRequest() = default;
