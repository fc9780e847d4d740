#include "STHTTPRequest.h"

#include "transfer/RequestState.h"

namespace Brivane {

STHTTPRequest::STHTTPRequest()
    : m_state(std::make_shared<RequestState>())
{
}

STHTTPRequest::STHTTPRequest(const STHTTPRequest& other) = default;

STHTTPRequest& STHTTPRequest::operator=(const STHTTPRequest& other) = default;

STHTTPRequest::~STHTTPRequest() = default;

void STHTTPRequest::cancel()
{
    m_state->cancel();
}

} // namespace Brivane
