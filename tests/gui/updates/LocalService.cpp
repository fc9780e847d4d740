#include "LocalService.h"

#include "TestVendor.h"

#include <algorithm>

using updateservice::CertificateKit;
using updateservice::UpdateService;

LocalService::LocalService()
{
    CertificateKit* kit = certificates();
    if (!kit)
        return;
    m_service = std::make_unique<UpdateService>(*kit);
    if (!m_service->start())
        return;
    TestVendor::setUpdateBaseUrl(m_service->address());
    TestVendor::setUpdateCaFile(kit->authorityFile());
}

LocalService::~LocalService()
{
    TestVendor::setUpdateBaseUrl({});
    TestVendor::setUpdateCaFile({});
    TestVendor::setChecksForApplicationUpdate(false);
}

/// Made once, because making keys takes time.
CertificateKit* LocalService::certificates()
{
    static const QTemporaryDir directory;
    static CertificateKit kit;
    static const bool made = kit.make(directory.path());
    if (!made)
        qWarning("%s", qPrintable(kit.errorText()));
    return made ? &kit : nullptr;
}

void LocalService::answer(const QByteArray& text)
{
    updateservice::UpdateOffer offer;
    offer.text = text;
    m_service->setOffer(offer);
}

QJsonObject LocalService::offer(const QString& name, const QByteArray& content)
{
    const QString url = m_service->addPackage(name, content);
    return {{QStringLiteral("needUpgrade"), true},
            {QStringLiteral("details"), QStringLiteral("Sharper picture")},
            {QStringLiteral("downLoadUrl"), url},
            {QStringLiteral("packageSize"), QStringLiteral("1.5MB")}};
}

int LocalService::requestsFor(const QByteArray& path) const
{
    const auto& requests = m_service->requests();
    return static_cast<int>(std::count_if(
        requests.begin(), requests.end(),
        [&path](const updateservice::RequestRecord& request) { return request.path == path; }));
}

int LocalService::checks() const
{
    return requestsFor(UpdateService::kCheckPath);
}
