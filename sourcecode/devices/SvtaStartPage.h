#pragma once

#include <memory>
#include <QWidget>

namespace Ui {
class SvtaStartPage;
}

/// The start animation.
class SvtaStartPage : public QWidget
{
    Q_OBJECT

public:
    explicit SvtaStartPage(QWidget* parent = nullptr);
    ~SvtaStartPage() override;

private:
    std::unique_ptr<Ui::SvtaStartPage> ui;
};
