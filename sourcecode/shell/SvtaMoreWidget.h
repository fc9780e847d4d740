#pragma once

#include <memory>
#include <QWidget>

namespace Ui {
class SvtaMoreWidget;
}

/// The "more" drop-down of the title bar. The arrow keys move between its entries, Return chooses
/// one; a click outside and Escape close it.
class SvtaMoreWidget : public QWidget
{
    Q_OBJECT

public:
    explicit SvtaMoreWidget(QWidget* parent = nullptr);
    ~SvtaMoreWidget() override;

signals:
    void sigBtnAboutclicked();
    void sigBtnQuitclicked();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    std::unique_ptr<Ui::SvtaMoreWidget> ui;
};
