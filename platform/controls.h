#pragma once

#include <initializer_list>

class QPushButton;
class QWidget;

/// Greys out controls that have no command yet.
void disable(std::initializer_list<QWidget *> controls);

/// Marks the button that a tab is there for, in the desktop's own accent colour.
void make_primary(QPushButton &button);
