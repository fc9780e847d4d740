#include <QApplication>
#include <QWidget>

/// The minimum of a program with a window of this toolkit.
int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    window.resize(360, 680);
    window.show();
    return QApplication::exec();
}
