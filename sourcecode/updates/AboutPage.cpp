#include "AboutPage.h"

#include "LogCategories.h"
#include "ui_AboutPage.h"
#include "UpdateCheck.h"
#include "Vendor.h"

#include <QDesktopServices>
#include <QUrl>

AboutPage::AboutPage(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::AboutPage>())
{
    ui->setupUi(this);
    ui->label_2->setText(QString::fromUtf8(Vendor::contactLine()));
    ui->label_3->setText(QString::fromUtf8(Vendor::companyLine()));
    connect(ui->btnCheckUpdate, &QPushButton::clicked, this, &AboutPage::slotNeedUpgrade);
    connect(ui->btnPrivacyPolicy, &QPushButton::clicked, this,
            &AboutPage::slotOpenPrivacyPolicyPage);
    connect(ui->btnServiceAgreement, &QPushButton::clicked, this,
            &AboutPage::slotOpenServiceAgreement);
}

AboutPage::~AboutPage() = default;

void AboutPage::setVersion(const QString& version)
{
    m_version = version;
    m_applicationBody = UpdateCheck::applicationBody(version);
    ui->labVersionCode->setText(tr("Version：V") + version + QLatin1Char('(') + m_hashCode +
                                QLatin1Char(')'));
    qCDebug(updateLog) << QString::fromStdString(m_applicationBody);
}

void AboutPage::slotNeedUpgrade()
{
    emit sigShowToast(tr("Software is up to date"));
}

void AboutPage::slotOpenPrivacyPolicyPage()
{
    QDesktopServices::openUrl(QUrl(QString::fromUtf8(Vendor::privacyPolicyUrl())));
}

void AboutPage::slotOpenServiceAgreement()
{
    QDesktopServices::openUrl(QUrl(QString::fromUtf8(Vendor::termsOfServiceUrl())));
}
