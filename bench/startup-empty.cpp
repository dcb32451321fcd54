// SPDX-License-Identifier: MIT

#include <QApplication>
#include <QDialog>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QDialog dialog;
    dialog.exec();
    return 0;
}
