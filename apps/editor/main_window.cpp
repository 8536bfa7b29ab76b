#include "main_window.h"
MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent) { setWindowTitle("Faroven"); }
