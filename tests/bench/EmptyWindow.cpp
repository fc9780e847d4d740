#include <QApplication>
#include <QWidget>

/// The least that a program with a window of this toolkit does.
int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    window.resize(360, 680);
    window.show();
    return QApplication::exec();
}
