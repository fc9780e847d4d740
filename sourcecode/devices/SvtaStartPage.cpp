#include "SvtaStartPage.h"

#include "ui_SvtaStartPage.h"

#include <QMovie>

SvtaStartPage::SvtaStartPage(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::SvtaStartPage>())
{
    ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
    auto* movie = new QMovie(QStringLiteral(":images/startPageAnimal.gif"), {}, this);
    ui->labAnimation->setScaledContents(true);
    ui->labAnimation->setMovie(movie);
    movie->start();
}

SvtaStartPage::~SvtaStartPage() = default;
