#include "TerminationRequest.h"

/// A session that ends asks the windows here, and Qt answers for them.
class TerminationRequest::Watch
{
};

TerminationRequest::TerminationRequest(QObject* parent)
    : QObject(parent)
{
}

TerminationRequest::~TerminationRequest() = default;
