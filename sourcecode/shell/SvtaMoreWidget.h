#pragma once

#include <memory>
#include <QWidget>

namespace Ui {
class SvtaMoreWidget;
}

/// The "more" drop-down of the title bar. A click outside closes it.
class SvtaMoreWidget : public QWidget
{
    Q_OBJECT

public:
    explicit SvtaMoreWidget(QWidget* parent = nullptr);
    ~SvtaMoreWidget() override;

signals:
    void sigBtnAboutclicked();
    void sigBtnQuitclicked();

private:
    std::unique_ptr<Ui::SvtaMoreWidget> ui;
};
