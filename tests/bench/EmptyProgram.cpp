#include <QCoreApplication>

/// The least that a program of this kind does: the baseline of CtlBench.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return 0;
}
