#include "SvtaStartPage.h"

#include "ui_SvtaStartPage.h"

#include <QMovie>

SvtaStartPage::SvtaStartPage(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::SvtaStartPage>())
{
    ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
    // With its format: Qt would load every plug-in for pictures to find out.
    auto* movie = new QMovie(QStringLiteral(":images/startPageAnimal.gif"), "gif", this);
    ui->labAnimation->setScaledContents(true);
    ui->labAnimation->setMovie(movie);
    movie->start();
}

SvtaStartPage::~SvtaStartPage() = default;
