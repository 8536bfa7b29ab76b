// The layout the grid editors share: the grid on the left, a column of
// buttons beside it, the dialog's own buttons below.
#pragma once

#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <initializer_list>

namespace faroven {

inline void LayOutGridDialog(QDialog* dialog, QWidget* grid, std::initializer_list<QPushButton*> side,
                             QDialogButtonBox* buttons) {
    auto column = new QVBoxLayout;
    for (QPushButton* button : side) column->addWidget(button);
    column->addStretch(1);
    auto layout = new QGridLayout(dialog);
    layout->addWidget(grid, 0, 0);
    layout->addLayout(column, 0, 1);
    layout->addWidget(buttons, 1, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    dialog->setMinimumSize(460, 300);
    dialog->resize(520, 340);
}

}  // namespace faroven
