// A program of the toolkit with one empty child in its window: what the viewer's memory is compared with.

#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    auto* const area = new QMdiArea;
    window.setCentralWidget(area);
    area->addSubWindow(new QWidget)->showMaximized();
    window.resize(1200, 900);
    window.show();
    return QApplication::exec();
}
