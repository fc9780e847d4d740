#include "LoadingDialog.h"

#include "ui_LoadingDialog.h"

#include <QMovie>

LoadingDialog::LoadingDialog(QWidget* parent)
    : SvtaBaseDialog(parent)
    , ui(std::make_unique<Ui::LoadingDialog>())
    , m_movie(new QMovie(QStringLiteral(":images/loading.gif"), {}, this))
{
    ui->setupUi(this);
    ui->labLoading->setScaledContents(true);
    ui->labLoading->setMovie(m_movie);
}

LoadingDialog::~LoadingDialog() = default;

void LoadingDialog::reject() {}

void LoadingDialog::showEvent(QShowEvent* event)
{
    m_movie->start();
    SvtaBaseDialog::showEvent(event);
}

void LoadingDialog::hideEvent(QHideEvent* event)
{
    m_movie->stop();
    SvtaBaseDialog::hideEvent(event);
}
