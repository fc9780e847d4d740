#pragma once

#include <memory>
#include <QJsonObject>
#include <QString>
#include <QWidget>
#include <string>

namespace Ui {
class AboutPage;
}

/// The application's version and build hash, and the links to its terms.
class AboutPage : public QWidget
{
    Q_OBJECT

public:
    explicit AboutPage(QWidget* parent = nullptr);
    ~AboutPage() override;

    /// Shows @p version with the hash code that was set before.
    void setVersion(const QString& version);
    void setHashCode(const QString& hashCode) { m_hashCode = hashCode; }

public slots:
    /// Shows "up to date" without asking the update service. The program asks for its own updates
    /// once, after the list is shown (ApplicationUpdateCheck).
    void slotNeedUpgrade();
    void slotOpenPrivacyPolicyPage();
    void slotOpenServiceAgreement();

signals:
    void sigShowToast(const QString& text);
    void sigForceUpdate(const QJsonObject& updateData);
    void sigCommonUpdate(const QJsonObject& updateData);

private:
    std::unique_ptr<Ui::AboutPage> ui;
    QString m_version;
    QString m_hashCode;
    std::string m_applicationBody;
};
