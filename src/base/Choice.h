#pragma once
// An entry of a list to choose from: the key it stands for (the item data
// of a drop-down) and the text shown. The rules give lists of them; the
// screens put them into their drop-downs and list boxes.
#include "base/Value.h"

#include <QString>
#include <QVector>

struct Choice {
    Value id;
    QString text;
};
using Choices = QVector<Choice>;
